#include "rsa/text/zt_string.h"

namespace pavonix {

ZtString::ZtString(const ZtString &other) : ZtObject(), utf8_(other.utf8_)
{
    text_.CopyFrom(other.text_);
}

ZtString &ZtString::operator=(const ZtString &other)
{
    utf8_ = other.utf8_;
    text_.CopyFrom(other.text_);
    return *this;
}

void ZtString::Set(const char *text)
{
    if (utf8_) {
        text_.SetFromUtf8(text);
    } else {
        text_.SetFromAnsi(text);
    }
}

void ZtString::Append(const char *text)
{
    if (utf8_) {
        text_.AppendUtf8(text);
    } else {
        text_.AppendAnsi(text);
    }
}

void ZtString::AppendN(const char *bytes, std::int32_t count)
{
    if (utf8_) {
        text_.AppendUtf8N(bytes, count);
    } else {
        text_.AppendAnsiN(bytes, count);
    }
}

void ZtString::Append(const ZtString &other)
{
    Append(utf8_ ? other.text_.GetUtf8() : other.text_.GetAnsi()); // in the form of this text
    if (!other.complete()) {
        text_.MarkIncomplete();
    }
}

void ZtString::Append(const StringBuffer &other)
{
    Append(other.c_str());
    if (!other.complete()) {
        text_.MarkIncomplete();
    }
}

} // namespace pavonix
