// The only way the library allocates memory: null instead of an exception.
#pragma once

#include <cstddef>
#include <new>

namespace pavonix {

// An uninitialised array of `count` elements, released with delete[]; null when
// memory runs out.
template <typename T>
[[nodiscard]] T *AllocateArray(std::size_t count)
{
    return new (std::nothrow) T[count];
}

// One object; null when memory runs out.
template <typename T, typename... Arguments>
[[nodiscard]] T *AllocateObject(Arguments &&...arguments)
{
    return new (std::nothrow) T(static_cast<Arguments &&>(arguments)...);
}

} // namespace pavonix
