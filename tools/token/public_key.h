// Reads a device's public key.
#pragma once

#include "token/rsa_key.h"

#include <string>

namespace token {

// text: PEM ("BEGIN PUBLIC KEY"), or an XML element whose children Modulus and Exponent
// contain base64. Throws std::runtime_error with the reason; private keys are refused,
// because they must not leave the device.
[[nodiscard]] PublicKey ReadPublicKey(const std::string &text);

} // namespace token
