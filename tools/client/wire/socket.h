// The client's TCP sockets over IPv4: linux/ and windows/. Errors are the system's numbers;
// NetworkErrorText (system.h) returns their messages.
#pragma once

#include "platform/sockets.h"

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <initializer_list>
#include <string>
#include <string_view>
#include <utility>

namespace client {

using Deadline = std::chrono::steady_clock::time_point;

using Address = pavonix::platform::SocketAddress; // laid out like the system's sockaddr_in

[[nodiscard]] Address MakeAddress(std::uint16_t port); // of all of this machine's interfaces
[[nodiscard]] std::uint16_t PortOf(const Address &address);
// The IP address alone, as in 127.0.0.1.
[[nodiscard]] std::string Dotted(const Address &address);

void CloseSocket(int socket);

// Owns a socket.
class Socket {
public:
    Socket() = default;
    explicit Socket(int number) : number_(number) {}
    Socket(Socket &&other) noexcept : number_(std::exchange(other.number_, -1)) {}
    Socket &operator=(Socket &&other) noexcept
    {
        std::swap(number_, other.number_);
        return *this;
    }
    ~Socket() { Close(); }

    void Close()
    {
        if (number_ >= 0) {
            CloseSocket(std::exchange(number_, -1));
        }
    }

    int get() const { return number_; } // negative for none

private:
    int number_ = -1;
};

// Looks up a host with the library's own function; the port is unchanged. Returns 0, or an
// error for NameRule (wire/name_fault.h).
[[nodiscard]] int LookUpIpv4(const std::string &host, Address *address);

[[nodiscard]] Socket OpenSocket();
// The socket stays blocking. Returns 0 or an error for ConnectRule; a passed deadline
// counts as a time-out. Null means no deadline.
[[nodiscard]] int ConnectInTime(int socket, const Address &peer, const Deadline *deadline);

// Sets the port in *address if it was 0.
[[nodiscard]] Socket Listen(Address *address, int mostWaiting);
[[nodiscard]] Socket Accept(int listener, Address *client);

[[nodiscard]] int LastSocketError();
void SetLastSocketError(int error);
extern const int kSocketTimeOut; // the error number of a time-out

// Waits for bytes, the end or an error, and returns the first of the sockets that has
// one; negative if the deadline passes first. Null means no deadline.
[[nodiscard]] int WaitToReadOne(std::initializer_list<int> sockets, const Deadline *deadline);
[[nodiscard]] bool WaitToRead(int socket, const Deadline *deadline);
[[nodiscard]] bool WaitToWrite(int socket, const Deadline *deadline);

// Returns how many bytes were sent without blocking, negative for an error.
[[nodiscard]] std::ptrdiff_t SendSome(int socket, std::string_view bytes);
// False if the peer is gone or the deadline passes.
[[nodiscard]] bool SendAll(int socket, std::string_view bytes, const Deadline &deadline);
// Returns 0 at the end of the stream, negative for an error.
[[nodiscard]] std::ptrdiff_t ReceiveSome(int socket, char *room, std::size_t most);

void SendWithoutDelay(int socket); // TCP_NODELAY
void EndSending(int socket);
void ResetWhenClosed(int socket);

} // namespace client
