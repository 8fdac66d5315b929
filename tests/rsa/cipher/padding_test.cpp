// The encoders with what the component never asks of them: labels, other digests,
// other block types, messages that do not fit.
#include "rsa/cipher/padding/eme_oaep.h"
#include "rsa/cipher/padding/eme_pkcs1.h"
#include "rsa/cipher/padding/mgf1.h"
#include "rsa/log/logger.h"
#include "support/openssl_key.h"
#include "support/texts.h"

#include <gtest/gtest.h>
#include <openssl/evp.h>

using namespace pavonix;
using namespace pavonix::test;

TEST(Padding, OaepWithLabelsAndDigestsOpensWithOpenSsl)
{
    const struct {
        std::int32_t hashId;
        const EVP_MD *digest;
    } hashes[] = {{1, EVP_sha1()}, {2, EVP_sha384()}, {3, EVP_sha512()}, {5, EVP_md5()}, {7, EVP_sha256()}};
    const std::string message = "the message";
    for (const auto &hash : hashes) {
        for (const std::string label : {"", "a label"}) {
            Logger log;
            DataBuffer block;
            ASSERT_TRUE(EncodeOaep(Data(message), 11, Data(label), static_cast<std::uint32_t>(label.size()), 1535,
                                   hash.hashId, &block, log));
            ASSERT_EQ(block.length(), 192u);
            std::uint8_t opened[192];
            const int length =
                RSA_padding_check_PKCS1_OAEP_mgf1(opened, 192, block.data(), 192, 192, Data(label),
                                                  static_cast<int>(label.size()), hash.digest, hash.digest);
            EXPECT_EQ(std::string(opened, opened + (length > 0 ? length : 0)), message) << hash.hashId;
        }
    }
}

TEST(Padding, Pkcs1BlockOfAnotherType)
{
    LogBase log;
    DataBuffer block;
    ASSERT_TRUE(EncodePkcs1(Data("ab"), 2, 1, 121, &block, log));
    EXPECT_EQ(ToHex(BytesOf(block)), "0001FFFFFFFFFFFFFFFFFFFFFF006162");
}

TEST(Padding, RefusalsAndWhatTheyLog)
{
    const std::string text(300, 'x');
    DataBuffer out;
    Logger oaep;
    EXPECT_FALSE(EncodeOaep(nullptr, 0, nullptr, 0, 1024, 1, &out, oaep));
    EXPECT_FALSE(EncodeOaep(Data(text), 0, nullptr, 0, 336, 1, &out, oaep));
    EXPECT_FALSE(EncodeOaep(Data(text), 87, nullptr, 0, 1024, 1, &out, oaep));
    EXPECT_EQ(LogText(oaep), "ZentorpLog:\r\n  null input to OAEP encoder\r\n"
                             "  Encoded message size too small given hash size in OAEP\r\n  EncodedLen: 42\r\n"
                             "  HashLen: 20\r\n  Message length too large for OAEP\r\n  EncodedLen: 128\r\n"
                             "  HashLen: 20\r\n  MessageLen: 87\r\n");
    Logger others;
    EXPECT_FALSE(EncodePkcs1(Data(text), 118, 2, 1024, &out, others));
    EXPECT_FALSE(Mgf1(100, 1, nullptr, 20, 10, &out, others));
    EXPECT_FALSE(Mgf1(101, 1, Data(text), 20, 0, &out, others));
    EXPECT_EQ(LogText(others), "ZentorpLog:\r\n  PKCS v1.5 message length too large\r\n  MessageLen: 118\r\n"
                               "  ModulusLen: 128\r\n"
                               "  NULL input param in Mask Generation Function\r\n  MgfError: 100\r\n"
                               "  NULL input param in Mask Generation Function\r\n  MgfError: 101\r\n");
    EXPECT_EQ(out.length(), 0u);
}
