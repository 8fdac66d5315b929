#include "watch/relay.h"

#include <poll.h>
#include <netinet/tcp.h>
#include <sys/socket.h>

#include <cerrno>

namespace client {

namespace {

using judgement::End;
using Clock = std::chrono::steady_clock;
using std::chrono::milliseconds;

constexpr std::size_t kMostOfARequest = 64 * 1024;
constexpr milliseconds kListenOn{1000};

// False when the other side has gone, or takes nothing until the deadline.
bool SendAll(int socket, std::string_view bytes, const Deadline &deadline)
{
    while (!bytes.empty() && WaitToWrite(socket, &deadline)) {
        const ssize_t sent = send(socket, bytes.data(), bytes.size(), MSG_NOSIGNAL | MSG_DONTWAIT);
        if (sent < 0 && errno != EAGAIN && errno != EINTR) {
            return false;
        }
        bytes.remove_prefix(sent > 0 ? static_cast<std::size_t>(sent) : 0);
    }
    return bytes.empty();
}

} // namespace

Relay::Relay(FileDescriptor device, const sockaddr_in &server, milliseconds idle)
    : device_(std::move(device)), address_(server), idle_(idle)
{
    const int on = 1;
    setsockopt(device_.get(), IPPROTO_TCP, TCP_NODELAY, &on, sizeof on);
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
    if (deviceIsDone_ && replyHasBegun_) {
        ListenOn(&watch);
    }
    seen_.sawFirstSegment = watch.sawFirstSegment();
    EndLikeTheServer();
}

// The device has left; what else the server sends shows what it meant to say.
void Relay::ListenOn(ReplyWatch *watch)
{
    const Deadline until = Clock::now() + std::min(idle_, kListenOn);
    while (!watch->IsComplete() && !watch->Read(until).empty()) {
    }
    End &end = seen_.exchange.end;
    end = end == End::kTimeOut ? End::kOpen : end;
}

Relay::Side Relay::WaitForOne()
{
    // a negative descriptor is not looked at
    pollfd sides[] = {{deviceIsDone_ ? -1 : device_.get(), POLLIN, 0}, {server_.get(), POLLIN, 0}};
    if (poll(sides, 2, static_cast<int>(idle_.count())) <= 0) {
        return Side::kNone;
    }
    return sides[1].revents != 0 ? Side::kServer : Side::kDevice;
}

// False when the relay is over.
bool Relay::CarryRequest()
{
    char piece[4096];
    const ssize_t received = recv(device_.get(), piece, sizeof piece, 0);
    if (received <= 0) {
        deviceIsDone_ = true;
        shutdown(server_.get(), SHUT_WR);
        return !replyHasBegun_ && received == 0; // it has what it wanted, or may still wait
    }
    const std::string_view bytes(piece, static_cast<std::size_t>(received));
    std::string &request = seen_.exchange.request;
    request.append(bytes.substr(0, kMostOfARequest - std::min(kMostOfARequest, request.size())));
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

void Relay::EndLikeTheServer()
{
    if (seen_.exchange.end == End::kReset) {
        const linger atOnce = {1, 0};
        setsockopt(device_.get(), SOL_SOCKET, SO_LINGER, &atOnce, sizeof atOnce);
    }
    device_.Close();
    server_.Close();
}

} // namespace client
