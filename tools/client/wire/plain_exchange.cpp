#include "wire/plain_exchange.h"

#include "judgement/connection_rules.h"
#include "judgement/printable.h"
#include "wire/connect.h"
#include "wire/name_fault.h"
#include "wire/reply_watch.h"

#include <arpa/inet.h>
#include <netdb.h>
#include <netinet/tcp.h>
#include <sys/socket.h>

#include <algorithm>
#include <cerrno>
#include <cstring>

namespace client {

namespace {

using judgement::End;
using Clock = std::chrono::steady_clock;
using std::chrono::milliseconds;

constexpr milliseconds kForTheEnd{50};
constexpr milliseconds kForTheResetOfAPurchase{300};

// Bytes beyond the announced ones, the end of the connection or its reset come a
// moment later, if they come.
void WaitForTheEnd(ReplyWatch *watch, judgement::Exchange *exchange, const Deadline &deadline)
{
    const bool isPurchase = exchange->call == judgement::Call::kPurchase;
    const milliseconds patience = isPurchase ? kForTheResetOfAPurchase : kForTheEnd;
    const Deadline until = std::min<Deadline>(deadline, Clock::now() + patience);
    while (!watch->Read(until).empty()) {
    }
    exchange->end = exchange->end == End::kTimeOut ? End::kOpen : exchange->end;
}

void Receive(ReplyWatch *watch, const Deadline &deadline, bool toTheEnd, PlainExchange *made)
{
    judgement::Exchange &exchange = made->exchange;
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

judgement::Findings LookUp(const std::string &host, int port, sockaddr_in *address)
{
    const hostent *found = gethostbyname(host.c_str());
    if (found == nullptr || found->h_addrtype != AF_INET || found->h_addr_list[0] == nullptr) {
        return {{&NameRule(host, found == nullptr ? h_errno : NO_DATA), judgement::Printable(host)}};
    }
    *address = {};
    address->sin_family = AF_INET;
    address->sin_port = htons(static_cast<std::uint16_t>(port));
    std::memcpy(&address->sin_addr, found->h_addr_list[0], sizeof address->sin_addr);
    return {};
}

judgement::Findings Connect(const sockaddr_in &address, milliseconds patience, FileDescriptor *connected)
{
    FileDescriptor made(socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0));
    const Deadline deadline = Clock::now() + patience;
    if (const int error = ConnectInTime(made.get(), address, &deadline); error != 0) {
        return {{&ConnectRule(error), std::strerror(error)}};
    }
    const int on = 1;
    setsockopt(made.get(), IPPROTO_TCP, TCP_NODELAY, &on, sizeof on);
    *connected = std::move(made);
    return {};
}

PlainExchange Ask(const sockaddr_in &address, const std::string &request, judgement::Call call, milliseconds patience,
                  bool toTheEnd)
{
    PlainExchange made;
    made.exchange.call = call;
    FileDescriptor socket;
    made.noConnection = Connect(address, patience, &socket);
    if (!made.noConnection.empty()) {
        return made;
    }
    const Deadline deadline = Clock::now() + patience;
    ReplyWatch watch(socket.get(), &made.exchange);
    if (send(socket.get(), request.data(), request.size(), MSG_NOSIGNAL) < 0) {
        made.noConnection = {{&judgement::kSendFailed, std::strerror(errno)}};
        return made;
    }
    made.exchange.request = request;
    Receive(&watch, deadline, toTheEnd, &made);
    return made;
}

} // namespace client
