// The socket contract over POSIX sockets.
#include "platform/sockets.h"

#include <arpa/inet.h>
#include <cerrno>
#include <fcntl.h>
#include <netdb.h>
#include <netinet/in.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

#include <cstring>

namespace pavonix::platform {

namespace {

// A connect interrupted by a signal continues in the background: waits for its result.
int FinishConnect(int fd)
{
    pollfd waiting = {fd, POLLOUT, 0};
    while (poll(&waiting, 1, -1) < 0 && errno == EINTR) {
    }
    int error = ECONNABORTED;
    socklen_t length = sizeof error;
    getsockopt(fd, SOL_SOCKET, SO_ERROR, &error, &length);
    return error == 0 ? 0 : kSocketError;
}

} // namespace

int StartWinsock(std::uint16_t version, std::uint16_t *granted)
{
    *granted = version;
    return 0;
}

int CleanupWinsock()
{
    return 0;
}

Socket OpenSocket(int family, int type, int protocol)
{
    int fd = socket(family, type | SOCK_CLOEXEC, protocol);
    if (fd == 0) {
        // a process without standard input gets descriptor 0, which would read as "none"
        fd = fcntl(fd, F_DUPFD_CLOEXEC, 1);
        close(0);
    }
    return fd < 0 ? kInvalidSocket : static_cast<Socket>(fd);
}

int CloseSocket(Socket socket)
{
    return close(static_cast<int>(socket)) == 0 || errno == EINTR ? 0 : kSocketError;
}

const HostEntry *ResolveHost(const char *name)
{
    static thread_local HostEntry entry;
    in_addr address = {};
    if (name[std::strspn(name, "0123456789.")] == 0 && inet_aton(name, &address) != 0) { // needs no resolver
        std::memcpy(entry.firstAddress, &address, sizeof entry.firstAddress);
        return &entry;
    }
    const hostent *found = gethostbyname(name); // null, or at least one IPv4 address
    if (found == nullptr) {
        return nullptr;
    }
    std::memcpy(entry.firstAddress, found->h_addr_list[0], sizeof entry.firstAddress);
    return &entry;
}

int ConnectSocket(Socket socket, const SocketAddress *address, int)
{
    sockaddr_in peer = {};
    peer.sin_family = address->family;
    std::memcpy(&peer.sin_port, address->port, sizeof address->port);
    std::memcpy(&peer.sin_addr, address->address, sizeof address->address);
    const int fd = static_cast<int>(socket);
    if (connect(fd, reinterpret_cast<const sockaddr *>(&peer), sizeof peer) == 0) {
        return 0;
    }
    return errno == EINTR ? FinishConnect(fd) : kSocketError;
}

int SendSocket(Socket socket, const char *bytes, int length)
{
    ssize_t sent = -1;
    do {
        sent = send(static_cast<int>(socket), bytes, static_cast<std::size_t>(length), MSG_NOSIGNAL);
    } while (sent < 0 && errno == EINTR);
    return sent < 0 ? kSocketError : static_cast<int>(sent);
}

int ReceiveSocket(Socket socket, char *bytes, int length)
{
    ssize_t received = -1;
    do {
        received = recv(static_cast<int>(socket), bytes, static_cast<std::size_t>(length), 0);
    } while (received < 0 && errno == EINTR);
    return received < 0 ? kSocketError : static_cast<int>(received);
}

int SetSocketOption(Socket socket, int level, int option, const void *value, int length)
{
    if (level != kSolSocket || option != kSoKeepAlive) {
        return kSocketError;
    }
    return setsockopt(static_cast<int>(socket), SOL_SOCKET, SO_KEEPALIVE, value, static_cast<socklen_t>(length));
}

} // namespace pavonix::platform
