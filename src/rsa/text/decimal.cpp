#include "rsa/text/decimal.h"

namespace pavonix {

DecimalText::DecimalText(std::int32_t value, int minimumDigits) : start_(text_ + sizeof text_ - 1)
{
    std::uint32_t rest = static_cast<std::uint32_t>(value);
    rest = value < 0 ? 0u - rest : rest; // well defined for INT32_MIN too
    *start_ = 0;
    for (int digits = 0; rest != 0 || digits < minimumDigits; ++digits) {
        *--start_ = static_cast<char>('0' + rest % 10);
        rest /= 10;
    }
    if (value < 0) {
        *--start_ = '-';
    }
}

std::int32_t ParseDecimal(const char *text)
{
    while (*text == ' ' || (*text >= '\t' && *text <= '\r')) {
        ++text;
    }
    const bool negative = *text == '-';
    if (*text == '-' || *text == '+') {
        ++text;
    }
    const std::uint32_t limit = negative ? 0x80000000u : 0x7FFFFFFFu;
    std::uint32_t value = 0;
    for (; *text >= '0' && *text <= '9'; ++text) {
        const std::uint32_t digit = static_cast<std::uint32_t>(*text - '0');
        value = value > (limit - digit) / 10 ? limit : value * 10 + digit;
        if (value == limit) {
            break;
        }
    }
    return static_cast<std::int32_t>(negative ? 0u - value : value);
}

} // namespace pavonix
