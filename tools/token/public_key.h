// Reading a device's public key, which the shop keeps as PEM.
#pragma once

#include "token/rsa_key.h"

#include <string>

namespace token {

// Reads an RSA public key from a text: PEM ("BEGIN PUBLIC KEY"), or one XML
// element whose children Modulus and Exponent contain base64. Throws
// std::runtime_error that says what is wrong; a private key is refused, as it
// must not leave its device.
[[nodiscard]] PublicKey ReadPublicKey(const std::string &text);

} // namespace token
