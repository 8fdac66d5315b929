// Integers to decimal text and back, the same on every flavour: the C library's
// own conversions differ for numbers beyond 32 bits.
#pragma once

#include <cstdint>

namespace pavonix {

// The text of one 32-bit integer, as "%d" writes it; with minimumDigits 3 as
// "%.3d" does, the sign not counted among the digits.
class DecimalText {
public:
    explicit DecimalText(std::int32_t value, int minimumDigits = 1);
    const char *c_str() const { return start_; }

    DecimalText(const DecimalText &) = delete;
    DecimalText &operator=(const DecimalText &) = delete;

private:
    char text_[16];
    char *start_;
};

// Reads a number as atoi and a "%d" scan do: skips white space, takes one sign and the
// digits up to the first non-digit; 0 when there are none. A number beyond 32 bits becomes
// the nearest 32-bit one.
std::int32_t ParseDecimal(const char *text);

} // namespace pavonix
