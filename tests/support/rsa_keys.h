// RSA keys and vectors kept as data, OpenSSL's view of them, and random bytes
// that a test chooses.
#pragma once

#define OPENSSL_SUPPRESS_DEPRECATED // its one-shot RSA calls are just what an oracle needs

#include "rsa/key/rsa_key.h"
#include "rsa/text/data_buffer.h"

#include <memory>
#include <openssl/bn.h>
#include <openssl/rsa.h>
#include <string>
#include <vector>

namespace pavonix::test {

std::string FromHex(const std::string &hex);
std::string ToHex(const std::string &bytes); // upper case
std::string ToBase64(const std::string &bytes);
inline std::string BytesOf(const DataBuffer &buffer)
{
    return std::string(reinterpret_cast<const char *>(buffer.data()), buffer.length());
}

using Number = std::shared_ptr<BIGNUM>;
Number ToNumber(const std::string &bytes);
std::string ToBytes(const BIGNUM *number); // big-endian without leading zeros

struct VectorRow {
    bool privateKey;
    std::string seed, message, cipher; // bytes
};

struct TestKey {
    int bits = 0;
    std::shared_ptr<RSA> rsa;
    std::vector<VectorRow> rows;

    std::size_t size() const { return static_cast<std::size_t>(RSA_size(rsa.get())); }
    // The RSA operation with either key, without padding.
    std::string Raw(bool privateKey, const std::string &block) const;
    // The message of a block that was encrypted with either key; "?" when it has none.
    std::string Decode(bool privateKey, int padding, const std::string &cipher) const;
    std::string PublicXml() const;
    std::string PrivateXml() const;
};

const std::vector<TestKey> &TestKeys();
const TestKey &KeyOfBits(int bits); // the one with rows

// A key part as an XML element.
std::string Element(const std::string &tag, const std::string &bytes);
// Reads an XML key that must be readable.
void ReadTestKey(const std::string &xml, RsaKey *key);

// Makes the 20 bytes the next that the random source gives. Its provider is
// scripted so that the generator's first words are these.
void ScriptSeed(const std::string &seed);

} // namespace pavonix::test
