// An RSA key pair of OpenSSL.
#pragma once

#define OPENSSL_SUPPRESS_DEPRECATED // its old RSA functions are the simplest oracle

#include <memory>
#include <openssl/bn.h>
#include <openssl/rsa.h>
#include <string>
#include <utility>
#include <vector>

namespace pavonix::test {

std::string ToBase64(const std::string &bytes);
std::string FromBase64(const std::string &text); // empty if invalid

using Number = std::shared_ptr<BIGNUM>;
Number ToNumber(const std::string &bytes);
std::string ToBytes(const BIGNUM *number); // big-endian without leading zeros

// A key part as an XML element.
std::string Element(const std::string &tag, const std::string &bytes);

class OpenSslKey {
public:
    // Makes a new key pair.
    explicit OpenSslKey(int bits);
    // The key pair of two primes and the public exponent 65537.
    OpenSslKey(const std::string &pHex, const std::string &qHex);

    std::size_t size() const { return static_cast<std::size_t>(RSA_size(rsa_.get())); }
    // Modulus, Exponent, P and so on, as bytes, by the names of the XML elements.
    std::vector<std::pair<std::string, std::string>> Parts() const;
    std::string PublicXml() const;
    std::string PrivateXml() const;

    // The RSA operation with either key, without padding.
    std::string Raw(bool privateKey, const std::string &block) const;
    // Decrypts blocks that were encrypted with either key; "?" replaces an invalid block.
    std::string Decode(bool privateKey, int padding, const std::string &cipher) const;

private:
    std::string Xml(std::size_t parts) const; // of the first parts

    std::shared_ptr<RSA> rsa_;
};

} // namespace pavonix::test
