#include "support/rsa_keys.h"

#include "rsa/key/key_reader.h"
#include "rsa/log/log_base.h"
#include "rsa/random/r250.h"
#include "support/tap.h"

#include <cstring>
#include <fstream>
#include <gtest/gtest.h>
#include <openssl/evp.h>
#include <sstream>

namespace pavonix::test {

namespace {

const unsigned char *Unsigned(const std::string &bytes)
{
    return reinterpret_cast<const unsigned char *>(bytes.data());
}

unsigned char *Unsigned(std::string &bytes)
{
    return reinterpret_cast<unsigned char *>(bytes.data());
}

std::shared_ptr<RSA> MakeRsa(const std::string &pHex, const std::string &qHex)
{
    const std::shared_ptr<BN_CTX> context(BN_CTX_new(), BN_CTX_free);
    BIGNUM *p = nullptr, *q = nullptr;
    BN_hex2bn(&p, pHex.c_str());
    BN_hex2bn(&q, qHex.c_str());
    BIGNUM *n = BN_new(), *e = BN_new(), *dp = BN_new(), *dq = BN_new();
    BN_mul(n, p, q, context.get());
    BN_set_word(e, 65537);
    const Number p1(BN_dup(p), BN_free), q1(BN_dup(q), BN_free), phi(BN_new(), BN_free);
    BN_sub_word(p1.get(), 1);
    BN_sub_word(q1.get(), 1);
    BN_mul(phi.get(), p1.get(), q1.get(), context.get());
    BIGNUM *d = BN_mod_inverse(nullptr, e, phi.get(), context.get());
    BN_mod(dp, d, p1.get(), context.get());
    BN_mod(dq, d, q1.get(), context.get());
    std::shared_ptr<RSA> rsa(RSA_new(), RSA_free);
    RSA_set0_key(rsa.get(), n, e, d);
    RSA_set0_factors(rsa.get(), p, q);
    RSA_set0_crt_params(rsa.get(), dp, dq, BN_mod_inverse(nullptr, q, p, context.get()));
    return rsa;
}

std::vector<TestKey> LoadKeys()
{
    std::ifstream file(TEST_DATA_DIR "/rsa_vectors.txt");
    std::vector<TestKey> keys;
    for (std::string line; std::getline(file, line);) {
        std::istringstream words(line);
        std::string kind, first, second, third;
        words >> kind >> first >> second >> third;
        if (kind == "key") {
            keys.push_back({.bits = std::stoi(first), .rsa = MakeRsa(second, third), .rows = {}});
        } else {
            keys.back().rows.push_back({kind == "private", FromHex(first), FromHex(second), FromHex(third)});
        }
    }
    return keys;
}

} // namespace

std::string FromHex(const std::string &hex)
{
    std::string bytes;
    for (std::size_t i = 0; i + 1 < hex.size(); i += 2) {
        bytes.push_back(static_cast<char>(std::stoi(hex.substr(i, 2), nullptr, 16)));
    }
    return bytes;
}

std::string ToHex(const std::string &bytes)
{
    std::string hex;
    for (const char byte : bytes) {
        hex += "0123456789ABCDEF"[static_cast<unsigned char>(byte) >> 4];
        hex += "0123456789ABCDEF"[byte & 15];
    }
    return hex;
}

std::string ToBase64(const std::string &bytes)
{
    std::string text(bytes.size() / 3 * 4 + 5, 0);
    text.resize(
        static_cast<std::size_t>(EVP_EncodeBlock(Unsigned(text), Unsigned(bytes), static_cast<int>(bytes.size()))));
    return text;
}

Number ToNumber(const std::string &bytes)
{
    return Number(BN_bin2bn(Unsigned(bytes), static_cast<int>(bytes.size()), nullptr), BN_free);
}

std::string ToBytes(const BIGNUM *number)
{
    std::string bytes(static_cast<std::size_t>(BN_num_bytes(number)), 0);
    BN_bn2bin(number, Unsigned(bytes));
    return bytes;
}

std::string TestKey::Raw(bool privateKey, const std::string &block) const
{
    std::string result(size(), 0);
    const auto apply = privateKey ? RSA_private_encrypt : RSA_public_encrypt;
    const int length =
        apply(static_cast<int>(block.size()), Unsigned(block), Unsigned(result), rsa.get(), RSA_NO_PADDING);
    EXPECT_EQ(length, RSA_size(rsa.get()));
    return result;
}

std::string TestKey::Decode(bool privateKey, int padding, const std::string &cipher) const
{
    const std::string block = Raw(!privateKey, cipher);
    std::string message(block.size(), 0);
    const int size = static_cast<int>(block.size());
    const int length =
        padding == RSA_PKCS1_OAEP_PADDING
            ? RSA_padding_check_PKCS1_OAEP(Unsigned(message), size, Unsigned(block), size, size, nullptr, 0)
            : RSA_padding_check_PKCS1_type_2(Unsigned(message), size, Unsigned(block), size, size);
    return length < 0 ? "?" : message.substr(0, static_cast<std::size_t>(length));
}

std::string Element(const std::string &tag, const std::string &bytes)
{
    return std::string("<") + tag + ">" + ToBase64(bytes) + "</" + tag + ">";
}

std::string TestKey::PublicXml() const
{
    return "<RSAKeyValue>" + Element("Modulus", ToBytes(RSA_get0_n(rsa.get()))) +
           Element("Exponent", ToBytes(RSA_get0_e(rsa.get()))) + "</RSAKeyValue>";
}

std::string TestKey::PrivateXml() const
{
    const RSA *key = rsa.get();
    std::string xml = PublicXml();
    xml.resize(xml.size() - std::strlen("</RSAKeyValue>"));
    return xml + Element("P", ToBytes(RSA_get0_p(key))) + Element("Q", ToBytes(RSA_get0_q(key))) +
           Element("DP", ToBytes(RSA_get0_dmp1(key))) + Element("DQ", ToBytes(RSA_get0_dmq1(key))) +
           Element("InverseQ", ToBytes(RSA_get0_iqmp(key))) + Element("D", ToBytes(RSA_get0_d(key))) + "</RSAKeyValue>";
}

const std::vector<TestKey> &TestKeys()
{
    static const std::vector<TestKey> keys = LoadKeys();
    return keys;
}

const TestKey &KeyOfBits(int bits)
{
    for (const TestKey &key : TestKeys()) {
        if (key.bits == bits) {
            return key;
        }
    }
    throw std::out_of_range("no such key");
}

void ReadTestKey(const std::string &xml, RsaKey *key)
{
    LogBase log;
    ASSERT_TRUE(ReadKey(xml.c_str(), key, false, log)) << xml;
}

void ScriptSeed(const std::string &seed)
{
    // The generator's first words are words 0 to 4 of its state, xored with words
    // 103 to 107; the top bit of word 3 is always set.
    std::string state(1000, 0);
    state.replace(103 * 4, seed.size(), seed);
    state[106 * 4 + 3] ^= static_cast<char>(0x80);
    tap::UseRandom(state);
    SharedR250().Seed();
}

} // namespace pavonix::test
