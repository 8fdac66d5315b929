// The one UTF-16 code unit type of the library, 16 bits on every platform, and
// the number of units of a character.
#pragma once

namespace pavonix {

#if defined(_WIN32)
using WideChar = wchar_t;
#else
using WideChar = char16_t;
#endif

static_assert(sizeof(WideChar) == 2, "wide text is UTF-16 on every platform");

// The units that the first character of `length` units takes: 2 for a surrogate pair.
inline int UnitsOfCharacter(const WideChar *text, int length)
{
    return length > 1 && (text[0] & 0xFC00) == 0xD800 && (text[1] & 0xFC00) == 0xDC00 ? 2 : 1;
}

// The units before the terminator.
inline int WideLength(const WideChar *text)
{
    int length = 0;
    while (text[length] != 0) {
        ++length;
    }
    return length;
}

} // namespace pavonix
