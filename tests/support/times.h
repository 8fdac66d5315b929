// The number of repetitions of tests that detect leaks.
#pragma once

#include <cstdlib>

namespace pavonix::test {

// Returns the number in the environment variable PAVONIX_TIMES, else `few`.
inline int Times(int few)
{
    const char *times = std::getenv("PAVONIX_TIMES");
    return times == nullptr ? few : std::atoi(times);
}

} // namespace pavonix::test
