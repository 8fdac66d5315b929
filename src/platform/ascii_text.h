// Fast conversion of ASCII, which nearly all texts of a call are. The ports convert other
// texts one character at a time, with calls of the system's converter for each.
#pragma once

#include "platform/code_pages.h"

#include <algorithm>

namespace pavonix::platform {

// True if all units are ASCII and the code page is known to contain ASCII unchanged.
template <typename Unit>
bool IsAscii(std::uint32_t codePage, const Unit *text, int length)
{
    const bool known = codePage == kAnsiCodePage || codePage == kUtf8CodePage || (codePage >= 1250 && codePage <= 1258);
    return known && std::all_of(text, text + length, [](Unit unit) { return unit >= 0 && unit < 0x80; });
}

// Converts a text for which IsAscii is true, with the arguments and results of the
// contract's conversions.
template <typename From, typename To>
int CopyAscii(const From *text, int length, To *target, int room)
{
    if (room == 0) {
        return length;
    }
    if (length > room) {
        return 0;
    }
    std::transform(text, text + length, target, [](From unit) { return static_cast<To>(unit); });
    return length;
}

} // namespace pavonix::platform
