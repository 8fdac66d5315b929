// Overwrites memory that held a secret before it is freed or reused.
#pragma once

#include <cstddef>
#include <cstring>

namespace pavonix {

// Fills `count` bytes with zeros; `bytes` may be null if `count` is 0.
inline void Wipe(void *bytes, std::size_t count)
{
    if (count != 0) {
        std::memset(bytes, 0, count);
        // the compiler must assume that the zeros are read, or it would drop the store to memory about to be freed
        asm volatile("" : : "r"(bytes) : "memory");
    }
}

} // namespace pavonix
