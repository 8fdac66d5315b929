// What was seen of one exchange between a device and a server.
#pragma once

#include "http/first_reception.h"

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <string>

namespace diagnostics {

// How many bytes the device takes at once, and all it ever sees of a head.
inline constexpr std::size_t kFirstReception = pavonix::kFirstReception;

enum class Call { kDownload, kPurchase };

enum class End {
    kOpen,    // the connection stood when the observer left
    kClosed,  // the server closed it
    kReset,   // the server reset it
    kTimeOut, // the observer's time ran out while bytes were missing
};

struct Exchange {
    Call call = Call::kDownload;
    std::string request;                      // as sent; empty when it was not seen
    std::string reply;                        // as received, from its first byte
    std::uint64_t beyond = 0;                 // bytes that came after those and were not kept
    End end = End::kOpen;                     // how the reply ended
    std::size_t firstBytes = kFirstReception; // came at once, or would at worst; less than the reply when it was split
    unsigned segments = 0;                    // TCP segments that brought the first reception; 0 when not known
    std::chrono::milliseconds firstByteAfter{0};
    std::chrono::milliseconds waited{0}; // until the time-out, after kTimeOut
};

} // namespace diagnostics
