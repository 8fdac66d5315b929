// The one RSA key that a component holds.
#pragma once

#include "rsa/bigint/mp_int.h"

#include <cstdint>

namespace pavonix {

constexpr std::int32_t kPublicKey = 0;
constexpr std::int32_t kPrivateKey = 1;

// Born as an empty public key.
struct RsaKey {
    std::int32_t cachedBitLength = 0; // of the modulus; 0, which nothing here changes, means: count them
    std::int32_t type = kPublicKey;
    mp_int e; // public exponent
    mp_int d; // private exponent, never calculated with
    mp_int N; // modulus, p * q
    mp_int p;
    mp_int q;
    mp_int qP; // q^-1 mod p
    mp_int dP; // d mod (p - 1)
    mp_int dQ; // d mod (q - 1)

    std::int32_t ModulusBitLength() const { return cachedBitLength != 0 ? cachedBitLength : N.CountBits(); }
};

} // namespace pavonix
