#include "rsa/digest/sha2.h"

#include "rsa/digest/word_bytes.h"

#include <bit>

namespace pavonix {

namespace {

// The first 64 bits of the fractional parts of the cube roots of the first 80
// primes. The constants of 32-bit digests are the upper halves of the first 64.
constexpr std::uint64_t kRoundConstants[80] = {
    0x428A2F98D728AE22, 0x7137449123EF65CD, 0xB5C0FBCFEC4D3B2F, 0xE9B5DBA58189DBBC, 0x3956C25BF348B538,
    0x59F111F1B605D019, 0x923F82A4AF194F9B, 0xAB1C5ED5DA6D8118, 0xD807AA98A3030242, 0x12835B0145706FBE,
    0x243185BE4EE4B28C, 0x550C7DC3D5FFB4E2, 0x72BE5D74F27B896F, 0x80DEB1FE3B1696B1, 0x9BDC06A725C71235,
    0xC19BF174CF692694, 0xE49B69C19EF14AD2, 0xEFBE4786384F25E3, 0x0FC19DC68B8CD5B5, 0x240CA1CC77AC9C65,
    0x2DE92C6F592B0275, 0x4A7484AA6EA6E483, 0x5CB0A9DCBD41FBD4, 0x76F988DA831153B5, 0x983E5152EE66DFAB,
    0xA831C66D2DB43210, 0xB00327C898FB213F, 0xBF597FC7BEEF0EE4, 0xC6E00BF33DA88FC2, 0xD5A79147930AA725,
    0x06CA6351E003826F, 0x142929670A0E6E70, 0x27B70A8546D22FFC, 0x2E1B21385C26C926, 0x4D2C6DFC5AC42AED,
    0x53380D139D95B3DF, 0x650A73548BAF63DE, 0x766A0ABB3C77B2A8, 0x81C2C92E47EDAEE6, 0x92722C851482353B,
    0xA2BFE8A14CF10364, 0xA81A664BBC423001, 0xC24B8B70D0F89791, 0xC76C51A30654BE30, 0xD192E819D6EF5218,
    0xD69906245565A910, 0xF40E35855771202A, 0x106AA07032BBD1B8, 0x19A4C116B8D2D0C8, 0x1E376C085141AB53,
    0x2748774CDF8EEB99, 0x34B0BCB5E19B48A8, 0x391C0CB3C5C95A63, 0x4ED8AA4AE3418ACB, 0x5B9CCA4F7763E373,
    0x682E6FF3D6B2B8A3, 0x748F82EE5DEFB2FC, 0x78A5636F43172F60, 0x84C87814A1F0AB72, 0x8CC702081A6439EC,
    0x90BEFFFA23631E28, 0xA4506CEBDE82BDE9, 0xBEF9A3F7B2C67915, 0xC67178F2E372532B, 0xCA273ECEEA26619C,
    0xD186B8C721C0C207, 0xEADA7DD6CDE0EB1E, 0xF57D4F7FEE6ED178, 0x06F067AA72176FBA, 0x0A637DC5A2C898A6,
    0x113F9804BEF90DAE, 0x1B710B35131C471B, 0x28DB77F523047D84, 0x32CAAB7B40C72493, 0x3C9EBE0A15C9BEBC,
    0x431D67C49C100D4C, 0x4CC5D4BECB3E42B6, 0x597F299CFC657E2A, 0x5FCB6FAB3AD6FAEC, 0x6C44198C4A475817,
};

// The same of the square roots of the first 16 primes: SHA-256 and SHA-512 start
// with the first eight, SHA-384 with the others.
constexpr std::uint64_t kInitialStates[16] = {
    0x6A09E667F3BCC908, 0xBB67AE8584CAA73B, 0x3C6EF372FE94F82B, 0xA54FF53A5F1D36F1,
    0x510E527FADE682D1, 0x9B05688C2B3E6C1F, 0x1F83D9ABFB41BD6B, 0x5BE0CD19137E2179,
    0xCBBB9D5DC1059ED8, 0x629A292A367CD507, 0x9159015A3070DD17, 0x152FECD8F70E5939,
    0x67332667FFC00B31, 0x8EB44A8768581511, 0xDB0C2E0D64F98FA7, 0x47B5481DBEFA4FA4,
};

// The first bits of a 64-bit constant, as many as the word has.
template <typename Word>
Word Leading(std::uint64_t constant)
{
    return static_cast<Word>(constant >> (64 - 8 * sizeof(Word)));
}

// Rotations and shifts of the four sigma functions.
template <typename Word>
struct Sigma;

template <>
struct Sigma<std::uint32_t> {
    static constexpr unsigned kRounds = 64;
    static constexpr int kBig0[3] = {2, 13, 22}, kBig1[3] = {6, 11, 25};
    static constexpr int kSmall0[3] = {7, 18, 3}, kSmall1[3] = {17, 19, 10};
};

template <>
struct Sigma<std::uint64_t> {
    static constexpr unsigned kRounds = 80;
    static constexpr int kBig0[3] = {28, 34, 39}, kBig1[3] = {14, 18, 41};
    static constexpr int kSmall0[3] = {1, 8, 7}, kSmall1[3] = {19, 61, 6};
};

template <typename Word>
inline Word Rotations(Word x, const int (&by)[3])
{
    return std::rotr(x, by[0]) ^ std::rotr(x, by[1]) ^ std::rotr(x, by[2]);
}

template <typename Word>
inline Word RotationsAndShift(Word x, const int (&by)[3])
{
    return std::rotr(x, by[0]) ^ std::rotr(x, by[1]) ^ (x >> by[2]);
}

} // namespace

template <typename Word>
Sha2<Word>::Sha2(const std::uint64_t *initial) : Hashing(16 * sizeof(Word))
{
    for (Word &word : state_) {
        word = Leading<Word>(*initial++);
    }
}

template <typename Word>
void Sha2<Word>::Compress(const std::uint8_t *block)
{
    using S = Sigma<Word>;
    Word schedule[16]; // the last 16 words of the message schedule, in a ring
    for (unsigned i = 0; i < 16; ++i) {
        schedule[i] = LoadBigEndian<Word>(block + sizeof(Word) * i);
    }
    auto [a, b, c, d, e, f, g, h] = state_;
    for (unsigned round = 0; round < S::kRounds; ++round) {
        Word &word = schedule[round % 16];
        if (round >= 16) {
            word += RotationsAndShift(schedule[(round + 1) % 16], S::kSmall0) + schedule[(round + 9) % 16] +
                    RotationsAndShift(schedule[(round + 14) % 16], S::kSmall1);
        }
        const Word choice = (e & f) ^ (~e & g);
        const Word majority = (a & b) ^ (a & c) ^ (b & c);
        const Word first = h + Rotations(e, S::kBig1) + choice + Leading<Word>(kRoundConstants[round]) + word;
        const Word second = Rotations(a, S::kBig0) + majority;
        h = g;
        g = f;
        f = e;
        e = d + first;
        d = c;
        c = b;
        b = a;
        a = first + second;
    }
    const Word sums[8] = {a, b, c, d, e, f, g, h};
    for (unsigned i = 0; i < 8; ++i) {
        state_[i] += sums[i];
    }
}

template <typename Word>
void Sha2<Word>::Finish(std::uint8_t *digest, std::uint32_t size)
{
    PadWithLength(LengthOrder::kBigEndian);
    for (unsigned i = 0; i < size / sizeof(Word); ++i) {
        StoreBigEndian(state_[i], digest + sizeof(Word) * i);
    }
}

template class Sha2<std::uint32_t>;
template class Sha2<std::uint64_t>;

Sha256::Sha256() : Sha2(kInitialStates) {}
Sha384::Sha384() : Sha2(kInitialStates + 8) {}
Sha512::Sha512() : Sha2(kInitialStates) {}

} // namespace pavonix
