// The token with which a device proves who it is: the header "User-Cert".
//
// The device OAEP-encodes the time text (token/time_text.h; RFC 8017, SHA-1, empty label) in
// as many blocks as needed, raises each block to the *private* exponent, and encodes the
// result in base64. Anyone with the public key can read it; only the device can make it.
#pragma once

#include "token/base64.h"
#include "token/public_key.h"
#include "token/time_text.h"

#include <vector>

namespace token {

struct Token {
    std::vector<Bytes> blocks; // as received; the shop must accept no block twice
    WallTime time;             // the device's clock when it made the token
};

// The results of each step, up to the first that fails.
struct OpenedBlock {
    Bytes received;
    Bytes encoded;                   // raised to the public exponent; empty if not below the modulus
    std::optional<std::string> text; // without OAEP
};
struct Opening {
    std::optional<Bytes> ciphertext;
    std::vector<OpenedBlock> blocks; // empty if the ciphertext is not a multiple of the key's size
    std::optional<std::string> text; // of all blocks
    std::optional<WallTime> time;
};
[[nodiscard]] Opening OpenStepByStep(const std::string &headerValue, const PublicKey &key);

// Opens the header's value with the device's key. Empty if the value was not made with the
// matching private key, or is not a time.
[[nodiscard]] std::optional<Token> OpenToken(const std::string &headerValue, const PublicKey &key);

} // namespace token
