// What the log shows of real runs, letter by letter.
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

// Both paddings, quiet and verbose, with both byte orders; what is shown of the
// block must lead to what is shown of the result.
TEST(RsaLog, Encryptions)
{
    const struct {
        int bits;
        bool oaep, littleEndian;
    } rows[] = {{1024, true, true}, {1024, true, false}, {1024, false, true}, {96, false, false}};
    for (const auto &row : rows) {
        const TestKey &key = KeyOfBits(row.bits);
        for (const bool verbose : {false, true}) {
            SCOPED_TRACE(testing::Message() << row.bits << row.oaep << row.littleEndian << verbose);
            ClsRsa rsa;
            rsa.put_OAEP(row.oaep);
            rsa.put_LittleEndian(row.littleEndian);
            rsa.put_VerboseLogging(verbose);
            ASSERT_TRUE(Import(&rsa, key.PrivateXml(), true));
            ASSERT_TRUE(Encrypt(&rsa, "x", true));
            const std::string log = LogText(rsa.log());
            const auto shown = [&](const std::string &tag) {
                const std::size_t at = log.find(tag + ": ");
                return at == log.npos ? "" : log.substr(at + tag.size() + 2, log.find('\r', at) - at - tag.size() - 2);
            };
            const std::string minimal = shown("exptmodOutput");
            const std::string size = std::to_string(row.bits / 8), bits = std::to_string(row.bits);
            const std::string cipher = std::string(key.size() * 2 - minimal.size(), '0') + minimal;
            const std::string block = verbose ? ToHex(key.Raw(false, FromHex(cipher))) : "";
            const std::string name = row.oaep ? "OAEP" : "PKCS v1.5";
            EXPECT_EQ(log, Lines("ZentorpLog:|  EncryptStringENC:|    usePrivateKey: 1|    RSA_encrypt:|"
                                 "      KeyType: Private|      InputSize: 1|      Padding: " +
                                 name + "|" + (row.oaep ? "      HashAlg: SHA-1|      ParamLen: 0|" : "") +
                                 "      ModulusBitLen: " + bits + "|" +
                                 (verbose ? "      modulus_bitlen: " + bits + "|      littleEndian: " +
                                                (row.littleEndian ? "1" : "0") + "|      padding: " +
                                                (row.oaep ? "OAEP" : "PKCS 1.5") + "|      paddedData: " + block + "|"
                                          : "") +
                                 "      exptmodOutput: " + minimal + "|" +
                                 (minimal == cipher ? "" : "      Zero-extending to match modulus byte length|") +
                                 (verbose ? "      encryptedData: " + cipher + "|" : "") + "      OutputSize: " + size +
                                 "|    Success.|"));
        }
    }
}

// The entries inside RSA_encrypt, from the first one that tells runs apart.
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
        {KeyWithModulus(41), true, false, "321|      " + noRoomInOaep + "41|      HashLen: 20|"},
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
    const std::string log = LogText(rsa.log());
    const std::string start = Lines("ZentorpLog:|  EncryptStringENC:|    usePrivateKey: 0|    Character encoding "
                                    "conversion failed.|    NumCharsIn: 3|    Charset: windows-1251|");
    EXPECT_TRUE(log.starts_with(start) && log.ends_with(Lines("utf-8.|    Failed.|"))) << log;
    // The context has been left: the next run starts at the root again.
    EXPECT_TRUE(Encrypt(&rsa, "", false));
    EXPECT_EQ(LogText(rsa.log()),
              Lines("ZentorpLog:|  EncryptStringENC:|    usePrivateKey: 0|    RSA_encrypt:|      KeyType: Public|"
                    "      InputSize: 0|      Padding: PKCS v1.5|      ModulusBitLen: 1024|      OutputSize: 0|"
                    "    Success.|"));
}
