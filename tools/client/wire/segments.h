// What the system knows about received segments, beyond recv: linux/ and windows/.
#pragma once

#include "wire/socket.h"

#include <cstddef>
#include <optional>

namespace client {

struct Arrived {
    unsigned segments = 0;  // TCP segments with data, since the connection began; 0 if unknown
    std::size_t unread = 0; // bytes
};

[[nodiscard]] Arrived ArrivedOn(int socket);

// Makes the system record when each packet arrives, for as long as it exists. It takes
// effect a moment after the first one is constructed.
class ArrivalTimes {
public:
    ArrivalTimes();

private:
    Socket holder_;
};

// Makes a socket report arrival times, and keeps segments from being merged.
void WatchSegments(int socket);

// How many of the first `most` unread bytes belong to the first segment, which ends where
// the arrival time changes. Reads nothing. Empty if the system reports no times.
[[nodiscard]] std::optional<std::size_t> FirstSegment(int socket, std::size_t most);

} // namespace client
