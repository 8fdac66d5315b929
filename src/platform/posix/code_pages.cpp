// The code-page contract over iconv. The ANSI code page is Windows-1252.
#include "platform/ascii_text.h"

#include <cerrno>
#include <cstdio>
#include <iconv.h>

namespace pavonix::platform {

namespace {

class Converter {
public:
    Converter(const char *to, const char *from) : handle_(iconv_open(to, from)) {}
    ~Converter()
    {
        if (valid()) {
            iconv_close(handle_);
        }
    }
    Converter(const Converter &) = delete;
    Converter &operator=(const Converter &) = delete;

    bool valid() const { return handle_ != reinterpret_cast<iconv_t>(-1); }

    // One source unit at a time, so that a bad one can be replaced. 0 or errno.
    int Convert(const char *source, std::size_t count, char **target, std::size_t *room)
    {
        char *input = const_cast<char *>(source);
        return iconv(handle_, &input, &count, target, room) == static_cast<std::size_t>(-1) ? errno : 0;
    }

private:
    iconv_t handle_;
};

// iconv's tables for these code pages differ from those of Windows: a yen sign becomes a
// backslash, letters are decomposed, characters are missing.
bool DiffersFromWindows(std::uint32_t codePage)
{
    return codePage == 932 || codePage == 950 || codePage == 1255 || codePage == 1258;
}

// The iconv name of a Windows code page; a name unknown to iconv for a code page that
// this port does not support.
class CodePageName {
public:
    explicit CodePageName(std::uint32_t codePage)
    {
        if (DiffersFromWindows(codePage)) {
            std::snprintf(name_, sizeof name_, "none");
        } else if (codePage == kUtf8CodePage) {
            std::snprintf(name_, sizeof name_, "UTF-8");
        } else if (codePage == 20127) {
            std::snprintf(name_, sizeof name_, "US-ASCII");
        } else if (codePage > 28590 && codePage < 28606) {
            std::snprintf(name_, sizeof name_, "ISO-8859-%u", codePage - 28590);
        } else {
            std::snprintf(name_, sizeof name_, "CP%u", codePage == kAnsiCodePage ? 1252u : codePage);
        }
    }
    const char *c_str() const { return name_; }

private:
    char name_[24];
};

constexpr char kUtf16[] = "UTF-16LE";

// Stores converted bytes in the caller's buffer, or only counts them.
class Sink {
public:
    Sink(char *bytes, int room) : bytes_(bytes), room_(room) {}

    void Put(const char *bytes, std::size_t count)
    {
        for (std::size_t i = 0; i < count; ++i, ++used_) {
            if (used_ < room_) {
                bytes_[used_] = bytes[i];
            }
        }
    }
    // 0 when the bytes did not fit.
    int Used() const { return room_ > 0 && used_ > room_ ? 0 : used_; }

private:
    char *bytes_;
    int room_;
    int used_ = 0;
};

// Windows converts a byte that its code page leaves undefined, such as 0x81 in 1252, to
// the control character of that value and back; iconv does not.
bool IsUndefinedByte(std::uint32_t codePage, WideChar unit)
{
    const bool windows = codePage == kAnsiCodePage || (codePage >= 1250 && codePage <= 1258);
    const char byte = static_cast<char>(unit);
    WideChar back = 0;
    return windows && unit < 0xA0 && BytesToWide(codePage, &byte, 1, &back, 1) == 1 && back == unit;
}

// One character, of one or two units. False when the code page lacks it.
bool PutCharacter(Converter *converter, std::uint32_t codePage, const WideChar *character, int units, Sink *sink)
{
    char encoded[16];
    char *end = encoded;
    std::size_t left = sizeof encoded;
    const int error =
        converter->Convert(reinterpret_cast<const char *>(character), static_cast<std::size_t>(units) * 2, &end, &left);
    if (error == 0 && end != encoded) { // iconv drops some characters without an error
        sink->Put(encoded, sizeof encoded - left);
        return true;
    }
    const bool undefined = IsUndefinedByte(codePage, *character);
    const char byte = static_cast<char>(*character);
    sink->Put(undefined ? &byte : "?", 1);
    return undefined;
}

} // namespace

int WideToBytes(std::uint32_t codePage, const WideChar *text, int length, char *bytes, int room, bool *lossy)
{
    if (IsAscii(codePage, text, length)) {
        if (lossy != nullptr) {
            *lossy = false;
        }
        return CopyAscii(text, length, bytes, room);
    }
    Converter converter(CodePageName(codePage).c_str(), kUtf16);
    bool replaced = false;
    Sink sink(bytes, room);
    for (int i = 0; converter.valid() && i < length;) {
        const int units = UnitsOfCharacter(text + i, length - i);
        replaced = !PutCharacter(&converter, codePage, text + i, units, &sink) || replaced;
        i += units;
    }
    if (lossy != nullptr) {
        *lossy = replaced;
    }
    return sink.Used();
}

int BytesToWide(std::uint32_t codePage, const char *bytes, int length, WideChar *text, int room)
{
    if (IsAscii(codePage, bytes, length)) {
        return CopyAscii(bytes, length, text, room);
    }
    Converter converter(kUtf16, CodePageName(codePage).c_str());
    Sink sink(reinterpret_cast<char *>(text), room * 2);
    for (int i = 0; converter.valid() && i < length;) {
        char encoded[16];
        char *end = encoded;
        std::size_t left = sizeof encoded;
        int count = 1; // a multi-byte character is complete once iconv takes it
        int error = EINVAL;
        while (error == EINVAL && count <= 4 && i + count <= length) {
            error = converter.Convert(bytes + i, static_cast<std::size_t>(count), &end, &left);
            count += error == EINVAL ? 1 : 0;
        }
        if (error == 0) {
            sink.Put(encoded, sizeof encoded - left);
            i += count;
        } else {
            // the system's result for a byte that the code page leaves undefined
            const std::uint8_t byte = static_cast<std::uint8_t>(bytes[i]);
            const WideChar unit = codePage == kUtf8CodePage ? 0xFFFD : byte;
            sink.Put(reinterpret_cast<const char *>(&unit), sizeof unit);
            ++i;
        }
    }
    return sink.Used() / 2;
}

} // namespace pavonix::platform
