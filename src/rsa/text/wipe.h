// Overwrites what held a secret before its memory is given away.
#pragma once

#include <cstddef>
#include <cstring>

namespace pavonix {

// Fills `count` bytes with zeros; `bytes` may be null when there are none.
inline void Wipe(void *bytes, std::size_t count)
{
    if (count != 0) {
        std::memset(bytes, 0, count);
        // the compiler must take the zeros for read, or it would drop the store to memory that is about to be freed
        asm volatile("" : : "r"(bytes) : "memory");
    }
}

} // namespace pavonix
