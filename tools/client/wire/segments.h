// What the system knows of a connection and recv does not tell: linux/ or windows/.
#pragma once

#include "wire/socket.h"

#include <cstddef>
#include <optional>

namespace client {

struct Arrived {
    unsigned segments = 0;  // TCP segments with data, since the connection began; 0 when the system tells none
    std::size_t unread = 0; // bytes that wait to be read
};

[[nodiscard]] Arrived ArrivedOn(int socket);

// While one lives, the system notes when each packet arrives; it begins a moment
// after the first is made.
class ArrivalTimes {
public:
    ArrivalTimes();

private:
    Socket holder_;
};

// Has the times of arrival told with what is read from a socket, and segments kept
// apart where they would be joined.
void WatchSegments(int socket);

// How many of the first `most` bytes that wait to be read came in the first
// segment. It ends where the time of arrival changes, so that segments that wait
// together are told apart; nothing is read. Nothing when the system tells no times.
[[nodiscard]] std::optional<std::size_t> FirstSegment(int socket, std::size_t most);

} // namespace client
