#include "rsa/text/x_string.h"

#include "platform/ascii_text.h"
#include "rsa/text/allocate.h"
#include "rsa/text/wipe.h"

#include <cstring>
#include <memory>

namespace pavonix {

namespace {

constexpr WideChar kEmptyWide[1] = {0};
constexpr std::uint8_t kWideTerminator[2] = {0, 0};

bool SetWide(DataBuffer *wide, const void *units, std::uint32_t byteCount)
{
    wide->Clear();
    return wide->EnsureCapacity(byteCount + 2) && wide->Append(units, byteCount) && wide->Append(kWideTerminator, 2);
}

} // namespace

XString::XString()
{
    // The exact size: a DataBuffer's slack is thousands of bytes, which most strings never need.
    (void)SetWide(&utf16_, nullptr, 0);
}

void XString::KeepOnly(const bool *valid)
{
    utf16Valid_ = valid == &utf16Valid_;
    ansiValid_ = valid == &ansiValid_;
    utf8Valid_ = valid == &utf8Valid_;
}

void XString::Clear()
{
    lost_ = 0;
    ansi_.Clear();
    utf8_.Clear();
    ansiValid_ = utf8Valid_ = true;
    const bool wideIsEmpty = utf16Valid_ && utf16_.length() == sizeof kWideTerminator;
    utf16Valid_ = wideIsEmpty || SetWide(&utf16_, nullptr, 0);
}

void XString::AppendTo(StringBuffer *narrow, const char *bytes, std::int32_t count)
{
    narrow->AppendN(bytes, count);
    if (!narrow->complete()) {
        MarkIncomplete();
    }
}

void XString::SetFromAnsi(const char *text)
{
    Clear();
    AppendAnsi(text);
}

void XString::SetFromUtf8(const char *text)
{
    Clear();
    AppendUtf8(text);
}

void XString::SetFromUtf16(const WideChar *text)
{
    Clear();
    if (text == nullptr || text[0] == 0) {
        return;
    }
    KeepOnly(&utf16Valid_);
    if (!SetWide(&utf16_, text, static_cast<std::uint32_t>(WideLength(text)) * 2)) {
        Clear();
        MarkIncomplete();
    }
}

void XString::AppendUtf8(const char *text)
{
    if (text != nullptr) {
        AppendUtf8N(text, static_cast<std::int32_t>(std::strlen(text)));
    }
}

void XString::AppendUtf8N(const char *bytes, std::int32_t count)
{
    if (bytes == nullptr || count <= 0) {
        return;
    }
    GetUtf8();
    lost_ |= utf8Valid_ ? 0 : 1; // the old text could not be converted
    KeepOnly(&utf8Valid_);
    AppendTo(&utf8_, bytes, count);
}

void XString::AppendAnsi(const char *text)
{
    if (text != nullptr) {
        AppendAnsiN(text, static_cast<std::int32_t>(std::strlen(text)));
    }
}

void XString::AppendAnsiN(const char *bytes, std::int32_t count)
{
    if (bytes == nullptr || count <= 0) {
        return;
    }
    GetAnsi();
    lost_ |= ansiValid_ ? 0 : 1;
    KeepOnly(&ansiValid_);
    AppendTo(&ansi_, bytes, count);
}

void XString::CopyFrom(const XString &other)
{
    if (this == &other) {
        return;
    }
    Clear();
    if (other.utf16Valid_) { // first: the ANSI form may lack characters
        SetFromUtf16(other.GetUtf16());
    } else if (other.ansiValid_) {
        AppendAnsiN(other.ansi_.c_str(), other.ansi_.length());
    } else {
        KeepOnly(&utf8Valid_);
        AppendTo(&utf8_, other.utf8_.c_str(), other.utf8_.length());
    }
    if (!other.complete()) {
        MarkIncomplete();
    }
}

bool XString::MakeWide() const
{
    if (utf16Valid_) {
        return true;
    }
    const StringBuffer &source = ansiValid_ ? ansi_ : utf8_;
    const std::uint32_t codePage = ansiValid_ ? platform::kAnsiCodePage : platform::kUtf8CodePage;
    const int units = platform::BytesToWide(codePage, source.c_str(), source.length(), nullptr, 0);
    const std::uint32_t byteCount = static_cast<std::uint32_t>(units) * 2;
    utf16_.Clear();
    if ((units == 0 && source.length() > 0) || !utf16_.EnsureCapacity(byteCount + 2) ||
        !utf16_.AppendFill(0, byteCount + 2)) {
        return false;
    }
    const int written = platform::BytesToWide(codePage, source.c_str(), source.length(),
                                              reinterpret_cast<WideChar *>(utf16_.data()), units);
    utf16Valid_ = written == units;
    return utf16Valid_;
}

// Appends nothing when memory runs out.
void XString::ConvertTo(std::uint32_t codePage, StringBuffer *narrow) const
{
    const WideChar *wide = GetUtf16();
    const int units = LengthUtf16();
    const int count = platform::WideToBytes(codePage, wide, units, nullptr, 0, nullptr);
    const auto room = static_cast<std::size_t>(count > 0 ? count : 0);
    const std::unique_ptr<char[]> bytes(AllocateArray<char>(room));
    if (bytes != nullptr && platform::WideToBytes(codePage, wide, units, bytes.get(), count, nullptr) == count) {
        narrow->AppendN(bytes.get(), count);
    }
    Wipe(bytes.get(), bytes != nullptr ? room : 0);
}

void XString::MakeNarrow(StringBuffer *narrow, bool *valid, std::uint32_t codePage) const
{
    if (*valid) {
        return;
    }
    narrow->Clear();
    const StringBuffer &source = ansiValid_ ? ansi_ : utf8_;
    // ASCII is the same in both 8-bit forms. Not when UTF-16 is valid: the ANSI form
    // may have been made from it with '?' for characters that the code page lacks.
    if (!utf16Valid_ && platform::IsAscii(codePage, source.c_str(), source.length())) {
        narrow->AppendN(source.c_str(), source.length());
        *valid = narrow->complete();
    } else if (MakeWide()) {
        ConvertTo(codePage, narrow);
        *valid = narrow->complete() && (narrow->length() > 0 || LengthUtf16() == 0);
    }
    if (!*valid) {
        narrow->Clear();
    }
}

const StringBuffer &XString::GetAnsi() const
{
    MakeNarrow(&ansi_, &ansiValid_, platform::kAnsiCodePage);
    return ansi_;
}

const StringBuffer &XString::GetUtf8() const
{
    MakeNarrow(&utf8_, &utf8Valid_, platform::kUtf8CodePage);
    return utf8_;
}

const WideChar *XString::GetUtf16() const
{
    if (!MakeWide() || utf16_.length() == 0) {
        return kEmptyWide;
    }
    return reinterpret_cast<const WideChar *>(utf16_.data());
}

std::int32_t XString::LengthUtf16() const
{
    return MakeWide() && utf16_.length() >= 2 ? static_cast<std::int32_t>(utf16_.length() / 2 - 1) : 0;
}

bool XString::isEmpty() const
{
    if (ansiValid_) {
        return ansi_.length() == 0;
    }
    if (utf8Valid_) {
        return utf8_.length() == 0;
    }
    return utf16_.length() <= 2;
}

} // namespace pavonix
