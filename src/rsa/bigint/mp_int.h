// A big integer: an owning wrapper around one LibTomMath integer.
#pragma once

#include "rsa/text/data_buffer.h"

#include <cstdint>
#include <tommath.h>

namespace pavonix {

// Starts as 0. If memory for the digits runs out, in the constructor or in a read, the
// integer counts as 0 and is unusable: every calculation with it returns MP_MEM until a
// read succeeds.
class mp_int {
public:
    mp_int();
    virtual ~mp_int();
    mp_int(const mp_int &) = delete;
    mp_int &operator=(const mp_int &) = delete;

    // Takes the value of `length` big-endian bytes; leading zeros are allowed and
    // a length of 0 gives 0. False when memory runs out.
    [[nodiscard]] bool ReadUnsignedBytes(const std::uint8_t *bytes, std::uint32_t length);
    // Takes the value of a zero-terminated base64 text. False for a null or empty text,
    // one that decodes to no bytes, and when memory runs out; only the last changes the
    // integer.
    [[nodiscard]] bool ReadBase64(const char *text);
    // Appends the magnitude big-endian without leading zeros; 0 appends nothing.
    // False when memory runs out: `output` is then empty.
    [[nodiscard]] bool WriteUnsignedBytes(DataBuffer *output) const;

    // Significant bits; 0 for 0.
    std::int32_t CountBits() const;
    // The bits rounded up to whole bytes.
    std::uint32_t UnsignedByteSize() const;

private:
    friend int Compare(const mp_int &a, const mp_int &b);
    friend int ExptMod(const mp_int &g, const mp_int &x, const mp_int &m, mp_int *y);
    friend int MulMod(const mp_int &a, const mp_int &b, const mp_int &m, mp_int *y);
    friend int Mul(const mp_int &a, const mp_int &b, mp_int *y);
    friend int Add(const mp_int &a, const mp_int &b, mp_int *y);
    friend int Sub(const mp_int &a, const mp_int &b, mp_int *y);

    void SetDigits(const std::uint8_t *bytes, std::uint32_t length); // of 0, with room for them
    bool usable() const { return value_.dp != nullptr; }
    template <typename... Numbers>
    static bool AreUsable(const Numbers &...numbers)
    {
        return (numbers.usable() && ...);
    }

    ::mp_int value_ = {}; // no digits (dp null) while unusable
};

// -1, 0 or 1: a is less than, equal to or greater than b.
int Compare(const mp_int &a, const mp_int &b);

// The calculations return LibTomMath's code: MP_OKAY (0) on success, MP_MEM when memory
// runs out, MP_VAL for operands without a result, such as a modulus of 0. y may be one of
// the operands.

// y = g^x mod m. A negative modulus is refused.
[[nodiscard]] int ExptMod(const mp_int &g, const mp_int &x, const mp_int &m, mp_int *y);
// y = a * b mod m, not negative.
[[nodiscard]] int MulMod(const mp_int &a, const mp_int &b, const mp_int &m, mp_int *y);
[[nodiscard]] int Mul(const mp_int &a, const mp_int &b, mp_int *y);
[[nodiscard]] int Add(const mp_int &a, const mp_int &b, mp_int *y);
[[nodiscard]] int Sub(const mp_int &a, const mp_int &b, mp_int *y);

} // namespace pavonix
