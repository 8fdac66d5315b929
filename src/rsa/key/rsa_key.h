// The one RSA key that a component holds.
#pragma once

#include "rsa/bigint/mp_int.h"

#include <cstdint>

namespace pavonix {

enum class KeyType : std::int32_t { kPublic = 0, kPrivate = 1 };

// Starts as an empty public key.
struct RsaKey {
    std::int32_t cachedBitLength = 0; // of the modulus; never set: 0 means "count the bits"
    KeyType type = KeyType::kPublic;
    mp_int e; // public exponent
    mp_int d; // private exponent, read but not used: the Chinese remainder form needs only p to dQ
    mp_int N; // modulus, p * q
    mp_int p;
    mp_int q;
    mp_int qP; // q^-1 mod p
    mp_int dP; // d mod (p - 1)
    mp_int dQ; // d mod (q - 1)

    std::int32_t ModulusBitLength() const { return cachedBitLength != 0 ? cachedBitLength : N.CountBits(); }
};

} // namespace pavonix
