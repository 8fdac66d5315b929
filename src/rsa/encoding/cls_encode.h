// The encoder that a component chooses by name, and what the names stand for.
#pragma once

#include "rsa/text/data_buffer.h"
#include "rsa/text/string_buffer.h"
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

class ClsEncode {
public:
    ClsEncode();
    virtual ~ClsEncode() = default;
    ClsEncode(const ClsEncode &) = delete;
    ClsEncode &operator=(const ClsEncode &) = delete;

    void SetMode(const XString &name) { mode_ = EncodingModeFromName(name); }
    EncodingMode mode() const { return mode_; }

    // Puts the text of the bytes into `output`: behind its content with `append`
    // set, else in its place. The encoded text counts as UTF-8, which matters in
    // mode ansi alone, where it is the bytes themselves, zero bytes included.
    // Mode html is no encoding of bytes: it leaves `output` as it is in either
    // case. Without memory no part of the encoding is added, and `output` is
    // marked incomplete.
    void Encode(const DataBuffer &bytes, XString *output, bool append) const;

private:
    void EncodeInto(const std::uint8_t *bytes, std::uint32_t count, StringBuffer *text) const;

    EncodingMode mode_ = EncodingMode::kBase64;
    StringBuffer uuencodeFileMode_;
    XString uuencodeFileName_;
};

} // namespace pavonix
