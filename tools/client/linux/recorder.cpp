#include "linux/recorder.h"

#include "call/progress.h"
#include "linux/real_calls.h"
#include "diagnostics/device_reading.h"
#include "wire/segments.h"

#include <algorithm>
#include <cerrno>
#include <future>
#include <thread>
#include <utility>

namespace client {

namespace {

using diagnostics::End;
using std::chrono::milliseconds;

constexpr milliseconds kListenOn{1000};

void NoteFirst(CallRecord *record, ssize_t received)
{
    diagnostics::Exchange &exchange = record->exchange;
    const Arrived arrived = ArrivedOn(record->socket);
    exchange.firstByteAfter = std::chrono::duration_cast<milliseconds>(CallRecord::Clock::now() - record->sentAt);
    exchange.firstBytes = static_cast<std::size_t>(std::max<ssize_t>(received, 0));
    // when more has come already, nobody can say which segments brought these bytes
    exchange.segments = arrived.unread == 0 ? arrived.segments : 0;
}

// Whether the library leaves something unread that tells what was wrong.
bool IsWorthListening(const diagnostics::Exchange &exchange)
{
    const diagnostics::DeviceReading device(exchange);
    const bool sold = exchange.call == diagnostics::Call::kPurchase && device.status() == 200;
    const std::size_t body = exchange.reply.size() - std::min(exchange.reply.size(), device.headLength());
    return !device.headIsWhole() || (!sold && (device.announced() == 0 || body < device.announced()));
}

} // namespace

// A look-up has no time-out that could be set. It is made on a thread of its own,
// which is left behind when it takes too long.
hostent *NoteLookUp(CallRecord *record, const char *host)
{
    using Answer = std::pair<hostent *, int>;
    record->host = host;
    std::promise<Answer> promise;
    std::future<Answer> answer = promise.get_future();
    std::thread([name = record->host, answered = std::move(promise)]() mutable {
        hostent *found = real::GetHostByName(name.c_str());
        answered.set_value({found, h_errno});
    }).detach();
    if (record->deadline && answer.wait_until(*record->deadline) != std::future_status::ready) {
        record->timedOut = true;
        record->nameError = TRY_AGAIN;
        return nullptr;
    }
    const auto [found, error] = answer.get();
    record->nameError = found == nullptr ? error : 0;
    return found;
}

int NoteConnect(CallRecord *record, int socket, const sockaddr_in &peer)
{
    const Address address = AddressOf(peer);
    record->address = Dotted(address) + ":" + std::to_string(address.port);
    record->socket = socket;
    record->connectError = ConnectInTime(socket, address, record->deadlineOrNull());
    record->timedOut = record->deadline && record->connectError == ETIMEDOUT;
    errno = record->connectError;
    return record->connectError == 0 ? 0 : -1;
}

ssize_t NoteSend(CallRecord *record, const void *bytes, size_t count, int flags)
{
    const ssize_t sent = real::Send(record->socket, bytes, count, flags);
    if (sent < 0 && errno != EINTR) {
        record->sendError = errno;
    } else if (sent > 0) {
        record->exchange.request.append(static_cast<const char *>(bytes), static_cast<std::size_t>(sent));
    }
    record->sentAt = CallRecord::Clock::now();
    return sent;
}

ssize_t NoteReceive(CallRecord *record, void *buffer, size_t room, int flags)
{
    if (!WaitToRead(record->socket, record->deadlineOrNull())) {
        record->timedOut = true;
        record->exchange.end = End::kTimeOut;
        errno = ETIMEDOUT;
        return -1;
    }
    const ssize_t received = real::Receive(record->socket, buffer, room, flags);
    const int error = errno;
    if (received < 0 && error == EINTR) {
        return received;
    }
    if (record->received == 0) {
        NoteFirst(record, received);
    }
    if (received > 0) {
        record->Keep(static_cast<const char *>(buffer), static_cast<std::size_t>(received));
        record->received += static_cast<std::uint64_t>(received);
    } else {
        record->exchange.end = received == 0 ? End::kClosed : End::kReset;
    }
    if (record->showProgress) {
        ShowProgress(*record);
    }
    errno = error;
    return received;
}

void NoteClose(CallRecord *record)
{
    diagnostics::Exchange &exchange = record->exchange;
    const int socket = std::exchange(record->socket, -1);
    if (!record->listensOn || exchange.reply.empty() || exchange.end != End::kOpen) {
        return;
    }
    Deadline until = CallRecord::Clock::now() + (IsWorthListening(exchange) ? kListenOn : milliseconds(0));
    until = record->deadline ? std::min(until, *record->deadline) : until;
    char piece[4096];
    while (exchange.beyond == 0 && exchange.end == End::kOpen && WaitToRead(socket, &until)) {
        const ssize_t received = real::Receive(socket, piece, sizeof piece, 0);
        if (received > 0) {
            record->Keep(piece, static_cast<std::size_t>(received));
        } else {
            exchange.end = received == 0 ? End::kClosed : End::kReset;
        }
    }
}

} // namespace client
