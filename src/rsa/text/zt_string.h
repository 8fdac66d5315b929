// The facade's string, used by the shop code and the HTTP client.
#pragma once

#include "rsa/text/x_string.h"
#include "rsa/text/objects.h"

#include <cstdint>

namespace pavonix {

// Its 8-bit characters are in the ANSI code page unless put_Utf8(true) was
// called. When memory runs out, text is dropped and complete() is false.
class ZtString : public ZtObject {
public:
    ZtString() = default;
    explicit ZtString(const char *text) { Append(text); }
    ZtString(const ZtString &other);
    ZtString &operator=(const ZtString &other);

    void put_Utf8(bool utf8) { utf8_ = utf8; }

    void Set(const char *text);
    void Append(const char *text);
    void AppendN(const char *bytes, std::int32_t count);
    void Append(const ZtString &other);
    void Append(const StringBuffer &other);
    void Clear() { text_.Clear(); }

    const char *c_str() const { return narrow().c_str(); }
    std::int32_t length() const { return narrow().length(); }
    bool isEmpty() const { return text_.isEmpty(); }
    bool complete() const { return text_.complete(); }

    // The engine's operations write their results here.
    XString &text() { return text_; }
    const XString &text() const { return text_; }

private:
    const StringBuffer &narrow() const { return utf8_ ? text_.GetUtf8() : text_.GetAnsi(); }

    XString text_;
    bool utf8_ = false;
};

} // namespace pavonix
