#include "wire/reply_watch.h"

#include "judgement/device_reading.h"
#include "judgement/head_lines.h"

#include <sys/socket.h>

#include <algorithm>
#include <cerrno>

namespace client {

namespace {

using judgement::End;
using judgement::kFirstReception;
using Clock = std::chrono::steady_clock;
using std::chrono::milliseconds;

constexpr std::size_t kMostKept = 1024 * 1024;
// Longer waits are slept through: a server that takes so long is judged by that.
constexpr milliseconds kAskWithoutPause{2000};

bool HasEnded(int socket)
{
    char byte = 0;
    const ssize_t peeked = recv(socket, &byte, 1, MSG_PEEK | MSG_DONTWAIT);
    return peeked == 0 || (peeked < 0 && errno != EAGAIN && errno != EINTR);
}

} // namespace

ReplyWatch::ReplyWatch(int socket, judgement::Exchange *exchange)
    : socket_(socket), exchange_(exchange), segmentsBefore_(ArrivedOn(socket).segments)
{
}

bool ReplyWatch::WaitForFirst(const Deadline &deadline)
{
    const auto started = Clock::now();
    const Deadline pause = std::min(deadline, started + kAskWithoutPause);
    Arrived arrived = ArrivedOn(socket_);
    while (arrived.unread == 0 && Clock::now() < pause && !HasEnded(socket_)) {
        arrived = ArrivedOn(socket_);
    }
    const bool ready = arrived.unread > 0 || WaitToRead(socket_, &deadline);
    arrived = arrived.unread > 0 ? arrived : ArrivedOn(socket_);
    exchange_->firstByteAfter = std::chrono::duration_cast<milliseconds>(Clock::now() - started);
    const unsigned segments = arrived.segments - segmentsBefore_;
    sawFirstSegment_ = segments == 1 || arrived.unread <= kFirstReception;
    if (segments == 1) {
        exchange_->firstBytes = arrived.unread;
    }
    exchange_->segments = sawFirstSegment_ ? segments : 0;
    if (!ready) {
        exchange_->end = End::kTimeOut;
    }
    return arrived.unread > 0;
}

std::string_view ReplyWatch::Read(const Deadline &deadline)
{
    if (!WaitToRead(socket_, &deadline)) {
        exchange_->end = End::kTimeOut;
        return {};
    }
    const ssize_t received = recv(socket_, piece_, sizeof piece_, 0);
    if (received <= 0) {
        exchange_->end = received == 0 ? End::kClosed : End::kReset;
        return {};
    }
    const std::string_view bytes(piece_, static_cast<std::size_t>(received));
    const std::size_t room = kMostKept - std::min(kMostKept, exchange_->reply.size());
    exchange_->reply.append(bytes.substr(0, room));
    exchange_->beyond += bytes.size() - std::min(room, bytes.size());
    return bytes;
}

bool ReplyWatch::IsComplete() const
{
    const std::string &reply = exchange_->reply;
    const std::size_t headEnd = reply.find("\r\n\r\n");
    if (headEnd == std::string::npos) {
        return false;
    }
    const std::vector<judgement::HeadLine> lines = judgement::ReadHeadLines(reply);
    const judgement::HeadLine *length = judgement::FindLine(lines, "Content-Length");
    const std::uint64_t came = reply.size() - headEnd - 4 + exchange_->beyond;
    if (length == nullptr) {
        return reply.ends_with("\r\n0\r\n\r\n"); // the last chunk
    }
    const std::int32_t announced = judgement::DeviceNumber(length->value);
    return announced >= 0 && came >= static_cast<std::uint32_t>(announced);
}

} // namespace client
