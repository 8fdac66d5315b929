// wire/socket.h for Linux.
#include "wire/socket.h"

#include <fcntl.h>
#include <netinet/in.h>
#include <netinet/tcp.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>

namespace client {

namespace {

int MillisecondsTo(const Deadline *deadline)
{
    using std::chrono::milliseconds;
    if (deadline == nullptr) {
        return -1;
    }
    const auto left = std::chrono::ceil<milliseconds>(*deadline - std::chrono::steady_clock::now());
    return static_cast<int>(std::clamp(left, milliseconds(0), milliseconds(1000 * 1000)).count());
}

// False if the deadline passes first.
bool Wait(pollfd *sockets, std::size_t count, const Deadline *deadline)
{
    int ready = 0;
    do {
        ready = poll(sockets, count, MillisecondsTo(deadline));
    } while (ready < 0 && errno == EINTR);
    return ready != 0;
}

void Set(int socket, int level, int option, int value)
{
    setsockopt(socket, level, option, &value, sizeof value);
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
    close(socket);
}

Socket OpenSocket()
{
    return Socket(socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0));
}

int ConnectInTime(int socket, const Address &peer, const Deadline *deadline)
{
    const int flags = fcntl(socket, F_GETFL);
    fcntl(socket, F_SETFL, flags | O_NONBLOCK);
    int error = connect(socket, SystemAddress(peer), sizeof peer) == 0 ? 0 : errno;
    if (error == EINPROGRESS) {
        error = ETIMEDOUT;
        socklen_t length = sizeof error;
        if (WaitToWrite(socket, deadline)) {
            getsockopt(socket, SOL_SOCKET, SO_ERROR, &error, &length);
        }
    }
    fcntl(socket, F_SETFL, flags);
    return error == ECONNRESET ? 0 : error; // connected, then reset at once: sending will report that
}

Socket Listen(Address *address, int mostWaiting)
{
    socklen_t length = sizeof *address;
    Socket listener = OpenSocket();
    Set(listener.get(), SOL_SOCKET, SO_REUSEADDR, 1);
    if (bind(listener.get(), SystemAddress(*address), length) != 0 || listen(listener.get(), mostWaiting) != 0) {
        return {};
    }
    getsockname(listener.get(), SystemAddress(address), &length);
    return listener;
}

Socket Accept(int listener, Address *client)
{
    socklen_t length = sizeof *client;
    Socket accepted(accept4(listener, SystemAddress(client), &length, SOCK_CLOEXEC));
    return accepted;
}

int LastSocketError()
{
    return errno;
}

void SetLastSocketError(int error)
{
    errno = error;
}

const int kSocketTimeOut = ETIMEDOUT;

int WaitToReadOne(std::initializer_list<int> sockets, const Deadline *deadline)
{
    std::array<pollfd, 2> waiting = {};
    std::transform(sockets.begin(), sockets.end(), waiting.begin(),
                   [](int socket) { return pollfd{socket, POLLIN, 0}; });
    if (Wait(waiting.data(), sockets.size(), deadline)) {
        for (const pollfd &each : waiting) {
            if (each.revents != 0) {
                return each.fd;
            }
        }
    }
    return -1;
}

bool WaitToWrite(int socket, const Deadline *deadline)
{
    pollfd waiting = {socket, POLLOUT, 0};
    return Wait(&waiting, 1, deadline);
}

std::ptrdiff_t SendSome(int socket, std::string_view bytes)
{
    const ssize_t sent = send(socket, bytes.data(), bytes.size(), MSG_NOSIGNAL | MSG_DONTWAIT);
    return sent < 0 && (errno == EAGAIN || errno == EINTR) ? 0 : sent;
}

std::ptrdiff_t ReceiveSome(int socket, char *room, std::size_t most)
{
    return recv(socket, room, most, 0);
}

void SendWithoutDelay(int socket)
{
    Set(socket, IPPROTO_TCP, TCP_NODELAY, 1);
}

void EndSending(int socket)
{
    shutdown(socket, SHUT_WR);
}

void ResetWhenClosed(int socket)
{
    const linger atOnce = {1, 0};
    setsockopt(socket, SOL_SOCKET, SO_LINGER, &atOnce, sizeof atOnce);
}

} // namespace client
