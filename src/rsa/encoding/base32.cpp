#include "rsa/encoding/block_writer.h"
#include "rsa/encoding/content_coding.h"

namespace pavonix {

namespace {

constexpr std::uint32_t kGroupBytes = 5;
constexpr std::uint32_t kGroupCharacters = 8;

} // namespace

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

} // namespace pavonix
