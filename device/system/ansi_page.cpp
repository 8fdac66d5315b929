#include "system/ansi_page.h"

#include <algorithm>

namespace pavonix::device {

namespace {

constexpr char16_t kNoCharacter = 0x30FB;

const CodePair *Find(std::span<const CodePair> table, unsigned key)
{
    const auto place = std::lower_bound(table.begin(), table.end(), key,
                                        [](const CodePair &pair, unsigned wanted) { return pair.key < wanted; });
    return place != table.end() && place->key == key ? &*place : nullptr;
}

void Append(std::string &bytes, std::uint16_t code)
{
    if (code > 0xFF) {
        bytes += static_cast<char>(code >> 8);
    }
    bytes += static_cast<char>(code);
}

} // namespace

std::string AnsiPage::ToBytes(const WideChar *text, int length, bool *lossy) const
{
    std::string bytes;
    for (int i = 0; i < length; ++i) {
        if (const CodePair *exact = Find(codes, text[i])) {
            Append(bytes, exact->value);
        } else if (const CodePair *similar = Find(lookAlikes, text[i])) {
            Append(bytes, similar->value);
        } else {
            bytes += '?';
            *lossy = true;
        }
    }
    return bytes;
}

std::u16string AnsiPage::ToWide(const std::uint8_t *bytes, int length) const
{
    std::u16string text;
    for (int i = 0; i < length; ++i) {
        const CodePair *found = Find(characters, bytes[i]);
        if (found == nullptr && i + 1 < length) {
            found = Find(characters, bytes[i] << 8 | bytes[i + 1]);
            ++i;
        }
        text += found == nullptr ? kNoCharacter : found->value;
    }
    return text;
}

} // namespace pavonix::device
