// Part of a port: TCP, one function for each Winsock 2 call, with Winsock's meaning. All
// calls block; a port resumes a call that a signal interrupted. C linkage, so that a
// test can replace a function.
#pragma once

#include <cstdint>

namespace pavonix::platform {

using Socket = std::uint32_t; // 0 is never a valid handle: it means "none"

constexpr Socket kInvalidSocket = 0xFFFFFFFFu;
constexpr int kSocketError = -1;
constexpr int kSolSocket = 0xFFFF;
constexpr int kSoKeepAlive = 8;

// An IPv4 socket address as Winsock lays it out.
struct SocketAddress {
    std::uint16_t family;    // 2, AF_INET
    std::uint8_t port[2];    // network order
    std::uint8_t address[4]; // network order
    std::uint8_t zero[8];
};
static_assert(sizeof(SocketAddress) == 16);

// The resolver's result for a host, owned by the platform and valid until the next
// ResolveHost on the same thread.
struct HostEntry {
    std::uint8_t firstAddress[4]; // IPv4, network order
};

extern "C" {

// WSAStartup: asks for `version` (low byte major), stores the version granted.
// 0 for success, an error number otherwise.
int StartWinsock(std::uint16_t version, std::uint16_t *granted);
// WSACleanup: balances one successful StartWinsock; an extra call is harmless.
int CleanupWinsock();

// socket: kInvalidSocket on failure, never 0.
Socket OpenSocket(int family, int type, int protocol);
// closesocket: 0, or kSocketError when the handle is not an open socket.
int CloseSocket(Socket socket);

// gethostbyname, for names and dotted addresses alike. Null when the name has
// no IPv4 address.
const HostEntry *ResolveHost(const char *name);

// connect: 0, or kSocketError.
int ConnectSocket(Socket socket, const SocketAddress *address, int addressLength);
// send with flags 0: bytes taken, or kSocketError. Never raises a signal.
int SendSocket(Socket socket, const char *bytes, int length);
// recv with flags 0: bytes received, 0 at an orderly close, or kSocketError.
int ReceiveSocket(Socket socket, char *bytes, int length);
// setsockopt, with Winsock's numbers for level and option.
int SetSocketOption(Socket socket, int level, int option, const void *value, int length);

} // extern "C"

} // namespace pavonix::platform
