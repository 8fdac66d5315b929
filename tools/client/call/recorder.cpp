// Sits between the library and the platform's sockets (src/CMakeLists.txt): limits the
// time of the library's calls and records them. Calls that are not being recorded, and
// those of other sockets, pass unchanged.
#include "call/call_record.h"
#include "diagnostics/device_reading.h"
#include "trace/real.h"
#include "wire/name_fault.h"
#include "wire/segments.h"

#include <algorithm>
#include <future>
#include <iomanip>
#include <sstream>
#include <thread>
#include <utility>

namespace client {

namespace {

using diagnostics::End;
using pavonix::platform::HostEntry;
using pavonix::platform::SocketAddress;
using std::chrono::milliseconds;

constexpr milliseconds kReadOn{1000};

// The current record if it is about this socket, or null.
CallRecord *RecordOf(pavonix::platform::Socket socket)
{
    CallRecord *record = Recording::Current();
    return record != nullptr && record->socket == static_cast<int>(socket) ? record : nullptr;
}

// The system's look-up has no time-out. It runs on its own thread, which is abandoned
// when the deadline passes.
const HostEntry *LookUpInTime(CallRecord *record, const char *host)
{
    struct Found {
        HostEntry entry{};
        int error = 0;
    };
    static HostEntry entry; // by contract, valid until the next look-up
    record->host = host;
    std::promise<Found> promise;
    std::future<Found> result = promise.get_future();
    std::thread([name = record->host, done = std::move(promise)]() mutable {
        const HostEntry *found = pavonix::platform::__real_ResolveHost(name.c_str());
        done.set_value(found == nullptr ? Found{{}, LastLookUpError()} : Found{*found, 0});
    }).detach();
    record->timedOut = record->deadline && result.wait_until(*record->deadline) != std::future_status::ready;
    const Found found = record->timedOut ? Found{{}, kLookUpTimeOut} : result.get();
    record->nameError = found.error;
    entry = found.entry;
    return found.error == 0 ? &entry : nullptr;
}

void NoteFirst(CallRecord *record, int received)
{
    diagnostics::Exchange &exchange = record->exchange;
    const Arrived arrived = ArrivedOn(record->socket);
    exchange.firstByteAfter = std::chrono::duration_cast<milliseconds>(CallRecord::Clock::now() - record->sentAt);
    exchange.firstBytes = static_cast<std::size_t>(std::max(received, 0));
    // if more bytes have arrived since, the segments of these can no longer be counted
    exchange.segments = arrived.unread == 0 ? arrived.segments : 0;
}

// False once the deadline has passed, even if bytes keep arriving.
bool WaitInTime(const CallRecord &record)
{
    const Deadline *deadline = record.deadlineOrNull();
    return (deadline == nullptr || CallRecord::Clock::now() < *deadline) && WaitToRead(record.socket, deadline);
}

std::string ProgressOf(const CallRecord &record)
{
    constexpr double kMegabyte = 1e6;
    const diagnostics::DeviceReading device(record.exchange);
    std::ostringstream text;
    text << std::fixed << std::setprecision(1) << double(record.received) / kMegabyte << " MB";
    if (device.announced() != 0) {
        text << " of " << double(device.announced() + device.headLength()) / kMegabyte;
    }
    return text.str();
}

void NoteReceived(CallRecord *record, const char *bytes, int received)
{
    if (record->received == 0) {
        NoteFirst(record, received);
    }
    if (received > 0) {
        record->Keep(bytes, static_cast<std::size_t>(received));
        record->received += static_cast<std::uint64_t>(received);
    } else {
        record->exchange.end = received == 0 ? End::kClosed : End::kReset;
    }
    if (record->progress != nullptr) {
        record->progress->Show(ProgressOf(*record));
    }
}

// Whether bytes that the library leaves unread may show what went wrong.
bool IsWorthReadingOn(const diagnostics::Exchange &exchange)
{
    const diagnostics::DeviceReading device(exchange);
    const bool sold = exchange.call == diagnostics::Call::kPurchase && device.status() == 200;
    const std::size_t body = exchange.reply.size() - std::min(exchange.reply.size(), device.headLength());
    return !device.headIsWhole() || (!sold && (device.announced() == 0 || body < device.announced()));
}

// Before the library closes its connection: reads on for up to a second.
void ReadOn(CallRecord *record)
{
    diagnostics::Exchange &exchange = record->exchange;
    const int socket = std::exchange(record->socket, -1);
    if (!record->readsOn || exchange.reply.empty() || exchange.end != End::kOpen) {
        return;
    }
    Deadline until = CallRecord::Clock::now() + (IsWorthReadingOn(exchange) ? kReadOn : milliseconds(0));
    until = record->deadline ? std::min(until, *record->deadline) : until;
    char piece[4096];
    while (exchange.beyond == 0 && exchange.end == End::kOpen && WaitToRead(socket, &until)) {
        const std::ptrdiff_t received = ReceiveSome(socket, piece, sizeof piece);
        if (received > 0) {
            record->Keep(piece, static_cast<std::size_t>(received));
        } else {
            exchange.end = received == 0 ? End::kClosed : End::kReset;
        }
    }
}

} // namespace

} // namespace client

namespace pavonix::platform {

using client::CallRecord;

extern "C" {

const HostEntry *RecordResolveHost(const char *name)
{
    CallRecord *record = client::Recording::Current();
    return record == nullptr ? __real_ResolveHost(name) : client::LookUpInTime(record, name);
}

int RecordConnectSocket(Socket socket, const SocketAddress *address, int addressLength)
{
    CallRecord *record = client::Recording::Current();
    if (record == nullptr) {
        return __real_ConnectSocket(socket, address, addressLength);
    }
    record->address = client::Dotted(*address) + ":" + std::to_string(client::PortOf(*address));
    record->socket = static_cast<int>(socket);
    record->connectError = client::ConnectInTime(record->socket, *address, record->deadlineOrNull());
    record->timedOut = record->deadline && record->connectError == client::kSocketTimeOut;
    client::SetLastSocketError(record->connectError);
    return record->connectError == 0 ? 0 : kSocketError;
}

int RecordSendSocket(Socket socket, const char *bytes, int length)
{
    const int sent = __real_SendSocket(socket, bytes, length);
    const int error = client::LastSocketError();
    if (CallRecord *record = client::RecordOf(socket); record != nullptr) {
        record->sendError = sent < 0 ? error : 0;
        record->exchange.request.append(bytes, static_cast<std::size_t>(std::max(sent, 0)));
        record->sentAt = CallRecord::Clock::now();
    }
    client::SetLastSocketError(error);
    return sent;
}

int RecordReceiveSocket(Socket socket, char *bytes, int length)
{
    CallRecord *record = client::RecordOf(socket);
    if (record != nullptr && !client::WaitInTime(*record)) {
        record->timedOut = true;
        record->exchange.end = diagnostics::End::kTimeOut;
        client::SetLastSocketError(client::kSocketTimeOut);
        return kSocketError;
    }
    const int received = __real_ReceiveSocket(socket, bytes, length);
    const int error = client::LastSocketError();
    if (record != nullptr) {
        client::NoteReceived(record, bytes, received);
    }
    client::SetLastSocketError(error);
    return received;
}

int RecordCloseSocket(Socket socket)
{
    if (CallRecord *record = client::RecordOf(socket); record != nullptr) {
        client::ReadOn(record);
    }
    return __real_CloseSocket(socket);
}

} // extern "C"

} // namespace pavonix::platform
