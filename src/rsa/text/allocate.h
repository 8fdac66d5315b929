// The one way the library asks for memory: null instead of an exception.
#pragma once

#include <cstddef>
#include <new>

namespace pavonix {

// An uninitialised array of `count` elements, released with delete[]; null when
// there is no memory.
template <typename T>
[[nodiscard]] T *AllocateArray(std::size_t count)
{
    return new (std::nothrow) T[count];
}

// One object; null when there is no memory.
template <typename T, typename... Arguments>
[[nodiscard]] T *AllocateObject(Arguments &&...arguments)
{
    return new (std::nothrow) T(static_cast<Arguments &&>(arguments)...);
}

} // namespace pavonix
