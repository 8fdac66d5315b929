// The library-wide substring search.
#pragma once

#include <cstdint>

namespace pavonix {

constexpr std::int32_t kFindNullArgument = -1;
constexpr std::int32_t kFindAbsent = -2;

// The first index at or after `start` at which `haystack` contains `needle`, both
// NUL-terminated 8-bit texts. kFindAbsent when there is none or the needle is empty,
// kFindNullArgument when a text is null. `start` must be inside the haystack or on its
// terminator. Case-sensitive, byte by byte.
std::int32_t FindText(const char *haystack, const char *needle, std::int32_t start);

} // namespace pavonix
