// Part of a port, for the tracing build: why a call failed.
#pragma once

#include <cstdint>

namespace pavonix::platform {

extern "C" {

// GetLastError, valid directly after a contract function that failed: the system's own
// number, an errno on POSIX.
std::uint32_t LastSystemError();

} // extern "C"

} // namespace pavonix::platform
