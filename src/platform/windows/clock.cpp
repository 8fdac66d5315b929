// The clock contract over Windows.
#include "platform/clock.h"

#include "platform/windows/system.h"

namespace pavonix::platform {

void ReadLocalTime(LocalTime *time)
{
    SYSTEMTIME now;
    GetLocalTime(&now);
    *time = {now.wYear, now.wMonth, now.wDay, now.wHour, now.wMinute, now.wSecond};
}

std::uint32_t ReadTickCount()
{
    return GetTickCount();
}

} // namespace pavonix::platform
