// What the kernel knows of a connection and recv does not tell.
#pragma once

#include <chrono>
#include <cstddef>

namespace client {

using Deadline = std::chrono::steady_clock::time_point;

struct Arrived {
    unsigned segments = 0;  // TCP segments with data, since the connection began
    std::size_t unread = 0; // bytes that wait to be read
};

[[nodiscard]] Arrived ArrivedOn(int socket);

// Waits until there is something to read, or an end or an error. False when the
// deadline comes first; without one it waits as long as it takes.
[[nodiscard]] bool WaitToRead(int socket, const Deadline *deadline);
[[nodiscard]] bool WaitToWrite(int socket, const Deadline *deadline);

} // namespace client
