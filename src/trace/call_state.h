// The state of the running call, shared by the parts of the trace.
#pragma once

#include <cstdint>

namespace pavonix::trace {

struct CallState {
    bool started;          // Winsock was started: the URL could be used
    bool download;         // a file is to be stored
    bool replied;          // the library has looked at a reply
    bool afterFirst;       // the first reception of the connection is over
    int firstReceived;     // its result: bytes, 0 at the end of the stream, or -1
    std::uint32_t error;   // the system's error number if the first result is -1
    std::int64_t later;    // bytes received after it
    std::int32_t pieces;   // in so many receptions
    std::int64_t streamed; // bytes read from or written to the open stream
};

inline CallState state;

} // namespace pavonix::trace
