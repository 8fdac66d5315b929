#include "trace/line.h"

#include "rsa/text/decimal.h"
#include "trace/real.h"

#include <cstring>

namespace pavonix::trace {

namespace {

constexpr std::uint32_t kLargestFile = 1000000; // bytes
constexpr int kPathRoom = 300;

WideChar path[kPathRoom]; // empty: nothing is written

bool IsTooLarge()
{
    platform::Stream *stream = __real_OpenStream(path, platform::StreamMode::kRead);
    if (stream == nullptr) {
        return false;
    }
    std::uint32_t size = 0;
    char piece[1024];
    for (std::uint32_t read = 1; read != 0 && size <= kLargestFile; size += read) {
        read = __real_ReadStream(stream, piece, sizeof piece);
    }
    __real_CloseStream(stream);
    return size > kLargestFile;
}

} // namespace

void ChooseFile(const WideChar *profilePath)
{
    constexpr char kEnding[] = ".trace.txt";
    path[0] = 0;
    const int length = profilePath == nullptr ? kPathRoom : WideLength(profilePath);
    if (length + static_cast<int>(sizeof kEnding) > kPathRoom) {
        return;
    }
    std::memcpy(path, profilePath, static_cast<std::size_t>(length) * sizeof *path);
    for (std::size_t i = 0; i < sizeof kEnding; ++i) {
        path[static_cast<std::size_t>(length) + i] = static_cast<WideChar>(kEnding[i]);
    }
    if (IsTooLarge()) {
        __real_RemoveFile(path);
    }
}

Line::Line(const char *start) : stream_(path[0] == 0 ? nullptr : __real_OpenStream(path, platform::StreamMode::kAppend))
{
    Text(start);
}

Line::~Line()
{
    Text("\n");
    if (stream_ != nullptr) {
        __real_CloseStream(stream_);
    }
}

void Line::Write(const char *bytes, std::size_t count)
{
    if (stream_ != nullptr) {
        __real_WriteStream(stream_, bytes, static_cast<std::uint32_t>(count));
    }
}

Line &Line::Text(const char *text)
{
    Write(text, std::strlen(text));
    return *this;
}

Line &Line::Number(std::int64_t number)
{
    constexpr std::uint64_t kBillion = 1000000000;
    if (number < static_cast<std::int64_t>(kBillion)) {
        return Text(DecimalText(static_cast<std::int32_t>(number)).c_str());
    }
    // unsigned: the device's run-time has no other division of this width
    const auto count = static_cast<std::uint64_t>(number);
    Text(DecimalText(static_cast<std::int32_t>(count / kBillion)).c_str());
    return Text(DecimalText(static_cast<std::int32_t>(count % kBillion), 9).c_str());
}

void Line::Escape(char kind, unsigned value, int digits)
{
    constexpr char kDigits[] = "0123456789abcdef";
    char text[6] = {'\\', kind};
    for (int i = 0; i < digits; ++i) {
        text[2 + i] = kDigits[(value >> (4 * (digits - 1 - i))) & 15];
    }
    Write(text, 2 + static_cast<std::size_t>(digits));
}

Line &Line::Bytes(std::string_view bytes)
{
    for (std::size_t i = 0; i < bytes.size(); ++i) {
        const auto byte = static_cast<unsigned char>(bytes[i]);
        if (byte == '\n') {
            Text(i + 1 < bytes.size() ? "\\n\n    | " : "\\n");
        } else if (byte == '\r') {
            Text("\\r");
        } else if (byte == '\\') {
            Text("\\\\");
        } else if (byte >= 0x20 && byte < 0x7F) {
            Write(&bytes[i], 1);
        } else {
            Escape('x', byte, 2);
        }
    }
    return *this;
}

Line &Line::Wide(const WideChar *text, int longest)
{
    if (text == nullptr) {
        return Text("(null)");
    }
    for (int i = 0; i < longest && text[i] != 0; ++i) {
        const char narrow = static_cast<char>(text[i]);
        if (text[i] >= 0x20 && text[i] < 0x7F) {
            Write(&narrow, 1);
        } else {
            Escape('u', text[i], 4);
        }
    }
    return *this;
}

} // namespace pavonix::trace
