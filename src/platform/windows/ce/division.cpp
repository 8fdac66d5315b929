// Division for a processor that has no divide instruction, under the names and
// register conventions of the ARM run-time ABI (IHI 0043, section 4.3).
#include <cstdint>

namespace {

template <typename Unsigned>
struct Division {
    Unsigned quotient;
    Unsigned remainder;
};

// Schoolbook division, one bit at a time from the first that can be set.
// A divisor of 0 gives quotient 0, as the ABI's default does.
template <typename Unsigned>
inline Division<Unsigned> Divide(Unsigned dividend, Unsigned divisor)
{
    Division<Unsigned> result = {0, dividend};
    if (divisor == 0) {
        return result;
    }
    constexpr Unsigned kTopBit = Unsigned{1} << (sizeof(Unsigned) * 8 - 1);
    Unsigned bit = 1;
    while (divisor < dividend && (divisor & kTopBit) == 0) {
        divisor <<= 1;
        bit <<= 1;
    }
    for (; bit != 0; bit >>= 1, divisor >>= 1) {
        if (result.remainder >= divisor) {
            result.remainder -= divisor;
            result.quotient |= bit;
        }
    }
    return result;
}

inline std::uint32_t Magnitude(std::int32_t value)
{
    return value < 0 ? 0u - static_cast<std::uint32_t>(value) : static_cast<std::uint32_t>(value);
}

// Two result registers: the first is the low word, the second the high one.
inline std::uint64_t Pair(std::uint32_t first, std::uint32_t second)
{
    return std::uint64_t{second} << 32 | first;
}

} // namespace

extern "C" {

std::uint64_t __aeabi_uidivmod(std::uint32_t dividend, std::uint32_t divisor)
{
    const auto result = Divide(dividend, divisor);
    return Pair(result.quotient, result.remainder);
}

std::uint32_t __aeabi_uidiv(std::uint32_t dividend, std::uint32_t divisor)
{
    return static_cast<std::uint32_t>(__aeabi_uidivmod(dividend, divisor));
}

std::uint64_t __aeabi_idivmod(std::int32_t dividend, std::int32_t divisor)
{
    const auto result = Divide(Magnitude(dividend), Magnitude(divisor));
    return Pair((dividend < 0) != (divisor < 0) ? 0u - result.quotient : result.quotient,
                dividend < 0 ? 0u - result.remainder : result.remainder);
}

std::int32_t __aeabi_idiv(std::int32_t dividend, std::int32_t divisor)
{
    return static_cast<std::int32_t>(__aeabi_idivmod(dividend, divisor));
}

// The 64-bit quotient; called from the assembly below.
[[gnu::used]] std::uint64_t DivideLong(std::uint64_t dividend, std::uint64_t divisor, std::uint64_t *remainder)
{
    const auto result = Divide(dividend, divisor);
    *remainder = result.remainder;
    return result.quotient;
}

// Quotient in r0 and r1, remainder in r2 and r3: no C++ function can return that.
[[gnu::naked]] void __aeabi_uldivmod()
{
    asm("stmfd sp!, {r4, lr}\n\t"
        "sub sp, sp, #16\n\t"
        "add r12, sp, #8\n\t"
        "str r12, [sp]\n\t" // the fifth argument word: where the remainder goes
        "bl DivideLong\n\t"
        "ldr r2, [sp, #8]\n\t"
        "ldr r3, [sp, #12]\n\t"
        "add sp, sp, #16\n\t"
        "ldmfd sp!, {r4, lr}\n\t"
        "bx lr");
}

} // extern "C"
