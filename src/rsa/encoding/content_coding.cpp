// The short codecs; each of the longer ones has its own file.
#include "rsa/encoding/content_coding.h"

#include "rsa/encoding/block_writer.h"

namespace pavonix {

namespace {

constexpr std::uint32_t kGroupBytes = 5;
constexpr std::uint32_t kGroupCharacters = 8;

bool IsUnreserved(std::uint8_t byte)
{
    const bool letter = (byte >= 'A' && byte <= 'Z') || (byte >= 'a' && byte <= 'z');
    const bool digit = byte >= '0' && byte <= '9';
    return letter || digit || byte == '-' || byte == '.' || byte == '_' || byte == '~';
}

} // namespace

void ContentCoding::EncodeHex(const std::uint8_t *bytes, std::uint32_t count, StringBuffer *text)
{
    BlockWriter<256> writer(text);
    for (std::uint32_t i = 0; bytes != nullptr && i < count; ++i) {
        writer.PutHex(bytes[i]);
    }
}

void ContentCoding::EncodeBase32(const std::uint8_t *bytes, std::uint32_t count, StringBuffer *text)
{
    constexpr char kAlphabet[] = "ABCDEFGHIJKLMNOPQRSTUVWXYZ234567";
    BlockWriter<256> writer(text);
    while (bytes != nullptr && count > 0) {
        const std::uint32_t taken = count < kGroupBytes ? count : kGroupBytes;
        std::uint64_t group = 0;
        for (std::uint32_t i = 0; i < kGroupBytes; ++i) {
            group = group << 8 | (i < taken ? bytes[i] : 0u);
        }
        const std::uint32_t characters = (taken * 8 + 4) / 5; // the rest of the group is padding
        for (std::uint32_t i = 0; i < kGroupCharacters; ++i) {
            const std::uint32_t shift = (kGroupCharacters - 1 - i) * 5;
            writer.Put(i < characters ? kAlphabet[group >> shift & 31] : '=');
        }
        bytes += taken;
        count -= taken;
    }
}

void ContentCoding::EncodeUrl(const std::uint8_t *bytes, std::uint32_t count, StringBuffer *text)
{
    BlockWriter<256> writer(text);
    for (std::uint32_t i = 0; bytes != nullptr && i < count; ++i) {
        if (IsUnreserved(bytes[i])) {
            writer.Put(static_cast<char>(bytes[i]));
        } else {
            writer.Put('%');
            writer.PutHex(bytes[i]);
        }
    }
}

void ContentCoding::EncodeAnsi(const std::uint8_t *bytes, std::uint32_t count, StringBuffer *text)
{
    // No text can hold INT32_MAX characters: appending that many marks it incomplete.
    const std::int32_t length = count < INT32_MAX ? static_cast<std::int32_t>(count) : INT32_MAX;
    text->AppendN(reinterpret_cast<const char *>(bytes), length);
}

} // namespace pavonix
