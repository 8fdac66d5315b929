#include "token/time_text.h"

#include <windows.h>

namespace token {

WallTime WallTimeNow()
{
    namespace chrono = std::chrono;
    SYSTEMTIME now;
    GetLocalTime(&now);
    const chrono::year_month_day date(chrono::year(now.wYear), chrono::month(now.wMonth), chrono::day(now.wDay));
    return chrono::local_days(date) + chrono::hours(now.wHour) + chrono::minutes(now.wMinute) +
           chrono::seconds(now.wSecond) + chrono::milliseconds(now.wMilliseconds);
}

} // namespace token
