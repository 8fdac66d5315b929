// The socket contract over Winsock 2.
#include "platform/sockets.h"

#include "platform/windows/system.h"

namespace pavonix::platform {

// Handles are 64 bits wide on x64, but the system keeps their values in 32.

int StartWinsock(std::uint16_t version, std::uint16_t *granted)
{
    WSADATA data = {};
    const int error = WSAStartup(version, &data);
    *granted = data.wVersion;
    return error;
}

int CleanupWinsock()
{
    return WSACleanup();
}

Socket OpenSocket(int family, int type, int protocol)
{
    return static_cast<Socket>(socket(family, type, protocol));
}

int CloseSocket(Socket socket)
{
    return closesocket(socket);
}

const HostEntry *ResolveHost(const char *name)
{
    constexpr int kAddressFamily = 2;
    const hostent *found = gethostbyname(name);
    if (found == nullptr || found->h_addrtype != kAddressFamily || found->h_addr_list[0] == nullptr) {
        return nullptr;
    }
    // Winsock keeps the entry per thread until the next call, as the contract asks
    return reinterpret_cast<const HostEntry *>(found->h_addr_list[0]);
}

int ConnectSocket(Socket socket, const SocketAddress *address, int addressLength)
{
    return connect(socket, reinterpret_cast<const sockaddr *>(address), addressLength);
}

int SendSocket(Socket socket, const char *bytes, int length)
{
    return send(socket, bytes, length, 0);
}

int ReceiveSocket(Socket socket, char *bytes, int length)
{
    return recv(socket, bytes, length, 0);
}

int SetSocketOption(Socket socket, int level, int option, const void *value, int length)
{
    return setsockopt(socket, level, option, static_cast<const char *>(value), length);
}

} // namespace pavonix::platform
