// The clock contract over POSIX.
#include "platform/clock.h"

#include <ctime>

namespace pavonix::platform {

void ReadLocalTime(LocalTime *time)
{
    const std::time_t now = std::time(nullptr);
    std::tm local = {};
    tzset(); // localtime_r need not look at a changed TZ
    localtime_r(&now, &local);
    *time = {local.tm_year + 1900, local.tm_mon + 1, local.tm_mday, local.tm_hour, local.tm_min, local.tm_sec};
}

std::uint32_t ReadTickCount()
{
    timespec now = {};
    clock_gettime(CLOCK_MONOTONIC, &now);
    return static_cast<std::uint32_t>(static_cast<std::uint64_t>(now.tv_sec) * 1000u +
                                      static_cast<std::uint64_t>(now.tv_nsec) / 1000000u);
}

} // namespace pavonix::platform
