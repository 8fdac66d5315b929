// Differences between the builds of the library that a caller sees.
#pragma once

#include <string>

namespace pavonix::e2e {

enum class Flavour { kLinux, kWindows, kCe };

// The library's path of a file of this machine: `\tmp\x` or, under Wine, `Z:\tmp\x`.
// ASCII paths only.
inline std::u16string LibraryPath(Flavour flavour, const std::string &path)
{
    std::u16string text = flavour == Flavour::kWindows ? u"Z:" : u"";
    for (const char c : path) {
        text += c == '/' ? u'\\' : static_cast<char16_t>(c);
    }
    return text;
}

} // namespace pavonix::e2e
