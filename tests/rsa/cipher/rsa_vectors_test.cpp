// Ciphertexts by OpenSSL for given seeds and every kind of modulus: OAEP with the seed as
// random bytes, then the public operation, or the private one without padding. The seeds of
// the private rows make ciphertexts that begin with a zero byte.
#include "rsa/cipher/rsa_encrypt.h"
#include "rsa/digest/hash_table.h"
#include "rsa/log/logger.h"
#include "support/rsa_keys.h"
#include "support/texts.h"

#include <gtest/gtest.h>

using namespace pavonix;
using namespace pavonix::test;

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
            const RsaSettings settings = {record,
                                          row.privateKey ? KeyType::kPrivate : KeyType::kPublic,
                                          RsaPadding::kOaep,
                                          HashId::kSha1,
                                          {},
                                          true,
                                          false};
            Logger logger;
            DataBuffer cipher;
            const bool success = EncryptRsa(Bytes(row.message), settings, &cipher, logger);
            const std::string log = LogText(logger);
            ++(row.privateKey ? privateRows : publicRows);
            const bool zeroFirst = row.cipher[0] == 0;
            if (zeroFirst && key.bits % 8 != 0) {
                EXPECT_FALSE(success);
                EXPECT_NE(log.find("Output of RSA encryption not equal to modulus size."), log.npos);
            } else {
                EXPECT_TRUE(success);
                EXPECT_EQ(ToHex(BytesOf(cipher)), ToHex(row.cipher));
                EXPECT_EQ(log.find("Zero-extending") != log.npos, zeroFirst);
            }
        }
    }
    EXPECT_EQ(publicRows, 66);
    EXPECT_EQ(privateRows, 11);
}
