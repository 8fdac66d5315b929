// Wraps the platform's socket functions and writes each call with its result.
#include "platform/last_error.h"
#include "trace/call_state.h"
#include "trace/line.h"
#include "trace/real.h"

#include <algorithm>
#include <cstring>
#include <string_view>

namespace pavonix::trace {

namespace {

void WriteError(const char *call, std::uint32_t error)
{
    Line(call).Text(" failed, system error ").Number(error);
}

void WriteResult(const char *done, const char *call, std::uint32_t error)
{
    if (error == 0) {
        Line{done};
    } else {
        WriteError(call, error);
    }
}

// Leaves out the token's text, with which a reader of the trace could buy once.
void WriteRequest(const char *bytes, int length)
{
    const std::string_view request(bytes, static_cast<std::size_t>(length));
    Line line("sending ");
    line.Number(length).Text(" bytes:");
    line.Text("\n    | ");
    constexpr std::string_view kName = "User-Cert: ";
    const std::size_t token = request.find(kName);
    if (token == request.npos) {
        line.Bytes(request);
        return;
    }
    const std::size_t start = token + kName.size();
    const std::size_t end = std::min(request.find('\r', start), request.size());
    line.Bytes(request.substr(0, start)).Text("(").Number(static_cast<std::int64_t>(end - start)).Text(" characters)");
    line.Bytes(request.substr(end));
}

void WriteLaterReceptions()
{
    if (state.pieces > 0) {
        Line("received ").Number(state.later).Text(" bytes more in ").Number(state.pieces).Text(" pieces");
        state.later = state.pieces = 0;
    }
}

void WriteFirstReception(const char *bytes, int received)
{
    state.afterFirst = true;
    state.firstReceived = received;
    if (received > 0) {
        Line("received ").Number(received).Text(" bytes:\n    | ").Bytes({bytes, static_cast<std::size_t>(received)});
    } else if (received == 0) {
        Line("the server closed the connection without a byte");
    } else {
        WriteError("receive", LastSystemError());
    }
}

} // namespace

extern "C" {

int __wrap_StartWinsock(std::uint16_t version, std::uint16_t *granted)
{
    state.started = true;
    const int error = __real_StartWinsock(version, granted);
    WriteResult("Winsock started", "start of Winsock", static_cast<std::uint32_t>(error));
    return error;
}

const HostEntry *__wrap_ResolveHost(const char *name)
{
    const HostEntry *entry = __real_ResolveHost(name);
    Line line("resolve ");
    line.Bytes(name);
    if (entry == nullptr) {
        line.Text(": no such name, or it has no IPv4 address");
        return entry;
    }
    const char *separator = ": ";
    for (const std::uint8_t part : entry->firstAddress) {
        line.Text(separator).Number(part);
        separator = ".";
    }
    return entry;
}

int __wrap_ConnectSocket(Socket socket, const SocketAddress *address, int addressLength)
{
    state.afterFirst = false;
    Line("connecting to port ").Number(address->port[0] * 256 + address->port[1]);
    const int result = __real_ConnectSocket(socket, address, addressLength);
    WriteResult("connected", "connect", result == 0 ? 0 : LastSystemError());
    return result;
}

int __wrap_SendSocket(Socket socket, const char *bytes, int length)
{
    WriteRequest(bytes, length);
    const int sent = __real_SendSocket(socket, bytes, length);
    if (sent < 0) {
        WriteError("send", LastSystemError());
    } else if (sent < length) {
        Line("the system took only ").Number(sent).Text(" bytes of it");
    }
    return sent;
}

int __wrap_ReceiveSocket(Socket socket, char *bytes, int length)
{
    if (!state.afterFirst) {
        Line("waiting for the reply");
        const int received = __real_ReceiveSocket(socket, bytes, length);
        WriteFirstReception(bytes, received);
        return received;
    }
    if (state.pieces == 0) {
        Line("waiting for the rest of the body");
    }
    const int received = __real_ReceiveSocket(socket, bytes, length);
    if (received > 0) {
        state.later += received;
        ++state.pieces;
    } else {
        const std::uint32_t error = LastSystemError();
        WriteLaterReceptions();
        WriteResult("the server closed the connection", "receive", received == 0 ? 0 : error);
    }
    return received;
}

int __wrap_CloseSocket(Socket socket)
{
    WriteLaterReceptions();
    const int result = __real_CloseSocket(socket);
    Line(result == 0 ? "close the connection: done" : "close the connection: failed");
    return result;
}

} // extern "C"

} // namespace pavonix::trace
