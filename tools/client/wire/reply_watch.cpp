#include "wire/reply_watch.h"

#include "diagnostics/device_reading.h"
#include "diagnostics/head_lines.h"

#include <algorithm>

namespace client {

namespace {

using diagnostics::End;
using diagnostics::kFirstReception;
using Clock = std::chrono::steady_clock;
using std::chrono::milliseconds;

constexpr std::size_t kMostKept = 1024 * 1024;

} // namespace

ReplyWatch::ReplyWatch(int socket, diagnostics::Exchange *exchange)
    : socket_(socket), started_(Clock::now()), exchange_(exchange)
{
    WatchSegments(socket);
}

bool ReplyWatch::WaitForFirst(const Deadline &deadline)
{
    const bool ready = WaitToRead(socket_, &deadline);
    const Arrived arrived = ArrivedOn(socket_);
    exchange_->firstByteAfter = std::chrono::duration_cast<milliseconds>(Clock::now() - started_);
    if (arrived.unread == 0) {
        exchange_->end = ready ? exchange_->end : End::kTimeOut;
        return false;
    }
    exchange_->segments = arrived.segments;
    NoteFirstSegment(arrived);
    return true;
}

void ReplyWatch::NoteFirstSegment(const Arrived &arrived)
{
    const std::size_t most = std::min(arrived.unread, kFirstReception);
    if (arrived.segments <= 1) { // 0 means unknown: take what arrived at once for the first
        sawFirstSegment_ = true;
        exchange_->firstBytes = arrived.unread;
        return;
    }
    const std::optional<std::size_t> first = FirstSegment(socket_, most);
    if (first && *first < most) {
        sawFirstSegment_ = true;
        exchange_->firstBytes = firstPiece_ = *first;
    } else if (first && most == kFirstReception) {
        sawFirstSegment_ = true;
        exchange_->segments = 1; // all that the first receive needs
    }
}

std::string_view ReplyWatch::Read(const Deadline &deadline, std::size_t most)
{
    if (Clock::now() > deadline || !WaitToRead(socket_, &deadline)) {
        exchange_->end = End::kTimeOut;
        return {};
    }
    const std::ptrdiff_t received = ReceiveSome(socket_, piece_, std::min(most, sizeof piece_));
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
    const std::vector<diagnostics::HeadLine> lines = diagnostics::ReadHeadLines(reply);
    const diagnostics::HeadLine *length = diagnostics::FindLine(lines, "Content-Length");
    const std::uint64_t came = reply.size() - headEnd - 4 + exchange_->beyond;
    if (length == nullptr) {
        return reply.ends_with("\r\n0\r\n\r\n"); // the last chunk
    }
    const std::int32_t announced = diagnostics::NumberIn(length->value);
    return announced >= 0 && came >= static_cast<std::uint32_t>(announced);
}

} // namespace client
