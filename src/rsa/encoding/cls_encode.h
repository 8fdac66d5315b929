// The encoder of a component, chosen by name, and the names. Cls is short for class, the
// prefix of the components that the facade uses.
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

// Accepts loose spellings: ignores "-", spaces and case, and a beginning is enough
// ("Base 32", "q", "hexadecimal"). An unknown name means base64.
EncodingMode EncodingModeFromName(const XString &name);

// The form in which the component stores a name: without spaces, trimmed, ASCII
// letters in lower case. Empty when memory runs out.
void NormaliseEncodingName(const XString &name, XString *normalised);

class ClsEncode {
public:
    ClsEncode();
    virtual ~ClsEncode() = default;
    ClsEncode(const ClsEncode &) = delete;
    ClsEncode &operator=(const ClsEncode &) = delete;

    void SetMode(const XString &name) { mode_ = EncodingModeFromName(name); }
    EncodingMode mode() const { return mode_; }

    // Writes the encoded bytes to `output`: appended to its content if `append` is true,
    // otherwise replacing it. The encoded text is taken as UTF-8, which matters only in
    // mode ansi, where it is the bytes themselves, zero bytes included. Mode html does
    // not encode bytes and leaves `output` unchanged. When memory runs out, nothing is
    // added and `output` is marked incomplete.
    void Encode(const DataBuffer &bytes, XString *output, bool append) const;

private:
    void EncodeInto(const std::uint8_t *bytes, std::uint32_t count, StringBuffer *text) const;

    EncodingMode mode_ = EncodingMode::kBase64;
    StringBuffer uuencodeFileMode_;
    XString uuencodeFileName_;
};

} // namespace pavonix
