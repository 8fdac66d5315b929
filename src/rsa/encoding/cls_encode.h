// The encoder that a component chooses by name.
#pragma once

#include "rsa/encoding/encoding_mode.h"
#include "rsa/text/data_buffer.h"
#include "rsa/text/string_buffer.h"
#include "rsa/text/x_string.h"

namespace pavonix {

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
