#include "wire/plain_exchange.h"

#include "diagnostics/rules.h"
#include "diagnostics/printable.h"
#include "system.h"
#include "wire/name_fault.h"
#include "wire/reply_watch.h"

#include <algorithm>

namespace client {

namespace {

using diagnostics::End;
using Clock = std::chrono::steady_clock;
using std::chrono::milliseconds;

constexpr milliseconds kForTheEnd{50};
constexpr milliseconds kForTheResetOfAPurchase{300};

// Further bytes and the end or reset of the connection may follow a moment later.
void WaitForTheEnd(ReplyWatch *watch, diagnostics::Exchange *exchange, const Deadline &deadline)
{
    const bool isPurchase = exchange->call == diagnostics::Call::kPurchase;
    const milliseconds patience = isPurchase ? kForTheResetOfAPurchase : kForTheEnd;
    const Deadline until = std::min<Deadline>(deadline, Clock::now() + patience);
    while (!watch->Read(until).empty()) {
    }
    exchange->end = exchange->end == End::kTimeOut ? End::kOpen : exchange->end;
}

void Receive(ReplyWatch *watch, const Deadline &deadline, bool toTheEnd, PlainExchange *made)
{
    diagnostics::Exchange &exchange = made->exchange;
    bool more = watch->WaitForFirst(deadline) || exchange.end != End::kTimeOut;
    while (more && !watch->IsComplete()) {
        more = !watch->Read(deadline).empty();
    }
    made->sawFirstSegment = watch->sawFirstSegment();
    if (more && toTheEnd) {
        WaitForTheEnd(watch, &exchange, deadline);
    }
}

} // namespace

diagnostics::Findings LookUp(const std::string &host, int port, Address *address)
{
    *address = MakeAddress(static_cast<std::uint16_t>(port));
    if (const int error = LookUpIpv4(host, address); error != 0) {
        return {{&NameRule(host, error), diagnostics::Printable(host)}};
    }
    return {};
}

diagnostics::Findings Connect(const Address &address, milliseconds patience, Socket *connected)
{
    Socket made = OpenSocket();
    const Deadline deadline = Clock::now() + patience;
    if (const int error = ConnectInTime(made.get(), address, &deadline); error != 0) {
        return {{&ConnectRule(error), NetworkErrorText(error)}};
    }
    SendWithoutDelay(made.get());
    *connected = std::move(made);
    return {};
}

PlainExchange Ask(const Address &address, const std::string &request, diagnostics::Call call, milliseconds patience,
                  bool toTheEnd)
{
    PlainExchange made;
    made.exchange.call = call;
    Socket socket;
    made.noConnection = Connect(address, patience, &socket);
    if (!made.noConnection.empty()) {
        return made;
    }
    const Deadline deadline = Clock::now() + patience;
    ReplyWatch watch(socket.get(), &made.exchange);
    if (!SendAll(socket.get(), request, deadline)) {
        made.noConnection = {{&diagnostics::RuleNamed("send-failed"), NetworkErrorText(LastSocketError())}};
        return made;
    }
    made.exchange.request = request;
    Receive(&watch, deadline, toTheEnd, &made);
    made.exchange.waited = made.exchange.end == End::kTimeOut ? patience : milliseconds(0);
    return made;
}

} // namespace client
