// A text that keeps up to three representations (UTF-16, ANSI, UTF-8) and makes
// the missing ones when they are asked for.
#pragma once

#include "platform/wide_char.h"
#include "rsa/text/data_buffer.h"
#include "rsa/text/string_buffer.h"
#include "rsa/text/zentorp_object.h"

#include <cstdint>

namespace pavonix {

// At least one representation is valid at any time, and all valid ones hold the
// same text. A conversion that gets no memory yields the empty text and is tried
// again at the next request.
class XString : public ZentorpObject {
public:
    XString();

    // A null or empty text clears the string.
    void setFromAnsi(const char *text);
    void setFromAnsiN(const char *bytes, std::int32_t count);
    void setFromUtf8(const char *text);
    void setFromUtf16(const WideChar *text);
    void appendUtf8(const char *text);
    void appendUtf8N(const char *bytes, std::int32_t count);
    void appendAnsi(const char *text);
    void appendAnsiN(const char *bytes, std::int32_t count);
    void clear();
    // Copies one valid representation, without conversion.
    void copyFrom(const XString &other);

    // Valid until the next operation that changes the text.
    const StringBuffer &getAnsi() const;
    const StringBuffer &getUtf8() const;
    const WideChar *getUtf16() const;
    // UTF-16 units before the terminator.
    std::int32_t lengthUtf16() const;
    bool isEmpty() const;
    // False when text was lost for want of memory since the last set or clear.
    bool complete() const { return lost_ == 0; }
    void markIncomplete() { lost_ = 1; }

private:
    void AppendTo(StringBuffer *narrow, const char *bytes, std::int32_t count);
    void KeepOnly(const bool *valid);
    void MakeNarrow(StringBuffer *narrow, bool *valid, std::uint32_t codePage) const;
    bool MakeWide() const;

    std::uint32_t lost_ = 0; // 1 when text was lost
    // Representations are made on demand behind const getters.
    mutable bool utf16Valid_ = true;
    mutable bool ansiValid_ = true;
    mutable bool utf8Valid_ = true;
    mutable DataBuffer utf16_; // with a two-byte terminator
    mutable StringBuffer ansi_;
    mutable StringBuffer utf8_;
};

} // namespace pavonix
