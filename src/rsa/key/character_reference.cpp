#include "rsa/key/character_reference.h"

#include <cstdint>
#include <cstring>

namespace pavonix {

namespace {

constexpr std::uint32_t kLastCharacter = 0x10FFFF;

struct NamedCharacter {
    const char *name;
    char character;
};

constexpr NamedCharacter kNamed[] = {{"&amp;", '&'}, {"&lt;", '<'}, {"&gt;", '>'}, {"&quot;", '"'}, {"&apos;", '\''}};

void AppendUtf8(std::uint32_t character, StringBuffer *content)
{
    if (character < 0x80) {
        content->AppendChar(static_cast<char>(character));
        return;
    }
    const int tailBytes = character < 0x800 ? 1 : character < 0x10000 ? 2 : 3;
    const std::uint32_t lead = 0xFF00u >> (tailBytes + 1) & 0xFFu;
    content->AppendChar(static_cast<char>(lead | character >> (6 * tailBytes)));
    for (int i = tailBytes - 1; i >= 0; --i) {
        content->AppendChar(static_cast<char>(0x80u | (character >> (6 * i) & 0x3Fu)));
    }
}

// The value of a digit, or 16 for any other character.
std::uint32_t DigitValue(char c)
{
    if (c >= '0' && c <= '9') {
        return static_cast<std::uint32_t>(c - '0');
    }
    const char lower = static_cast<char>(c | 0x20);
    return lower >= 'a' && lower <= 'f' ? static_cast<std::uint32_t>(lower - 'a' + 10) : 16;
}

// Reads digits and the ';' after them. Returns the position after the ';', or null when
// they name no character.
const char *ReadNumber(const char *digits, std::uint32_t base, std::uint32_t *character)
{
    std::uint32_t value = 0;
    const char *at = digits;
    for (std::uint32_t digit = DigitValue(*at); digit < base; digit = DigitValue(*++at)) {
        value = value > kLastCharacter ? value : value * base + digit;
    }
    const bool surrogate = value >= 0xD800 && value <= 0xDFFF;
    *character = value;
    return at != digits && *at == ';' && value != 0 && value <= kLastCharacter && !surrogate ? at + 1 : nullptr;
}

} // namespace

const char *AppendReference(const char *reference, StringBuffer *content)
{
    for (const NamedCharacter &named : kNamed) {
        const std::size_t length = std::strlen(named.name);
        if (std::strncmp(reference, named.name, length) == 0) {
            content->AppendChar(named.character);
            return reference + length;
        }
    }
    if (reference[1] == '#') {
        const bool hexadecimal = reference[2] == 'x';
        std::uint32_t character = 0;
        const char *end = ReadNumber(reference + (hexadecimal ? 3 : 2), hexadecimal ? 16 : 10, &character);
        if (end != nullptr) {
            AppendUtf8(character, content);
            return end;
        }
    }
    content->AppendChar('&');
    return reference + 1;
}

} // namespace pavonix
