#include "rsa/digest/sha1.h"

#include "rsa/digest/word_bytes.h"

#include <bit>

namespace pavonix {

namespace {

// The function and constant of rounds 0-19, 20-39, 40-59 and 60-79.
std::uint32_t Mix(unsigned round, std::uint32_t b, std::uint32_t c, std::uint32_t d)
{
    if (round < 20) {
        return ((b & c) | (~b & d)) + 0x5A827999;
    }
    if (round < 40) {
        return (b ^ c ^ d) + 0x6ED9EBA1;
    }
    if (round < 60) {
        return ((b & c) | (b & d) | (c & d)) + 0x8F1BBCDC;
    }
    return (b ^ c ^ d) + 0xCA62C1D6;
}

} // namespace

void Sha1::Compress(const std::uint8_t *block)
{
    std::uint32_t schedule[16]; // the last 16 words of the message schedule, in a ring
    for (std::size_t i = 0; i < 16; ++i) {
        schedule[i] = LoadBigEndian<std::uint32_t>(block + 4 * i);
    }
    auto [a, b, c, d, e] = state_;
    for (unsigned round = 0; round < 80; ++round) {
        std::uint32_t &word = schedule[round % 16];
        if (round >= 16) {
            word = std::rotl(
                word ^ schedule[(round + 2) % 16] ^ schedule[(round + 8) % 16] ^ schedule[(round + 13) % 16], 1);
        }
        const std::uint32_t next = std::rotl(a, 5) + Mix(round, b, c, d) + e + word;
        e = d;
        d = c;
        c = std::rotl(b, 30);
        b = a;
        a = next;
    }
    state_[0] += a;
    state_[1] += b;
    state_[2] += c;
    state_[3] += d;
    state_[4] += e;
}

void Sha1::Finish(std::uint8_t *digest)
{
    PadWithLength(LengthOrder::kBigEndian);
    for (const std::uint32_t word : state_) {
        StoreBigEndian(word, digest);
        digest += sizeof word;
    }
}

} // namespace pavonix
