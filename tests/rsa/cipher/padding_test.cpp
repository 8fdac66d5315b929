// The encoders with arguments that the component never passes: labels, other digests, other
// block types, messages that are too long.
#include "rsa/cipher/padding/eme_oaep.h"
#include "rsa/cipher/padding/eme_pkcs1.h"
#include "rsa/cipher/padding/mgf1.h"
#include "rsa/log/logger.h"
#include "support/openssl_key.h"
#include "support/tap.h"
#include "support/texts.h"

#include <gtest/gtest.h>
#include <openssl/evp.h>

using namespace pavonix;
using namespace pavonix::test;

TEST(Padding, OaepWithLabelsAndDigestsOpensWithOpenSsl)
{
    const struct {
        HashId id;
        const EVP_MD *digest;
    } hashes[] = {{HashId::kSha1, EVP_sha1()},
                  {HashId::kSha384, EVP_sha384()},
                  {HashId::kSha512, EVP_sha512()},
                  {HashId::kMd5, EVP_md5()},
                  {HashId::kSha256, EVP_sha256()}};
    const std::string message = "the message";
    for (const auto &hash : hashes) {
        for (const std::string label : {"", "a label"}) {
            Logger log;
            DataBuffer block;
            ASSERT_TRUE(EncodeOaep(Bytes(message), Bytes(label), 1535, hash.id, &block, log));
            ASSERT_EQ(block.length(), 192u);
            std::uint8_t opened[192];
            const int length =
                RSA_padding_check_PKCS1_OAEP_mgf1(opened, 192, block.data(), 192, 192, Data(label),
                                                  static_cast<int>(label.size()), hash.digest, hash.digest);
            EXPECT_EQ(std::string(opened, opened + (length > 0 ? length : 0)), message) << static_cast<int>(hash.id);
        }
    }
}

TEST(Padding, Pkcs1BlockOfAnotherType)
{
    LogBase log;
    DataBuffer block;
    ASSERT_TRUE(EncodePkcs1(Bytes("ab"), 1, 121, &block, log));
    EXPECT_EQ(ToHex(BytesOf(block)), "0001FFFFFFFFFFFFFFFFFFFFFF006162");
}

TEST(Padding, RefusalsAndTheirLog)
{
    const std::string text(300, 'x');
    DataBuffer out;
    Logger oaep;
    EXPECT_FALSE(EncodeOaep({}, {}, 1024, HashId::kSha1, &out, oaep));
    EXPECT_FALSE(EncodeOaep(Bytes(text).first(0), {}, 336, HashId::kSha1, &out, oaep));
    EXPECT_FALSE(EncodeOaep(Bytes(text).first(87), {}, 1024, HashId::kSha1, &out, oaep));
    EXPECT_EQ(
        LogText(oaep),
        Lines("ZentorpLog:|  null input to OAEP encoder|  Encoded message size too small given hash size in OAEP|"
              "  EncodedLen: 42|  HashLen: 20|  Message length too large for OAEP|  EncodedLen: 128|  HashLen: 20|"
              "  MessageLen: 87|"));
    Logger others;
    EXPECT_FALSE(EncodePkcs1(Bytes(text).first(118), 2, 1024, &out, others));
    EXPECT_FALSE(Mgf1(MgfSite::kDataBlockMask, HashId::kSha1, {}, 10, &out, others));
    EXPECT_FALSE(Mgf1(MgfSite::kSeedMask, HashId::kSha1, Bytes(text), 0, &out, others));
    EXPECT_EQ(LogText(others),
              Lines("ZentorpLog:|  PKCS v1.5 message length too large|  MessageLen: 118|  ModulusLen: 128|"
                    "  NULL input param in Mask Generation Function|  MgfError: 100|"
                    "  NULL input param in Mask Generation Function|  MgfError: 101|"));
    Logger poor;
    tap::FailNth(1, false);
    EXPECT_FALSE(EncodeOaep(Bytes(text).first(1), {}, 1024, HashId::kSha1, &out, poor));
    tap::FailNth(1, false);
    EXPECT_FALSE(Mgf1(MgfSite::kSeedMask, HashId::kSha1, Bytes(text).first(20), 10, &out, poor));
    EXPECT_EQ(LogText(poor), Lines("ZentorpLog:|  OAEP encoding output size error|  OutputSize: 0|  ExpectedSize: 128|"
                                   "  Memory error|  SeedLen: 20|"));
    EXPECT_EQ(out.length(), 0u);
}
