// A device's public key: read once from a file, kept in the database as PEM.
#pragma once

#include <openssl/evp.h>

#include <memory>
#include <string>

namespace token {

struct FreePublicKey {
    void operator()(EVP_PKEY *key) const { EVP_PKEY_free(key); }
};
using PublicKey = std::unique_ptr<EVP_PKEY, FreePublicKey>;

// Reads an RSA public key from a text: PEM ("BEGIN PUBLIC KEY"), or one XML
// element whose children Modulus and Exponent hold base64. Throws
// std::runtime_error that says what is wrong; a private key is refused, as it
// has no business leaving its device.
[[nodiscard]] PublicKey ReadPublicKey(const std::string &text);

[[nodiscard]] std::string PublicKeyToPem(const PublicKey &key);

} // namespace token
