// The exact log of real runs.
#include "rsa/cipher/cls_rsa.h"
#include "support/rsa_keys.h"
#include "support/texts.h"

#include <gtest/gtest.h>

using namespace pavonix;
using namespace pavonix::test;

namespace {

bool Import(ClsRsa *rsa, const std::string &xml, bool privateKey)
{
    XString text;
    text.SetFromUtf8(xml.c_str());
    return privateKey ? rsa->ImportPrivateKey(text) : rsa->ImportPublicKey(text);
}

bool Encrypt(ClsRsa *rsa, const std::string &utf8, bool privateKey)
{
    XString text, result;
    text.SetFromUtf8(utf8.c_str());
    return rsa->EncryptStringENC(text, privateKey, &result);
}

std::string KeyWithModulus(std::size_t size)
{
    std::string modulus(size, 0);
    modulus[0] = modulus.back() = 1;
    return "<K>" + Element("Modulus", modulus) + Element("Exponent", "\3") + "</K>";
}

} // namespace

TEST(RsaLog, Imports)
{
    ClsRsa rsa;
    EXPECT_TRUE(Import(&rsa, KeyOfBits(1024).PublicXml(), false));
    EXPECT_EQ(LogText(rsa.log()), Lines("ZentorpLog:|  ImportPublicKey:|    Success.|"));
    EXPECT_TRUE(rsa.lastMethodSuccess());
    EXPECT_FALSE(Import(&rsa, "<K>" + Element("Modulus", "N") + "</K>", true));
    EXPECT_FALSE(rsa.lastMethodSuccess());
    EXPECT_EQ(LogText(rsa.log()), Lines("ZentorpLog:|  ImportPrivateKey:|    No exponent|    Failed.|"));
}

// The values differ between runs; the logged ciphertext must decrypt to the logged block.
TEST(RsaLog, VerboseEncryption)
{
    const TestKey &key = KeyOfBits(1024);
    ClsRsa rsa;
    rsa.put_VerboseLogging(true);
    ASSERT_TRUE(Import(&rsa, key.PrivateXml(), true));
    ASSERT_TRUE(Encrypt(&rsa, "x", true));
    const std::string log = LogText(rsa.log());
    const auto shown = [&](const std::string &tag) {
        const std::size_t start = log.find(tag + ": ") + tag.size() + 2;
        return log.substr(start, log.find('\r', start) - start);
    };
    EXPECT_EQ(shown("paddedData"), ToHex(key.Raw(false, FromHex(shown("encryptedData")))));
    for (const char *entry : {"KeyType: Private", "InputSize: 1", "Padding: PKCS v1.5", "ModulusBitLen: 1024",
                              "modulus_bitlen: 1024", "littleEndian: 1", "padding: PKCS 1.5", "OutputSize: 128"}) {
        EXPECT_NE(log.find(std::string("      ") + entry + "\r\n"), log.npos) << entry;
    }
}

// The entries inside RSA_encrypt, from the first one that differs between runs.
TEST(RsaLog, FailedEncryptions)
{
    const std::string tooSmallForOaep = "key size (modulus) too small for OAEP padding|      ModulusSizeInBytes: ";
    const std::string noRoomInOaep = "Encoded message size too small given hash size in OAEP|      EncodedLen: ";
    const struct {
        std::string xml;
        bool oaep, privateKey;
        std::string log;
    } rows[] = {
        {"", true, false, "0|      " + tooSmallForOaep + "0|      HashSizeInBytes: 20|"},
        {"", false, false, "0|      key size (modulus) too small for PKCS v1.5 padding|      ModulusSizeInBytes: 0|"},
        {KeyWithModulus(38), true, false, "297|      " + tooSmallForOaep + "38|      HashSizeInBytes: 20|"},
        {KeyWithModulus(39), true, false, "305|      " + noRoomInOaep + "39|      HashLen: 20|"},
        {KeyWithModulus(42), true, false, "329|      " + noRoomInOaep + "42|      HashLen: 20|"},
        {KeyWithModulus(11), false, false,
         "81|      key size (modulus) too small for PKCS v1.5 padding|      ModulusSizeInBytes: 11|"},
        {KeyWithModulus(43), true, true,
         "337|      Private key required, but not provided|"
         "      Output of RSA encryption not equal to modulus size.|      InLength: 43|      OutputLength: 0|"},
    };
    for (const auto &row : rows) {
        SCOPED_TRACE(row.log);
        ClsRsa rsa;
        rsa.put_OAEP(row.oaep);
        EXPECT_EQ(Import(&rsa, row.xml, false), !row.xml.empty());
        EXPECT_FALSE(Encrypt(&rsa, "xyz", row.privateKey));
        const std::string log = LogText(rsa.log());
        const std::string tag = "ModulusBitLen: ";
        EXPECT_EQ(log.substr(log.find(tag) + tag.size()), Lines(row.log + "    Failed.|"));
    }
}

TEST(RsaLog, TextOutsideTheCharset)
{
    ClsRsa rsa;
    ASSERT_TRUE(Import(&rsa, KeyOfBits(1024).PublicXml(), false));
    rsa.put_CharsetCodePage(1251);
    EXPECT_FALSE(Encrypt(&rsa, "ab\xC3\xA9", false));
    EXPECT_TRUE(LogText(rsa.log()).ends_with(Lines("utf-8.|    Failed.|"))) << LogText(rsa.log());
    // The context was left: the next run starts at the root again.
    EXPECT_TRUE(Encrypt(&rsa, "", false));
    EXPECT_EQ(LogText(rsa.log()),
              Lines("ZentorpLog:|  EncryptStringENC:|    usePrivateKey: 0|    RSA_encrypt:|      KeyType: Public|"
                    "      InputSize: 0|      Padding: PKCS v1.5|      ModulusBitLen: 1024|      OutputSize: 0|"
                    "    Success.|"));
}
