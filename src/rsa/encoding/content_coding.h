// The codecs between bytes and text.
#pragma once

#include "rsa/text/data_buffer.h"
#include "rsa/text/string_buffer.h"

#include <cstdint>

namespace pavonix {

// Each encoder appends the text of `count` bytes; a null pointer counts as no bytes. When
// memory runs out, text is dropped and text->complete() is false.
class ContentCoding {
public:
    ContentCoding() = default;
    virtual ~ContentCoding() = default;

    // RFC 4648 section 4, padded, on one line of any length.
    static void EncodeBase64(const std::uint8_t *bytes, std::uint32_t count, StringBuffer *text);
    // Replaces `bytes` with what `length` characters decode to. Decoding ends at
    // the first "=" or zero byte. Spaces, line ends and every character below "+"
    // or above "z" are skipped; the characters between that are not base64, "-"
    // and "_" among them, count as the value 127 and corrupt the bytes around them.
    // Bits of an incomplete byte are dropped. False only when memory runs out.
    [[nodiscard]] static bool DecodeBase64(const char *text, std::uint32_t length, DataBuffer *bytes);
    // The same for a zero-terminated text; appends the bytes, or nothing when memory runs
    // out. Not used by the three calls.
    static void DecodeBase64(const char *text, StringBuffer *bytes);

    // Two upper-case digits a byte, no separators.
    static void EncodeHex(const std::uint8_t *bytes, std::uint32_t count, StringBuffer *text);
    // RFC 4648 section 6, padded, on one line.
    static void EncodeBase32(const std::uint8_t *bytes, std::uint32_t count, StringBuffer *text);
    // RFC 2045 section 6.7, escapes in upper case. A CR LF pair is a line break of
    // the text; any other CR or LF is escaped, as is a space at the end of a line.
    // Soft line breaks keep every line within the line length.
    void EncodeQuotedPrintable(const std::uint8_t *bytes, std::uint32_t count, StringBuffer *text) const;
    // RFC 3986 section 2.1: all but the unreserved characters escaped, in upper case.
    static void EncodeUrl(const std::uint8_t *bytes, std::uint32_t count, StringBuffer *text);
    // POSIX uuencode with its begin and end lines; zero bits are a grave accent.
    static void EncodeUuencode(const std::uint8_t *bytes, std::uint32_t count, const char *mode, const char *fileName,
                               StringBuffer *text);
    // The bytes as they are.
    static void EncodeAnsi(const std::uint8_t *bytes, std::uint32_t count, StringBuffer *text);

private:
    std::int32_t lineLength_ = 72; // below the 76 that RFC 2045 allows
};

} // namespace pavonix
