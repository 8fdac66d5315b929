// How often a test that looks for growth repeats itself.
#pragma once

#include <cstdlib>

namespace pavonix::test {

// As often as the environment's PAVONIX_TIMES says, else `few` times.
inline int Times(int few)
{
    const char *times = std::getenv("PAVONIX_TIMES");
    return times == nullptr ? few : std::atoi(times);
}

} // namespace pavonix::test
