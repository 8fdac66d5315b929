// A text that keeps up to three representations (UTF-16, ANSI, UTF-8) and makes the
// missing ones on demand.
#pragma once

#include "platform/wide_char.h"
#include "rsa/text/data_buffer.h"
#include "rsa/text/string_buffer.h"
#include "rsa/text/objects.h"

#include <cstdint>

namespace pavonix {

// At least one representation is valid at any time, and all valid ones hold the same
// text; only the ANSI form may have '?' for characters that its code page lacks. When
// memory for a conversion runs out, its result is the empty text, and the next request
// tries again.
class XString : public ZentorpObject {
public:
    XString();

    // A null or empty text clears the string.
    void SetFromAnsi(const char *text);
    void SetFromUtf8(const char *text);
    void SetFromUtf16(const WideChar *text);
    void AppendUtf8(const char *text);
    void AppendUtf8N(const char *bytes, std::int32_t count);
    void AppendAnsi(const char *text);
    void AppendAnsiN(const char *bytes, std::int32_t count);
    void Clear();
    // Copies one valid representation without conversion, UTF-16 first.
    void CopyFrom(const XString &other);

    // Valid until the next operation that changes the text.
    const StringBuffer &GetAnsi() const;
    const StringBuffer &GetUtf8() const;
    const WideChar *GetUtf16() const;
    // UTF-16 units before the terminator.
    std::int32_t LengthUtf16() const;
    bool isEmpty() const;
    // False when text was lost because memory ran out since the last set or clear.
    bool complete() const { return lost_ == 0; }
    void MarkIncomplete() { lost_ = 1; }

private:
    void AppendTo(StringBuffer *narrow, const char *bytes, std::int32_t count);
    void KeepOnly(const bool *valid);
    void MakeNarrow(StringBuffer *narrow, bool *valid, std::uint32_t codePage) const;
    void ConvertTo(std::uint32_t codePage, StringBuffer *narrow) const;
    bool MakeWide() const;

    std::uint32_t lost_ = 0; // 1 when text was lost
    // Const getters make representations on demand.
    mutable bool utf16Valid_ = true;
    mutable bool ansiValid_ = true;
    mutable bool utf8Valid_ = true;
    mutable DataBuffer utf16_; // with a two-byte terminator
    mutable StringBuffer ansi_;
    mutable StringBuffer utf8_;
};

} // namespace pavonix
