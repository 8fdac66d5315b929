// The tap on the platform's sockets, and the scripted peer.
#include "platform/sockets.h"
#include "support/tap.h"

#include <algorithm>

using namespace pavonix;
using pavonix::tap::Enter;
using pavonix::tap::TheState;

extern "C" {

int __real_StartWinsock(std::uint16_t version, std::uint16_t *granted);
int __real_CleanupWinsock();
platform::Socket __real_OpenSocket(int family, int type, int protocol);
int __real_CloseSocket(platform::Socket socket);
const platform::HostEntry *__real_ResolveHost(const char *name);
int __real_ConnectSocket(platform::Socket socket, const platform::SocketAddress *address, int addressLength);
int __real_SendSocket(platform::Socket socket, const char *bytes, int length);
int __real_ReceiveSocket(platform::Socket socket, char *bytes, int length);
int __real_SetSocketOption(platform::Socket socket, int level, int option, const void *value, int length);

int __wrap_StartWinsock(std::uint16_t version, std::uint16_t *granted)
{
    constexpr int kSystemNotReady = 10091;
    if (Enter("StartWinsock", std::to_string(version))) {
        return kSystemNotReady;
    }
    const int result = __real_StartWinsock(version, granted);
    *granted = TheState().winsockVersion != 0 ? TheState().winsockVersion : *granted;
    return result;
}

int __wrap_CleanupWinsock()
{
    Enter("CleanupWinsock"); // its result is ignored
    return __real_CleanupWinsock();
}

platform::Socket __wrap_OpenSocket(int family, int type, int protocol)
{
    if (Enter("OpenSocket", std::to_string(family) + "," + std::to_string(type) + "," + std::to_string(protocol))) {
        return platform::kInvalidSocket;
    }
    const platform::Socket socket = __real_OpenSocket(family, type, protocol);
    TheState().held.sockets += socket != platform::kInvalidSocket ? 1 : 0;
    return socket;
}

int __wrap_CloseSocket(platform::Socket socket)
{
    const bool fails = Enter("CloseSocket");
    const int result = __real_CloseSocket(socket); // the descriptor is closed in any case
    TheState().held.sockets -= result == 0 ? 1 : 0;
    return fails ? platform::kSocketError : result;
}

const platform::HostEntry *__wrap_ResolveHost(const char *name)
{
    static const platform::HostEntry loopback = {{127, 0, 0, 1}};
    if (Enter("ResolveHost", name)) {
        return nullptr;
    }
    return TheState().peer != nullptr ? &loopback : __real_ResolveHost(name);
}

int __wrap_ConnectSocket(platform::Socket socket, const platform::SocketAddress *address, int addressLength)
{
    if (Enter("ConnectSocket", std::to_string(address->port[0] * 256 + address->port[1]))) {
        return platform::kSocketError;
    }
    return TheState().peer != nullptr ? 0 : __real_ConnectSocket(socket, address, addressLength);
}

int __wrap_SendSocket(platform::Socket socket, const char *bytes, int length)
{
    if (Enter("SendSocket")) {
        return platform::kSocketError;
    }
    if (TheState().peer == nullptr) {
        return __real_SendSocket(socket, bytes, length);
    }
    const int taken = std::min(length, TheState().peer->takes);
    TheState().peer->received.append(bytes, static_cast<std::size_t>(taken));
    return taken;
}

int __wrap_ReceiveSocket(platform::Socket socket, char *bytes, int length)
{
    if (Enter("ReceiveSocket", std::to_string(length))) {
        return platform::kSocketError;
    }
    tap::ScriptedPeer *peer = TheState().peer;
    if (peer == nullptr) {
        return __real_ReceiveSocket(socket, bytes, length);
    }
    if (peer->next == peer->replies.size()) {
        return 0;
    }
    std::string &reply = peer->replies[peer->next];
    const std::size_t count = std::min(reply.size(), static_cast<std::size_t>(length));
    std::copy_n(reply.data(), count, bytes);
    reply.erase(0, count);
    peer->next += reply.empty() ? 1 : 0;
    return static_cast<int>(count);
}

int __wrap_SetSocketOption(platform::Socket socket, int level, int option, const void *value, int length)
{
    const std::string detail = std::to_string(level) + "," + std::to_string(option) + "," +
                               std::to_string(*static_cast<const std::int32_t *>(value)) + "," + std::to_string(length);
    if (Enter("SetSocketOption", detail)) {
        return platform::kSocketError;
    }
    return __real_SetSocketOption(socket, level, option, value, length);
}

} // extern "C"
