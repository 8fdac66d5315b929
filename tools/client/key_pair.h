// Generates RSA key pairs: linux/ with OpenSSL, windows/ with CNG.
#pragma once

#include <string>

namespace client {

// In base64.
struct KeyPair {
    std::string modulus, exponent, p, q, dp, dq, inverseQ, d;
};

// bits: 512 to 16384. Throws Failure for a size that the system does not support.
[[nodiscard]] KeyPair MakeKeyPair(int bits);

} // namespace client
