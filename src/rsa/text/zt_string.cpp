#include "rsa/text/zt_string.h"

namespace pavonix {

ZtString::ZtString(const ZtString &other) : ZtObject(), utf8_(other.utf8_)
{
    text_.copyFrom(other.text_);
}

ZtString &ZtString::operator=(const ZtString &other)
{
    if (this != &other) {
        utf8_ = other.utf8_;
        text_.copyFrom(other.text_);
    }
    return *this;
}

void ZtString::Set(const char *text)
{
    if (utf8_) {
        text_.setFromUtf8(text);
    } else {
        text_.setFromAnsi(text);
    }
}

void ZtString::Append(const char *text)
{
    if (utf8_) {
        text_.appendUtf8(text);
    } else {
        text_.appendAnsi(text);
    }
}

void ZtString::AppendN(const char *bytes, std::int32_t count)
{
    if (utf8_) {
        text_.appendUtf8N(bytes, count);
    } else {
        text_.appendAnsiN(bytes, count);
    }
}

void ZtString::Append(const ZtString &other)
{
    Append(utf8_ ? other.text_.getUtf8() : other.text_.getAnsi()); // in the form of this text
    if (!other.complete()) {
        text_.markIncomplete();
    }
}

void ZtString::Append(const StringBuffer &other)
{
    Append(other.c_str());
    if (!other.complete()) {
        text_.markIncomplete();
    }
}

} // namespace pavonix
