// Ciphertexts and raw results against OpenSSL, for every kind of modulus.
#include "rsa/cipher/rsa_encrypt.h"
#include "rsa/cipher/rsa_exponentiation.h"
#include "rsa/digest/hash_table.h"
#include "rsa/log/logger.h"
#include "support/rsa_keys.h"
#include "support/texts.h"

#include <gtest/gtest.h>

using namespace pavonix;
using namespace pavonix::test;

namespace {

struct Outcome {
    bool success;
    std::string bytes;
    std::string log;
};

Outcome EncryptOaep(const std::string &message, const RsaKey &key, bool privateKey)
{
    const RsaSettings settings = {
        key, privateKey ? kPrivateKey : kPublicKey, kOaepPadding, kSha1HashId, nullptr, 0, true, false};
    Logger log;
    DataBuffer cipher;
    const bool success = EncryptRsa(Data(message), static_cast<std::uint32_t>(message.size()), settings, &cipher, log);
    return {success, BytesOf(cipher), LogText(log)};
}

std::string Exponentiate(const std::string &input, const RsaKey &key, bool zeroExtend)
{
    LogBase log;
    DataBuffer output;
    EXPECT_TRUE(ExponentiateRsa(Data(input), static_cast<std::uint32_t>(input.size()), kPrivateKey, key, zeroExtend,
                                &output, log));
    return BytesOf(output);
}

} // namespace

TEST(RsaVectors, OaepCiphertextsForGivenSeeds)
{
    int publicRows = 0;
    int privateRows = 0;
    for (const TestKey &key : TestKeys()) {
        RsaKey record;
        ReadTestKey(key.PrivateXml(), &record);
        for (const VectorRow &row : key.rows) {
            SCOPED_TRACE(std::to_string(key.bits) + " " + ToHex(row.seed));
            ScriptSeed(row.seed);
            const Outcome outcome = EncryptOaep(row.message, record, row.privateKey);
            ++(row.privateKey ? privateRows : publicRows);
            const bool zeroFirst = row.cipher[0] == 0;
            if (zeroFirst && key.bits % 8 != 0) {
                EXPECT_FALSE(outcome.success);
                EXPECT_NE(outcome.log.find("Output of RSA encryption not equal to modulus size."), std::string::npos);
            } else {
                EXPECT_TRUE(outcome.success);
                EXPECT_EQ(ToHex(outcome.bytes), ToHex(row.cipher));
                EXPECT_EQ(outcome.log.find("Zero-extending") != std::string::npos, zeroFirst);
            }
        }
    }
    EXPECT_EQ(publicRows, 66);
    EXPECT_EQ(privateRows, 11);
}

// The result to be is chosen, with up to three zero bytes in front; OpenSSL's
// public operation gives the input that leads to it.
TEST(RsaVectors, PrivateOperationWithLeadingZeros)
{
    int keys = 0;
    for (const TestKey &key : TestKeys()) {
        RsaKey record;
        ReadTestKey(key.PrivateXml(), &record);
        ++keys;
        for (std::size_t zeros = 0; zeros <= 3; ++zeros) {
            SCOPED_TRACE(std::to_string(key.bits) + " with zeros: " + std::to_string(zeros));
            // below any modulus of that size
            std::string expected(key.size() / 2, 0);
            expected[zeros] = 1;
            expected.resize(key.size(), static_cast<char>(0x5A + zeros));
            const std::string input = key.Raw(false, expected);
            ASSERT_EQ(ToHex(key.Raw(true, input)), ToHex(expected));
            const std::string minimal = expected.substr(zeros);
            EXPECT_EQ(ToHex(Exponentiate(input, record, false)), ToHex(minimal));
            EXPECT_EQ(ToHex(Exponentiate(input, record, true)), ToHex(key.bits % 8 == 0 ? expected : minimal));
        }
    }
    EXPECT_GE(keys, 50);
}
