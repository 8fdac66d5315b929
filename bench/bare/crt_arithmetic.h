// The private operation of RSA, directly on LibTomMath.
#pragma once

#include <string>
#include <tommath.h>

namespace pavonix::bench {

// The least that a token costs: the exponentiation by the Chinese remainder theorem,
// with its operands made and freed, and the bytes converted.
class CrtArithmetic {
public:
    explicit CrtArithmetic(const std::string &keyXml);
    ~CrtArithmetic();
    CrtArithmetic(const CrtArithmetic &) = delete;
    CrtArithmetic &operator=(const CrtArithmetic &) = delete;

    // block^d mod N, big-endian; empty when the arithmetic failed.
    std::string Apply(const std::string &block) const;
    // cipher^e mod N, to check Apply.
    std::string Undo(const std::string &cipher) const;

private:
    ::mp_int n_, e_, p_, q_, dP_, dQ_, qP_;
};

} // namespace pavonix::bench
