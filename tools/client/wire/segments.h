// What the kernel knows of a connection and recv does not tell.
#pragma once

#include "wire/file_descriptor.h"

#include <chrono>
#include <cstddef>
#include <optional>

namespace client {

using Deadline = std::chrono::steady_clock::time_point;

struct Arrived {
    unsigned segments = 0;  // TCP segments with data, since the connection began
    std::size_t unread = 0; // bytes that wait to be read
};

[[nodiscard]] Arrived ArrivedOn(int socket);

// While one lives, the system notes when each packet arrives; it begins a moment
// after the first is made.
class ArrivalTimes {
public:
    ArrivalTimes();

private:
    FileDescriptor holder_;
};

// Has the times of arrival told with what is read from a socket.
void TellArrivalTimes(int socket);

// How many of the first `most` bytes that wait to be read came in the first
// segment. It ends where the time of arrival changes, so that segments that wait
// together are told apart; nothing is read. Nothing when the system tells no times.
[[nodiscard]] std::optional<std::size_t> FirstSegment(int socket, std::size_t most);

// Waits until there is something to read, or an end or an error. False when the
// deadline comes first; without one it waits as long as it takes.
[[nodiscard]] bool WaitToRead(int socket, const Deadline *deadline);
[[nodiscard]] bool WaitToWrite(int socket, const Deadline *deadline);

} // namespace client
