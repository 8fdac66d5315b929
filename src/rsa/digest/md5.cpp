#include "rsa/digest/md5.h"

#include "rsa/digest/word_bytes.h"

#include <bit>

namespace pavonix {

namespace {

// The first 32 bits of the fractional parts of |sin(1)| to |sin(64)|.
constexpr std::uint32_t kSines[64] = {
    0xD76AA478, 0xE8C7B756, 0x242070DB, 0xC1BDCEEE, 0xF57C0FAF, 0x4787C62A, 0xA8304613, 0xFD469501,
    0x698098D8, 0x8B44F7AF, 0xFFFF5BB1, 0x895CD7BE, 0x6B901122, 0xFD987193, 0xA679438E, 0x49B40821,
    0xF61E2562, 0xC040B340, 0x265E5A51, 0xE9B6C7AA, 0xD62F105D, 0x02441453, 0xD8A1E681, 0xE7D3FBC8,
    0x21E1CDE6, 0xC33707D6, 0xF4D50D87, 0x455A14ED, 0xA9E3E905, 0xFCEFA3F8, 0x676F02D9, 0x8D2A4C8A,
    0xFFFA3942, 0x8771F681, 0x6D9D6122, 0xFDE5380C, 0xA4BEEA44, 0x4BDECFA9, 0xF6BB4B60, 0xBEBFBC70,
    0x289B7EC6, 0xEAA127FA, 0xD4EF3085, 0x04881D05, 0xD9D4D039, 0xE6DB99E5, 0x1FA27CF8, 0xC4AC5665,
    0xF4292244, 0x432AFF97, 0xAB9423A7, 0xFC93A039, 0x655B59C3, 0x8F0CCC92, 0xFFEFF47D, 0x85845DD1,
    0x6FA87E4F, 0xFE2CE6E0, 0xA3014314, 0x4E0811A1, 0xF7537E82, 0xBD3AF235, 0x2AD7D2BB, 0xEB86D391,
};

// Each group of 16 rounds repeats its four shifts.
constexpr std::uint8_t kShifts[4][4] = {{7, 12, 17, 22}, {5, 9, 14, 20}, {4, 11, 16, 23}, {6, 10, 15, 21}};

// Which word of the block a round takes: (factor * round + offset) mod 16.
constexpr struct {
    std::uint8_t factor, offset;
} kOrder[4] = {{1, 0}, {5, 1}, {3, 5}, {7, 0}};

std::uint32_t Mix(unsigned group, std::uint32_t b, std::uint32_t c, std::uint32_t d)
{
    switch (group) {
    case 0:
        return (b & c) | (~b & d);
    case 1:
        return (b & d) | (c & ~d);
    case 2:
        return b ^ c ^ d;
    default:
        return c ^ (b | ~d);
    }
}

} // namespace

void Md5::Compress(const std::uint8_t *block)
{
    std::uint32_t a = state_[0], b = state_[1], c = state_[2], d = state_[3];
    for (unsigned round = 0; round < 64; ++round) {
        const unsigned group = round / 16;
        const std::size_t word = (kOrder[group].factor * round + kOrder[group].offset) % 16;
        const std::uint32_t sum = a + Mix(group, b, c, d) + kSines[round] + LoadLittleEndian(block + 4 * word);
        a = d;
        d = c;
        c = b;
        b += std::rotl(sum, kShifts[group][round % 4]);
    }
    state_[0] += a;
    state_[1] += b;
    state_[2] += c;
    state_[3] += d;
}

void Md5::Finish(std::uint8_t *digest)
{
    PadWithLength(LengthOrder::kLittleEndian);
    for (const std::uint32_t word : state_) {
        StoreLittleEndian(word, digest);
        digest += sizeof word;
    }
}

} // namespace pavonix
