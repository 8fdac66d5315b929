#include "token/time_text.h"

#include <ctime>

namespace token {

namespace chrono = std::chrono;

WallTime WallTimeNow()
{
    const auto now = chrono::floor<chrono::milliseconds>(chrono::system_clock::now());
    const std::time_t seconds = chrono::system_clock::to_time_t(now);
    std::tm local{};
    localtime_r(&seconds, &local);
    return WallTime(now.time_since_epoch() + chrono::seconds(local.tm_gmtoff));
}

} // namespace token
