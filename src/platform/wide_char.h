// The one UTF-16 code unit type of the library, 16 bits on every platform.
#pragma once

namespace pavonix {

#if defined(_WIN32)
using WideChar = wchar_t;
#else
using WideChar = char16_t;
#endif

static_assert(sizeof(WideChar) == 2, "wide text is UTF-16 on every platform");

} // namespace pavonix
