// The code-page contract by table: a static program has no iconv modules. It has
// UTF-8 and the device's possible ANSI code pages.
#include "device_options.h"
#include "platform/code_pages.h"
#include "system/ansi_page.h"

#include <algorithm>
#include <cstdint>
#include <string>

namespace pavonix::platform {

using device::AnsiPage;

namespace {

// Null for a code page that the device does not have.
const AnsiPage *FindAnsiPage(std::uint32_t codePage)
{
    const std::uint32_t number = codePage == kAnsiCodePage ? device::deviceOptions.ansiCodePage : codePage;
    return number == 1252 ? &device::kWestern : number == 932 ? &device::kJapanese : nullptr;
}

bool IsSurrogate(char32_t unit)
{
    return (unit & 0xFFFFF800) == 0xD800;
}

void AppendUtf8(std::string &bytes, char32_t character)
{
    if (character < 0x80) {
        bytes += static_cast<char>(character);
        return;
    }
    int following = character < 0x800 ? 1 : character < 0x10000 ? 2 : 3;
    constexpr std::uint8_t kLead[] = {0, 0xC0, 0xE0, 0xF0};
    bytes += static_cast<char>(kLead[following] | (character >> (6 * following)));
    while (following-- > 0) {
        bytes += static_cast<char>(0x80 | ((character >> (6 * following)) & 0x3F));
    }
}

std::string ToUtf8(const WideChar *text, int length, bool *lossy)
{
    std::string bytes;
    for (int i = 0; i < length; ++i) {
        char32_t character = text[i];
        bool hasPair = (character & 0xFC00) == 0xD800 && i + 1 < length && (text[i + 1] & 0xFC00) == 0xDC00;
        if (hasPair) {
            character = 0x10000 + ((character & 0x3FF) << 10) + (text[++i] & 0x3FF);
        }
        *lossy |= IsSurrogate(character);
        AppendUtf8(bytes, IsSurrogate(character) ? U'?' : character);
    }
    return bytes;
}

// The character at the front of `bytes` and its length; a broken one is U+FFFD and one byte.
char32_t DecodeUtf8(const std::uint8_t *bytes, int left, int *count)
{
    int following = bytes[0] < 0x80       ? 0
                    : bytes[0] >> 5 == 6  ? 1
                    : bytes[0] >> 4 == 14 ? 2
                    : bytes[0] >> 3 == 30 ? 3
                                          : 4;
    *count = 1;
    if (following == 0) {
        return bytes[0];
    }
    char32_t character = bytes[0] & (0x3F >> following);
    bool whole = following < 4 && following < left;
    for (int i = 1; whole && i <= following; ++i) {
        whole = bytes[i] >> 6 == 2;
        character = (character << 6) | (bytes[i] & 0x3F);
    }
    constexpr char32_t kLeast[] = {0, 0x80, 0x800, 0x10000, 0};
    if (!whole || character < kLeast[following] || character > 0x10FFFF || IsSurrogate(character)) {
        return 0xFFFD;
    }
    *count = 1 + following;
    return character;
}

std::u16string FromUtf8(const std::uint8_t *bytes, int length)
{
    std::u16string text;
    int count = 0;
    for (int i = 0; i < length; i += count) {
        char32_t character = DecodeUtf8(bytes + i, length - i, &count);
        if (character >= 0x10000) {
            text += static_cast<WideChar>(0xD800 + ((character - 0x10000) >> 10));
            character = 0xDC00 + (character & 0x3FF);
        }
        text += static_cast<WideChar>(character);
    }
    return text;
}

// Writes the converted text, or returns only its length if the room is 0.
template <typename Text>
int Deliver(const Text &converted, typename Text::value_type *target, int room)
{
    int count = static_cast<int>(converted.size());
    if (room != 0 && count > room) {
        return 0;
    }
    if (room != 0) {
        std::copy(converted.begin(), converted.end(), target);
    }
    return count;
}

} // namespace

int WideToBytes(std::uint32_t codePage, const WideChar *text, int length, char *bytes, int room, bool *lossy)
{
    bool replaced = false;
    std::string converted;
    if (codePage == kUtf8CodePage) {
        converted = ToUtf8(text, length, &replaced);
    } else if (const AnsiPage *page = FindAnsiPage(codePage)) {
        converted = page->ToBytes(text, length, &replaced);
    }
    if (lossy != nullptr) {
        *lossy = replaced;
    }
    return Deliver(converted, bytes, room);
}

int BytesToWide(std::uint32_t codePage, const char *bytes, int length, WideChar *text, int room)
{
    const auto *source = reinterpret_cast<const std::uint8_t *>(bytes);
    std::u16string converted;
    if (codePage == kUtf8CodePage) {
        converted = FromUtf8(source, length);
    } else if (const AnsiPage *page = FindAnsiPage(codePage)) {
        converted = page->ToWide(source, length);
    }
    return Deliver(converted, text, room);
}

} // namespace pavonix::platform
