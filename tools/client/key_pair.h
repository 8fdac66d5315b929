// An RSA key pair as the profile holds it: XML on one line.
#pragma once

#include <string>

namespace client {

struct KeyPair {
    std::string publicXml;
    std::string privateXml;         // with D, the private exponent
    std::string privateXmlWithoutD; // D is not needed where P, Q, DP, DQ and InverseQ are known
};

// Makes a key pair with what the system has for it: linux/ with OpenSSL, windows/ with
// CNG. bits: 512 to 16384. Throws Failure for a size that it does not make.
[[nodiscard]] KeyPair MakeKeyPair(int bits);

} // namespace client
