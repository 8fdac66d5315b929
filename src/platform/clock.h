// Part of a port: time.
#pragma once

#include <cstdint>

namespace pavonix::platform {

struct LocalTime {
    int year, month, day; // month and day from 1
    int hour, minute, second;
};

extern "C" {

// GetLocalTime, in the device's own time zone.
void ReadLocalTime(LocalTime *time);
// GetTickCount: milliseconds since the system started, wrapping at 32 bits.
std::uint32_t ReadTickCount();

} // extern "C"

} // namespace pavonix::platform
