// wire/socket.h and wire/segments.h for Winsock. A socket handle fits into an int: Windows
// uses only the lower 32 bits.
#include "wire/segments.h"

#include <winsock2.h>

#include <algorithm>

namespace client {

namespace {

// Called before each use, because the library calls WSACleanup more often than WSAStartup.
void StartWinsock()
{
    WSADATA data;
    WSAStartup(MAKEWORD(2, 2), &data);
}

constexpr u_long kBlocking = 0, kNonblocking = 1;

SOCKET HandleOf(int socket)
{
    return static_cast<SOCKET>(socket);
}

void SetMode(int socket, u_long mode)
{
    ioctlsocket(HandleOf(socket), FIONBIO, &mode);
}

// False if the deadline passes before a socket is ready.
bool Wait(fd_set *toRead, fd_set *toWrite, fd_set *failed, const Deadline *deadline)
{
    using std::chrono::microseconds;
    timeval left = {};
    if (deadline != nullptr) {
        const auto time = std::chrono::ceil<microseconds>(*deadline - std::chrono::steady_clock::now());
        const auto count = std::max<microseconds::rep>(time.count(), 0);
        left = {static_cast<long>(count / 1000000), static_cast<long>(count % 1000000)};
    }
    return select(0, toRead, toWrite, failed, deadline == nullptr ? nullptr : &left) != 0;
}

// Address is laid out like sockaddr_in.
static_assert(sizeof(Address) == sizeof(sockaddr_in));

const sockaddr *SystemAddress(const Address &address)
{
    return reinterpret_cast<const sockaddr *>(&address);
}

sockaddr *SystemAddress(Address *address)
{
    return reinterpret_cast<sockaddr *>(address);
}

} // namespace

void CloseSocket(int socket)
{
    closesocket(HandleOf(socket));
}

Socket OpenSocket()
{
    StartWinsock();
    return Socket(static_cast<int>(socket(AF_INET, SOCK_STREAM, 0)));
}

int ConnectInTime(int socket, const Address &peer, const Deadline *deadline)
{
    SetMode(socket, kNonblocking);
    const bool connected = connect(HandleOf(socket), SystemAddress(peer), sizeof peer) == 0;
    int error = connected ? 0 : WSAGetLastError();
    if (error == WSAEWOULDBLOCK) {
        error = WSAETIMEDOUT;
        int length = sizeof error;
        if (WaitToWrite(socket, deadline)) {
            getsockopt(HandleOf(socket), SOL_SOCKET, SO_ERROR, reinterpret_cast<char *>(&error), &length);
        }
    }
    SetMode(socket, kBlocking);
    return error;
}

Socket Listen(Address *address, int mostWaiting)
{
    int length = sizeof *address;
    Socket listener = OpenSocket();
    const SOCKET handle = HandleOf(listener.get());
    if (bind(handle, SystemAddress(*address), length) != 0 || listen(handle, mostWaiting) != 0) {
        return {};
    }
    getsockname(handle, SystemAddress(address), &length);
    return listener;
}

Socket Accept(int listener, Address *client)
{
    int length = sizeof *client;
    Socket accepted(static_cast<int>(accept(HandleOf(listener), SystemAddress(client), &length)));
    return accepted;
}

int LastSocketError()
{
    return WSAGetLastError();
}

void SetLastSocketError(int error)
{
    WSASetLastError(error);
}

const int kSocketTimeOut = WSAETIMEDOUT;

int WaitToReadOne(std::initializer_list<int> sockets, const Deadline *deadline)
{
    fd_set wanted;
    FD_ZERO(&wanted);
    for (const int socket : sockets) {
        FD_SET(HandleOf(socket), &wanted);
    }
    if (!Wait(&wanted, nullptr, nullptr, deadline)) {
        return -1;
    }
    // if select failed, reading reports the reason
    const auto *const ready = std::find_if(sockets.begin(), sockets.end(),
                                           [&](int socket) { return FD_ISSET(HandleOf(socket), &wanted) != 0; });
    return ready == sockets.end() ? *sockets.begin() : *ready;
}

bool WaitToWrite(int socket, const Deadline *deadline)
{
    fd_set wanted, failed; // a failed connect is reported only in the latter
    FD_ZERO(&wanted);
    FD_ZERO(&failed);
    FD_SET(HandleOf(socket), &wanted);
    FD_SET(HandleOf(socket), &failed);
    return Wait(nullptr, &wanted, &failed, deadline);
}

std::ptrdiff_t SendSome(int socket, std::string_view bytes)
{
    SetMode(socket, kNonblocking);
    const int sent = send(HandleOf(socket), bytes.data(), static_cast<int>(bytes.size()), 0);
    const int error = WSAGetLastError();
    SetMode(socket, kBlocking);
    WSASetLastError(error);
    return sent < 0 && error == WSAEWOULDBLOCK ? 0 : sent;
}

std::ptrdiff_t ReceiveSome(int socket, char *room, std::size_t most)
{
    return recv(HandleOf(socket), room, static_cast<int>(most), 0);
}

void SendWithoutDelay(int socket)
{
    const BOOL on = TRUE;
    setsockopt(HandleOf(socket), IPPROTO_TCP, TCP_NODELAY, reinterpret_cast<const char *>(&on), sizeof on);
}

void EndSending(int socket)
{
    shutdown(HandleOf(socket), SD_SEND);
}

void ResetWhenClosed(int socket)
{
    const linger atOnce = {1, 0};
    setsockopt(HandleOf(socket), SOL_SOCKET, SO_LINGER, reinterpret_cast<const char *>(&atOnce), sizeof atOnce);
}

// Windows reports neither segments nor their arrival times.

Arrived ArrivedOn(int socket)
{
    u_long unread = 0;
    ioctlsocket(HandleOf(socket), FIONREAD, &unread);
    return {0, unread};
}

ArrivalTimes::ArrivalTimes() = default;

void WatchSegments(int) {}

std::optional<std::size_t> FirstSegment(int, std::size_t)
{
    return std::nullopt;
}

} // namespace client
