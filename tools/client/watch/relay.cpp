#include "watch/relay.h"

#include "diagnostics/printable.h"
#include "diagnostics/rules.h"

#include <algorithm>
#include <iterator>

namespace client {

namespace {

using diagnostics::End;
using Clock = std::chrono::steady_clock;
using std::chrono::milliseconds;

constexpr std::size_t kMostOfARequest = 64 * 1024;
constexpr milliseconds kReadOn{1000};

// A reply also ends early if the client closes the connection.
constexpr const diagnostics::Rule *kAlsoCausedByTheClient[] = {
    &diagnostics::RuleNamed("silent"), &diagnostics::RuleNamed("closed-empty"), &diagnostics::RuleNamed("reset-early"),
    &diagnostics::RuleNamed("body-reset"), &diagnostics::RuleNamed("length-too-large")};

} // namespace

Relay::Relay(Socket device, const Address &server, milliseconds idle)
    : device_(std::move(device)), address_(server), idle_(idle)
{
    SendWithoutDelay(device_.get());
}

void Relay::Run()
{
    seen_.noConnection = Connect(address_, idle_, &server_);
    if (!seen_.noConnection.empty()) {
        seen_.exchange.end = End::kReset;
        EndLikeTheServer();
        return;
    }
    ReplyWatch watch(server_.get(), &seen_.exchange);
    bool goOn = true;
    while (goOn) {
        switch (WaitForOne()) {
        case Side::kDevice:
            goOn = CarryRequest();
            break;
        case Side::kServer:
            goOn = CarryReply(&watch);
            break;
        case Side::kNone:
            seen_.exchange.end = End::kTimeOut;
            goOn = false;
        }
    }
    deviceLeftEarly_ = deviceIsDone_ && !watch.IsComplete();
    if (deviceIsDone_ && replyHasBegun_) {
        ReadOn(&watch);
    }
    if (seen_.exchange.end == End::kTimeOut) {
        seen_.exchange.waited = idle_;
    }
    seen_.sawFirstSegment = watch.sawFirstSegment();
    EndLikeTheServer();
}

// The device is gone; the rest of the reply shows whether the server is at fault.
void Relay::ReadOn(ReplyWatch *watch)
{
    const Deadline until = Clock::now() + std::min(idle_, kReadOn);
    while (!watch->IsComplete() && !watch->Read(until).empty()) {
    }
    End &end = seen_.exchange.end;
    end = end == End::kTimeOut ? End::kOpen : end;
}

Relay::Side Relay::WaitForOne()
{
    const Deadline deadline = Clock::now() + idle_;
    const int ready = deviceIsDone_ ? WaitToReadOne({server_.get()}, &deadline)
                                    : WaitToReadOne({server_.get(), device_.get()}, &deadline);
    return ready < 0 ? Side::kNone : ready == server_.get() ? Side::kServer : Side::kDevice;
}

// False when the exchange has ended.
bool Relay::CarryRequest()
{
    char piece[4096];
    const std::ptrdiff_t received = ReceiveSome(device_.get(), piece, sizeof piece);
    if (received <= 0) {
        deviceIsDone_ = true;
        EndSending(server_.get());
        return !replyHasBegun_ && received == 0; // half-closed: it may wait for the reply
    }
    const std::string_view bytes(piece, static_cast<std::size_t>(received));
    std::string &request = seen_.exchange.request;
    request.append(bytes.substr(0, kMostOfARequest - std::min(kMostOfARequest, request.size())));
    if (request.starts_with("POST ")) {
        seen_.exchange.call = diagnostics::Call::kPurchase;
    }
    return SendAll(server_.get(), bytes, Clock::now() + idle_);
}

bool Relay::CarryReply(ReplyWatch *watch)
{
    const Deadline deadline = Clock::now() + idle_;
    std::size_t most = ReplyWatch::kMostAtOnce;
    if (!replyHasBegun_ && watch->WaitForFirst(deadline)) {
        replyHasBegun_ = true;
        most = watch->firstPiece();
    }
    const std::string_view bytes = watch->Read(deadline, most);
    return !bytes.empty() && SendAll(device_.get(), bytes, deadline);
}

diagnostics::Findings Relay::Diagnose() const
{
    if (!seen_.noConnection.empty()) {
        return seen_.noConnection;
    }
    const diagnostics::Exchange &exchange = seen_.exchange;
    if (exchange.request.find("\r\n\r\n") == std::string::npos) {
        return {{&diagnostics::RuleNamed("no-request"),
                 exchange.request.empty() ? "no byte" : diagnostics::Printable(exchange.request, 60)}};
    }
    diagnostics::Findings findings = diagnostics::Diagnose(exchange);
    for (diagnostics::Finding &finding : findings) {
        if (deviceLeftEarly_ && std::find(std::begin(kAlsoCausedByTheClient), std::end(kAlsoCausedByTheClient),
                                          finding.rule) != std::end(kAlsoCausedByTheClient)) {
            finding.rule = &diagnostics::RuleNamed("client-left");
        }
    }
    return findings;
}

void Relay::EndLikeTheServer()
{
    if (seen_.exchange.end == End::kReset) {
        ResetWhenClosed(device_.get());
    }
    device_.Close();
    server_.Close();
}

} // namespace client
