#include "rsa/bigint/mp_int.h"

#include "rsa/encoding/content_coding.h"
#include "rsa/text/wipe.h"

#include <cstring>

namespace pavonix {

mp_int::mp_int()
{
    if (mp_init(&value_) != MP_OKAY) {
        value_ = {};
    }
}

mp_int::~mp_int()
{
    // not left to mp_clear: compiled with optimisation it may free without wiping
    Wipe(value_.dp, static_cast<std::size_t>(value_.alloc) * sizeof *value_.dp);
    mp_clear(&value_);
}

bool mp_int::ReadUnsignedBytes(const std::uint8_t *bytes, std::uint32_t length)
{
    if (!usable() && mp_init(&value_) != MP_OKAY) {
        value_ = {};
        return false;
    }
    const std::uint64_t digits = std::uint64_t{length} * 8 / MP_DIGIT_BIT + 1;
    mp_zero(&value_);
    if (mp_grow(&value_, static_cast<int>(digits)) != MP_OKAY) {
        mp_clear(&value_); // leave it unusable rather than holding a stale value
        value_ = {};
        return false;
    }
    SetDigits(bytes, length);
    value_.used = static_cast<int>(digits);
    mp_clamp(&value_);
    return true;
}

// LibTomMath's own reading shifts the whole number for each byte, which would take
// longer than the rest of a key's import.
void mp_int::SetDigits(const std::uint8_t *bytes, std::uint32_t length)
{
    ::mp_digit *digit = value_.dp;
    ::mp_digit bits = 0;
    std::uint32_t shift = 0;
    for (std::uint32_t i = length; i-- > 0;) {
        bits |= ::mp_digit{bytes[i]} << shift;
        shift += 8;
        if (shift >= MP_DIGIT_BIT) {
            *digit++ = bits & MP_MASK;
            shift -= MP_DIGIT_BIT;
            bits = ::mp_digit{bytes[i]} >> (8 - shift);
        }
    }
    *digit = bits;
}

bool mp_int::ReadBase64(const char *text)
{
    if (text == nullptr || text[0] == 0) {
        return false;
    }
    DataBuffer bytes;
    const auto length = static_cast<std::uint32_t>(std::strlen(text));
    if (!ContentCoding::DecodeBase64(text, length, &bytes) || bytes.length() == 0) {
        return false;
    }
    return ReadUnsignedBytes(bytes.data(), bytes.length());
}

bool mp_int::WriteUnsignedBytes(DataBuffer *output) const
{
    const std::uint32_t size = UnsignedByteSize();
    if (size == 0) {
        return true;
    }
    // Exact room: the buffer's own slack is many times a key's size.
    if (!output->EnsureCapacity(output->length() + size)) {
        return false;
    }
    for (std::uint32_t i = size; i-- > 0;) {
        const std::uint32_t digit = i * 8 / MP_DIGIT_BIT;
        const std::uint32_t shift = i * 8 % MP_DIGIT_BIT;
        ::mp_digit byte = value_.dp[digit] >> shift;
        if (shift > MP_DIGIT_BIT - 8 && digit + 1 < static_cast<std::uint32_t>(value_.used)) {
            byte |= value_.dp[digit + 1] << (MP_DIGIT_BIT - shift);
        }
        (void)output->AppendByte(static_cast<std::uint8_t>(byte)); // there is room
    }
    return true;
}

std::int32_t mp_int::CountBits() const
{
    return mp_count_bits(&value_);
}

std::uint32_t mp_int::UnsignedByteSize() const
{
    return (static_cast<std::uint32_t>(CountBits()) + 7) / 8;
}

int Compare(const mp_int &a, const mp_int &b)
{
    return mp_cmp(&a.value_, &b.value_);
}

int ExptMod(const mp_int &g, const mp_int &x, const mp_int &m, mp_int *y)
{
    if (!mp_int::AreUsable(g, x, m, *y)) {
        return MP_MEM;
    }
    const bool modulusIsOne = m.CountBits() == 1;
    const int result = mp_exptmod(&g.value_, &x.value_, &m.value_, &y->value_);
    if (modulusIsOne) {
        mp_zero(&y->value_); // LibTomMath returns 1 for an exponent of 0
    }
    return result;
}

int MulMod(const mp_int &a, const mp_int &b, const mp_int &m, mp_int *y)
{
    return mp_int::AreUsable(a, b, m, *y) ? mp_mulmod(&a.value_, &b.value_, &m.value_, &y->value_) : MP_MEM;
}

int Mul(const mp_int &a, const mp_int &b, mp_int *y)
{
    return mp_int::AreUsable(a, b, *y) ? mp_mul(&a.value_, &b.value_, &y->value_) : MP_MEM;
}

int Add(const mp_int &a, const mp_int &b, mp_int *y)
{
    return mp_int::AreUsable(a, b, *y) ? mp_add(&a.value_, &b.value_, &y->value_) : MP_MEM;
}

int Sub(const mp_int &a, const mp_int &b, mp_int *y)
{
    return mp_int::AreUsable(a, b, *y) ? mp_sub(&a.value_, &b.value_, &y->value_) : MP_MEM;
}

} // namespace pavonix
