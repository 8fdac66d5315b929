// The ANSI code pages that a device may have.
#pragma once

#include "platform/wide_char.h"

#include <cstdint>
#include <span>
#include <string>

namespace pavonix::device {

struct CodePair {
    std::uint16_t key, value;
};

// The tables are sorted by their keys. A code is a byte, or two with the lead byte
// in the upper half.
struct AnsiPage {
    std::span<const CodePair> codes;      // of characters
    std::span<const CodePair> characters; // of codes
    std::span<const CodePair> lookAlikes; // characters for characters that the page lacks

    // A character that the page lacks becomes its look-alike, as on the device; one
    // without becomes '?' and sets *lossy.
    std::string ToBytes(const WideChar *text, int length, bool *lossy) const;
    // A byte without a character becomes U+30FB.
    std::u16string ToWide(const std::uint8_t *bytes, int length) const;
};

extern const AnsiPage kWestern;  // Windows-1252
extern const AnsiPage kJapanese; // 932, of one and two bytes

} // namespace pavonix::device
