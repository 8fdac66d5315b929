// TCP sockets over IPv4, as the client needs them of its system: linux/ or windows/.
// Errors are the system's own numbers; system.h has words for them.
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

// Closes a socket when its owner goes.
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

    int get() const { return number_; } // negative when there is none

private:
    int number_ = -1;
};

// Looks a host up with the library's own function, and leaves the port alone. Returns 0,
// or an error for NameRule (wire/name_fault.h) when there is no IPv4 address.
[[nodiscard]] int LookUpIpv4(const std::string &host, Address *address);

[[nodiscard]] Socket OpenSocket();
// Connects a socket that blocks, and leaves it blocking. Returns 0 or an error for
// ConnectRule, that of a time-out also when the deadline comes; null is no deadline.
[[nodiscard]] int ConnectInTime(int socket, const Address &peer, const Deadline *deadline);

// For port 0 the one that was picked is in *address.
[[nodiscard]] Socket Listen(Address *address, int mostWaiting);
[[nodiscard]] Socket Accept(int listener, Address *client);

[[nodiscard]] int LastSocketError();
void SetLastSocketError(int error);
extern const int kSocketTimeOut; // the error of a connection that takes too long

// Waits until there is something to read, or an end or an error, on one of them, and
// returns the first that has it. Negative when the deadline comes first; without one
// it waits as long as it takes.
[[nodiscard]] int WaitToReadOne(std::initializer_list<int> sockets, const Deadline *deadline);
[[nodiscard]] bool WaitToRead(int socket, const Deadline *deadline);
[[nodiscard]] bool WaitToWrite(int socket, const Deadline *deadline);

// Returns how many bytes were taken without waiting, negative for an error.
[[nodiscard]] std::ptrdiff_t SendSome(int socket, std::string_view bytes);
// False when the other side has gone, or takes nothing until the deadline.
[[nodiscard]] bool SendAll(int socket, std::string_view bytes, const Deadline &deadline);
// Returns 0 at the end, negative for an error.
[[nodiscard]] std::ptrdiff_t ReceiveSome(int socket, char *room, std::size_t most);

void SendWithoutDelay(int socket); // small pieces too
void EndSending(int socket);
void ResetWhenClosed(int socket);

} // namespace client
