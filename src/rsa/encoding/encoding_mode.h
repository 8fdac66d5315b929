// The names of the encodings and what they stand for.
#pragma once

#include "rsa/text/x_string.h"

#include <cstdint>

namespace pavonix {

enum class EncodingMode : std::int32_t {
    kBase64 = 1,
    kQuotedPrintable = 2,
    kHex = 3,
    kUrl = 4,
    kHtml = 5,
    kAnsi = 6,
    kBase32 = 7,
    kUuencode = 8,
};

// Reads a name loosely: "-", blanks and case do not count, and a beginning is
// enough ("Base 32", "q", "hexadecimal"). An unknown name is base64.
EncodingMode EncodingModeFromName(const XString &name);

// The form in which the component stores a name: without spaces, trimmed, ASCII
// letters in lower case. Empty when there is no memory.
void NormaliseEncodingName(const XString &name, XString *normalised);

} // namespace pavonix
