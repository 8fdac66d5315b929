// ws2.dll, with Winsock's records; every call before the start fails.
#include "system/coredll.h"
#include "system/open_handles.h"
#include "platform/sockets.h"

#include <cerrno>
#include <cstddef>
#include <cstring>
#include <sys/socket.h>

namespace pavonix::device {

namespace {

using platform::kInvalidSocket;
using platform::kSocketError;
using platform::Socket;
using platform::SocketAddress;

constexpr int kSystemNotReady = 10091;
constexpr int kVersionNotSupported = 10092;
constexpr std::uint16_t kNewestVersion = 0x0202;

struct WsaData {
    std::uint16_t version, highVersion;
    char description[257], systemStatus[129];
    std::uint16_t maxSockets, maxDatagram;
    char *vendorInfo;
};
static_assert(sizeof(WsaData) == 400 && offsetof(WsaData, maxSockets) == 390);

struct Host {
    const char *name;
    const char **aliases;
    std::int16_t addressType, addressLength;
    const std::uint8_t **addresses;
};
static_assert(sizeof(Host) == 16 && offsetof(Host, addresses) == 12);

const void *HandleOf(Socket socket)
{
    return reinterpret_cast<const void *>(socket);
}

// Checks what every call on a socket needs, and sets the error.
bool IsUsable(Socket socket)
{
    if (openHandles.winsockStarts == 0) {
        return FailWith(kErrorWinsockNotStarted, false);
    }
    return openHandles.sockets.Has(HandleOf(socket)) || FailWith(kErrorNotASocket, false);
}

int Start(std::uint32_t version, WsaData *data)
{
    const std::uint32_t major = version & 0xFF, minor = version >> 8 & 0xFF;
    if (major == 0) {
        return kVersionNotSupported;
    }
    std::memset(data, 0, sizeof *data);
    const int result = platform::StartWinsock(static_cast<std::uint16_t>(version), &data->version);
    data->highVersion = kNewestVersion;
    if (major > 2 || (major == 2 && minor > 2)) {
        data->version = kNewestVersion;
    }
    openHandles.winsockStarts += result == 0;
    return result;
}

// The library cleans up more often than it starts. A surplus clean-up uses up a start of
// the application, and fails if none is left. The last one resets the open sockets, even
// while a call waits on one.
int Cleanup()
{
    if (openHandles.winsockStarts == 0) {
        return FailWith(kErrorWinsockNotStarted, kSocketError);
    }
    --openHandles.winsockStarts;
    if (openHandles.winsockStarts == 0) {
        for (const void *socket : openHandles.sockets.Take()) {
            shutdown(static_cast<int>(reinterpret_cast<std::intptr_t>(socket)), SHUT_RDWR);
        }
    }
    return platform::CleanupWinsock();
}

Socket Open(int family, int type, int protocol)
{
    if (openHandles.winsockStarts == 0) {
        return FailWith(kErrorWinsockNotStarted, kInvalidSocket);
    }
    Socket socket = platform::OpenSocket(family, type, protocol);
    if (socket != kInvalidSocket) {
        openHandles.sockets.Add(HandleOf(socket));
    }
    return socket;
}

int Close(Socket socket)
{
    if (!IsUsable(socket)) {
        return kSocketError;
    }
    openHandles.sockets.Remove(HandleOf(socket));
    return platform::CloseSocket(socket);
}

const Host *Resolve(const char *name)
{
    static const char *noAliases[] = {nullptr};
    static std::uint8_t address[4];
    static const std::uint8_t *addresses[] = {address, nullptr};
    static const Host host = {"", noAliases, 2, sizeof address, addresses};
    if (openHandles.winsockStarts == 0) {
        return FailWith<const Host *>(kErrorWinsockNotStarted, nullptr);
    }
    const platform::HostEntry *found = platform::ResolveHost(name);
    if (found == nullptr) {
        return FailWith<const Host *>(kErrorHostNotFound, nullptr);
    }
    std::memcpy(address, found->firstAddress, sizeof address);
    return &host;
}

// Sets the thread error from this machine's errno.
int WithError(int result)
{
    if (result == kSocketError) {
        lastError = errno == ECONNREFUSED ? kErrorRefused : errno == ETIMEDOUT ? kErrorTimedOut : kErrorReset;
    }
    return result;
}

int Connect(Socket socket, const SocketAddress *address, int length)
{
    return IsUsable(socket) ? WithError(platform::ConnectSocket(socket, address, length)) : kSocketError;
}

int Send(Socket socket, const char *bytes, int length, int)
{
    return IsUsable(socket) ? WithError(platform::SendSocket(socket, bytes, length)) : kSocketError;
}

int Receive(Socket socket, char *bytes, int length, int)
{
    return IsUsable(socket) ? WithError(platform::ReceiveSocket(socket, bytes, length)) : kSocketError;
}

int SetOption(Socket socket, int level, int option, const char *value, int length)
{
    return IsUsable(socket) ? platform::SetSocketOption(socket, level, option, value, length) : kSocketError;
}

// For a program that is a server, too.
int Bind(Socket socket, const SocketAddress *address, int length)
{
    return IsUsable(socket) ? WithError(bind(static_cast<int>(socket), reinterpret_cast<const sockaddr *>(address),
                                             static_cast<socklen_t>(length)))
                            : kSocketError;
}

int Listen(Socket socket, int backlog)
{
    return IsUsable(socket) ? WithError(listen(static_cast<int>(socket), backlog)) : kSocketError;
}

Socket Accept(Socket socket, SocketAddress *, int *)
{
    if (!IsUsable(socket)) {
        return kInvalidSocket;
    }
    const int accepted = accept(static_cast<int>(socket), nullptr, nullptr);
    if (WithError(accepted) < 0) {
        return kInvalidSocket;
    }
    openHandles.sockets.Add(HandleOf(static_cast<Socket>(accepted)));
    return static_cast<Socket>(accepted);
}

int GetName(Socket socket, SocketAddress *address, int *length)
{
    auto size = static_cast<socklen_t>(*length);
    return IsUsable(socket)
               ? WithError(getsockname(static_cast<int>(socket), reinterpret_cast<sockaddr *>(address), &size))
               : kSocketError;
}

} // namespace

void AddSocketImports(std::vector<Import> &table)
{
    table.push_back(Failing<&Start, kSystemNotReady>(kWinsockDll, "WSAStartup"));
    table.push_back(Unfailing<&Cleanup>(kWinsockDll, "WSACleanup"));
    table.push_back(Failing<&Open, kInvalidSocket>(kWinsockDll, "socket"));
    table.push_back(Failing<&Close, kSocketError>(kWinsockDll, "closesocket"));
    table.push_back(Failing<&Resolve, 0>(kWinsockDll, "gethostbyname"));
    table.push_back(Failing<&Connect, kSocketError>(kWinsockDll, "connect"));
    table.push_back(Failing<&Send, kSocketError>(kWinsockDll, "send"));
    table.push_back(Failing<&Receive, kSocketError>(kWinsockDll, "recv"));
    table.push_back(Failing<&SetOption, kSocketError>(kWinsockDll, "setsockopt"));
    table.push_back(Failing<&Bind, kSocketError>(kWinsockDll, "bind"));
    table.push_back(Failing<&Listen, kSocketError>(kWinsockDll, "listen"));
    table.push_back(Failing<&Accept, kInvalidSocket>(kWinsockDll, "accept"));
    table.push_back(Failing<&GetName, kSocketError>(kWinsockDll, "getsockname"));
}

} // namespace pavonix::device
