// An observed exchange between a device and a server.
#pragma once

#include "http/first_reception.h"

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <string>

namespace diagnostics {

// The size of the device's first receive, which must contain the whole head.
inline constexpr std::size_t kFirstReception = pavonix::kFirstReception;

enum class Call { kDownload, kPurchase };

enum class End {
    kOpen,    // the connection was open when the observer stopped
    kClosed,  // the server closed it
    kReset,   // the server reset it
    kTimeOut, // the observer's time-out expired while bytes were missing
};

struct Exchange {
    Call call = Call::kDownload;
    std::string request;                      // as sent; empty if not observed
    std::string reply;                        // as received, from its first byte
    std::uint64_t beyond = 0;                 // further bytes, which were not kept
    End end = End::kOpen;                     // how the reply ended
    std::size_t firstBytes = kFirstReception; // bytes in the first packet; less than the reply if it was split
    unsigned segments = 0;                    // TCP segments that contained the first 1024 bytes; 0 if unknown
    std::chrono::milliseconds firstByteAfter{0};
    std::chrono::milliseconds waited{0}; // until the time-out, after kTimeOut
};

} // namespace diagnostics
