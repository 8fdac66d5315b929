#include "rsa/encoding/block_writer.h"
#include "rsa/encoding/content_coding.h"
#include "rsa/text/allocate.h"
#include "rsa/text/wipe.h"

#include <array>
#include <cstring>
#include <memory>

namespace pavonix {

namespace {

constexpr char kAlphabet[] = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
constexpr std::uint8_t kFirstCode = '+';
constexpr std::uint8_t kLastCode = 'z';
constexpr std::uint8_t kForeign = 127;
constexpr std::uint32_t kFullGroup = 1 << 24; // the start bit after four characters

constexpr std::array<std::uint8_t, kLastCode - kFirstCode + 1> MakeDecodingTable()
{
    std::array<std::uint8_t, kLastCode - kFirstCode + 1> table{};
    table.fill(kForeign);
    for (std::uint8_t value = 0; value < 64; ++value) {
        table[static_cast<std::size_t>(kAlphabet[value] - kFirstCode)] = value;
    }
    return table;
}

constexpr auto kDecodingTable = MakeDecodingTable();
static_assert(kDecodingTable.size() == 80);

std::int32_t EncodedLength(std::uint32_t count)
{
    const std::uint64_t length = (std::uint64_t{count} + 2) / 3 * 4;
    return length > INT32_MAX ? INT32_MAX : static_cast<std::int32_t>(length);
}

// Writes the bytes of `length` characters into `bytes`, which has room for
// length * 3 / 4 + 4 of them, and returns how many are complete; two zero bytes follow.
std::uint32_t Decode(const char *text, std::uint32_t length, std::uint8_t *bytes)
{
    std::uint8_t *next = bytes;
    const char *const end = text + length;
    std::uint32_t group = 1; // a start bit, then the bits of up to four characters
    for (; text != end && *text != '=' && *text != 0; ++text) {
        const std::uint32_t code = static_cast<std::uint8_t>(*text) - std::uint32_t{kFirstCode};
        if (code >= kDecodingTable.size()) { // spaces and line ends among them
            continue;
        }
        // kForeign has a seventh bit, which is or-ed into the character before it.
        group = group << 6 | kDecodingTable[code];
        if (group >= kFullGroup) {
            *next++ = static_cast<std::uint8_t>(group >> 16);
            *next++ = static_cast<std::uint8_t>(group >> 8);
            *next++ = static_cast<std::uint8_t>(group);
            group = 1;
        }
    }
    if (group >= 1 << 12) { // two or three characters: one or two bytes, without the bits left over
        *next++ = static_cast<std::uint8_t>(group >> (group >= 1 << 18 ? 10 : 4));
    }
    if (group >= 1 << 18) {
        *next++ = static_cast<std::uint8_t>(group >> 2);
    }
    next[0] = next[1] = 0;
    return static_cast<std::uint32_t>(next - bytes);
}

// Null when memory runs out.
std::uint8_t *AllocateDecoded(std::size_t length, std::size_t slack)
{
    return AllocateArray<std::uint8_t>(static_cast<std::size_t>(std::uint64_t{length} * 3 / 4 + slack));
}

} // namespace

void ContentCoding::EncodeBase64(const std::uint8_t *bytes, std::uint32_t count, StringBuffer *text)
{
    if (bytes == nullptr || count == 0) {
        return;
    }
    text->Reserve(EncodedLength(count));
    BlockWriter<256> writer(text);
    for (; count >= 3; bytes += 3, count -= 3) {
        writer.Put(kAlphabet[bytes[0] >> 2]);
        writer.Put(kAlphabet[(bytes[0] & 3) << 4 | bytes[1] >> 4]);
        writer.Put(kAlphabet[(bytes[1] & 15) << 2 | bytes[2] >> 6]);
        writer.Put(kAlphabet[bytes[2] & 63]);
    }
    if (count > 0) {
        const std::uint8_t second = count == 2 ? bytes[1] : std::uint8_t{0};
        writer.Put(kAlphabet[bytes[0] >> 2]);
        writer.Put(kAlphabet[(bytes[0] & 3) << 4 | second >> 4]);
        writer.Put(count == 2 ? kAlphabet[(second & 15) << 2] : '=');
        writer.Put('=');
    }
}

bool ContentCoding::DecodeBase64(const char *text, std::uint32_t length, DataBuffer *bytes)
{
    bytes->Clear();
    if (text == nullptr || length == 0) {
        return true;
    }
    std::uint8_t *decoded = AllocateDecoded(length, 4);
    if (decoded == nullptr) {
        return false;
    }
    bytes->TakeOver(decoded, Decode(text, length, decoded));
    return true;
}

void ContentCoding::DecodeBase64(const char *text, StringBuffer *bytes)
{
    const std::size_t length = text == nullptr ? 0 : std::strlen(text);
    if (length == 0 || length > UINT32_MAX) {
        return;
    }
    const std::unique_ptr<std::uint8_t[]> decoded(AllocateDecoded(length, 8));
    if (decoded != nullptr) {
        const std::uint32_t count = Decode(text, static_cast<std::uint32_t>(length), decoded.get());
        bytes->AppendN(reinterpret_cast<const char *>(decoded.get()), static_cast<std::int32_t>(count));
        Wipe(decoded.get(), count);
    }
}

} // namespace pavonix
