// The token with which a device proves who it is: the header "User-Cert".
//
// Made on the device: the time text (token/time_text.h), OAEP-encoded (RFC 8017, SHA-1,
// empty label) in as many blocks as it needs, each block raised to the *private*
// exponent, all of it in base64. Whoever has the public key can read it; only the
// device can make it.
#pragma once

#include "token/base64.h"
#include "token/public_key.h"
#include "token/time_text.h"

#include <vector>

namespace token {

struct Token {
    std::vector<Bytes> blocks; // as received; no block may count twice
    WallTime time;             // the device's clock when it made the token
};

// The results of each step up to the first one that fails.
struct OpenedBlock {
    Bytes received;
    Bytes encoded;                   // raised to the public exponent; empty when it is above the modulus
    std::optional<std::string> text; // without OAEP
};
struct Opening {
    std::optional<Bytes> ciphertext;
    std::vector<OpenedBlock> blocks; // empty when the ciphertext is no whole blocks of the key's size
    std::optional<std::string> text; // of all blocks
    std::optional<WallTime> time;
};
[[nodiscard]] Opening OpenStepByStep(const std::string &headerValue, const PublicKey &key);

// Opens the header's value with the device's key. Returns nothing when the value
// was not made with the private key that belongs to it, or is not a time.
[[nodiscard]] std::optional<Token> OpenToken(const std::string &headerValue, const PublicKey &key);

} // namespace token
