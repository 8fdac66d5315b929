#include "diagnostics/printable.h"

#include <algorithm>
#include <cstdint>
#include <iomanip>
#include <iterator>
#include <sstream>

namespace diagnostics {

namespace {

void AppendByte(std::string *text, char byte)
{
    constexpr char kDigits[] = "0123456789abcdef";
    const auto value = static_cast<unsigned char>(byte);
    switch (byte) {
    case '\r':
        *text += "\\r";
        break;
    case '\n':
        *text += "\\n";
        break;
    case '\t':
        *text += "\\t";
        break;
    case '\\':
        *text += "\\\\";
        break;
    default:
        if (value >= 0x20 && value < 0x7F) {
            *text += byte;
        } else {
            *text += {'\\', 'x', kDigits[value >> 4], kDigits[value & 0xF]};
        }
    }
}

// A UTF-8 character: its length in bytes, 0 for an invalid one, and its code point.
struct Letter {
    std::size_t length;
    char32_t number;
};

Letter FirstLetter(std::string_view text)
{
    const auto byte = [&](std::size_t i) { return static_cast<unsigned char>(text[i]); };
    const std::size_t length = byte(0) < 0x80 ? 1 : byte(0) < 0xC2 ? 0 : byte(0) < 0xE0 ? 2 : byte(0) < 0xF0 ? 3 : 4;
    if (length == 0 || length > text.size() || byte(0) > 0xF4) {
        return {0, 0};
    }
    char32_t number = length == 1 ? byte(0) : byte(0) & (0x7F >> length);
    for (std::size_t i = 1; i < length; ++i) {
        if ((byte(i) & 0xC0) != 0x80) {
            return {0, 0};
        }
        number = number << 6 | (byte(i) & 0x3F);
    }
    const bool overlong = (length == 3 && number < 0x800) || (length == 4 && number < 0x10000);
    const bool surrogate = number >= 0xD800 && number < 0xE000;
    return overlong || surrogate || number > 0x10FFFF ? Letter{0, 0} : Letter{length, number};
}

struct Range {
    char32_t first, last;
};

constexpr Range kUnsafe[] = {{0, 0x1F},        {0x7F, 0x9F},     {0xAD, 0xAD},      {0x61C, 0x61C},   {0x180E, 0x180E},
                             {0x200B, 0x200F}, {0x2028, 0x202E}, {0x2060, 0x206F},  {0xFE00, 0xFE0F}, {0xFEFF, 0xFEFF},
                             {0xFFF9, 0xFFFB}, {0xFFFE, 0xFFFF}, {0xE0000, 0xE0FFF}};

bool IsSafe(char32_t letter)
{
    return std::none_of(std::begin(kUnsafe), std::end(kUnsafe),
                        [=](const Range &range) { return letter >= range.first && letter <= range.last; });
}

void AppendNumber(std::string *text, char32_t letter)
{
    std::ostringstream number;
    number << (letter > 0xFFFF ? "\\U" : "\\u") << std::hex << std::setfill('0') << std::setw(letter > 0xFFFF ? 8 : 4)
           << static_cast<std::uint32_t>(letter);
    *text += number.str();
}

} // namespace

std::string PrintableText(std::string_view utf8)
{
    std::string text;
    while (!utf8.empty()) {
        const Letter letter = FirstLetter(utf8);
        const std::size_t length = std::max<std::size_t>(letter.length, 1);
        if (letter.length > 1 && !IsSafe(letter.number)) {
            AppendNumber(&text, letter.number);
        } else if (letter.length > 1) {
            text += utf8.substr(0, length);
        } else {
            AppendByte(&text, utf8.front());
        }
        utf8.remove_prefix(length);
    }
    return text;
}

std::string Printable(std::string_view bytes, std::size_t most)
{
    std::string text;
    for (const char byte : bytes.substr(0, most)) {
        AppendByte(&text, byte);
    }
    return bytes.size() > most ? text + "..." : text;
}

} // namespace diagnostics
