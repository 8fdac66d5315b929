// What the log shows of real runs, letter by letter.
#include "rsa/cipher/cls_rsa.h"
#include "support/rsa_keys.h"
#include "support/texts.h"

#include <gtest/gtest.h>

using namespace pavonix;
using namespace pavonix::test;

namespace {

// "|" stands for a line end.
std::string Lines(const std::string &text)
{
    std::string lines;
    for (const char character : text) {
        lines += character == '|' ? "\r\n" : std::string(1, character);
    }
    return lines;
}

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

TEST(RsaLog, ImportsInAllRenderings)
{
    ClsRsa rsa;
    EXPECT_TRUE(Import(&rsa, KeyOfBits(1024).PublicXml(), false));
    EXPECT_EQ(LogText(rsa.log()), Lines("ZentorpLog:|  ImportPublicKey:|    Success.|"));
    EXPECT_TRUE(rsa.lastMethodSuccess());
    EXPECT_FALSE(Import(&rsa, "<K>" + Element("Modulus", "N") + "</K>", true));
    EXPECT_FALSE(rsa.lastMethodSuccess());
    EXPECT_EQ(LogText(rsa.log()), Lines("ZentorpLog:|  ImportPrivateKey:|    No exponent|    Failed.|"));
    EXPECT_EQ(LogText(rsa.log(), &LogBase::getLogHtml),
              Lines("ZentorpLog:<blockquote>|ImportPrivateKey:<blockquote>|No exponent<br>|Failed.<br>|"
                    "</blockquote>|</blockquote>|"));
    EXPECT_EQ(LogText(rsa.log(), &LogBase::getLogXml),
              Lines("<ZentorpLog>|<ImportPrivateKey>|<error>No exponent</error>|<error>Failed.</error>|"
                    "</ImportPrivateKey>|</ZentorpLog>|"));
}

TEST(RsaLog, EncryptionsInAllRenderings)
{
    const TestKey &key = KeyOfBits(1024);
    const std::string seed = "twenty bytes of seed";
    ClsRsa rsa;
    rsa.put_OAEP(true);
    ASSERT_TRUE(Import(&rsa, key.PrivateXml(), true));
    ScriptSeed(seed);
    XString text, result, mode;
    text.SetFromUtf8("2010-3-5 9:7:3.042");
    mode.SetFromUtf8("hex");
    rsa.put_EncodingMode(mode);
    ASSERT_TRUE(rsa.EncryptStringENC(text, true, &result));
    const std::string cipher = result.GetUtf8().c_str();
    ASSERT_EQ(key.Decode(true, RSA_PKCS1_OAEP_PADDING, FromHex(cipher)), "2010-3-5 9:7:3.042");
    EXPECT_EQ(LogText(rsa.log()),
              Lines("ZentorpLog:|  EncryptStringENC:|    usePrivateKey: 1|    RSA_encrypt:|      KeyType: Private|"
                    "      InputSize: 18|      Padding: OAEP|      HashAlg: SHA-1|      ParamLen: 0|"
                    "      ModulusBitLen: 1024|      exptmodOutput: " +
                    cipher + "|      OutputSize: 128|    Success.|"));
    EXPECT_EQ(LogText(rsa.log(), &LogBase::getLogHtml),
              Lines("ZentorpLog:<blockquote>|EncryptStringENC:<blockquote>|usePrivateKey: 1<br>|"
                    "RSA_encrypt:<blockquote>|KeyType: Private<br>|InputSize: 18<br>|Padding: OAEP<br>|"
                    "HashAlg: SHA-1<br>|ParamLen: 0<br>|ModulusBitLen: 1024<br>|exptmodOutput: " +
                    cipher + "<br>|OutputSize: 128<br>|</blockquote>|Success.<br>|</blockquote>|</blockquote>|"));
    EXPECT_EQ(LogText(rsa.log(), &LogBase::getLogXml),
              Lines("<ZentorpLog>|<EncryptStringENC>|<usePrivateKey>1</usePrivateKey>|<RSA_encrypt>|"
                    "<KeyType>Private</KeyType>|<InputSize>18</InputSize>|<Padding>OAEP</Padding>|"
                    "<HashAlg>SHA-1</HashAlg>|<ParamLen>0</ParamLen>|<ModulusBitLen>1024</ModulusBitLen>|"
                    "<exptmodOutput>" +
                    cipher +
                    "</exptmodOutput>|<OutputSize>128</OutputSize>|</RSA_encrypt>|"
                    "<info>Success.</info>|</EncryptStringENC>|</ZentorpLog>|"));
}

TEST(RsaLog, VerboseEncryptionShowsTheBlock)
{
    const TestKey &key = KeyOfBits(96);
    ClsRsa rsa;
    rsa.put_VerboseLogging(true);
    rsa.put_LittleEndian(false);
    ASSERT_TRUE(Import(&rsa, key.PublicXml(), false));
    ASSERT_TRUE(Encrypt(&rsa, "x", false));
    const std::string log = LogText(rsa.log());
    const std::string tag = "paddedData: ";
    const std::string padded = log.substr(log.find(tag) + tag.size(), 24);
    const std::string cipher = ToHex(key.Raw(false, FromHex(padded)));
    const std::string minimal = cipher.substr(cipher.find_first_not_of('0') / 2 * 2);
    EXPECT_EQ(log, Lines("ZentorpLog:|  EncryptStringENC:|    usePrivateKey: 0|    RSA_encrypt:|      KeyType: Public|"
                         "      InputSize: 1|      Padding: PKCS v1.5|      ModulusBitLen: 96|"
                         "      modulus_bitlen: 96|      littleEndian: 0|      padding: PKCS 1.5|      paddedData: " +
                         padded + "|      exptmodOutput: " + minimal + "|" +
                         (minimal == cipher ? "" : "      Zero-extending to match modulus byte length|") +
                         "      encryptedData: " + cipher + "|      OutputSize: 12|    Success.|"));
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
    EXPECT_EQ(log.find(Lines("ZentorpLog:|  EncryptStringENC:|    usePrivateKey: 0|"
                             "    Character encoding conversion failed.|    NumCharsIn: 3|    Charset: windows-1251|"
                             "    ConvertedToNumBytes: 2|    ")),
              0u)
        << log;
    EXPECT_EQ(log.substr(log.size() - 13), Lines("    Failed.|"));
    EXPECT_EQ(log.find("RSA_encrypt"), std::string::npos);
    // The context has been left: the next run starts at the root again.
    EXPECT_TRUE(Encrypt(&rsa, "", false));
    EXPECT_EQ(LogText(rsa.log()),
              Lines("ZentorpLog:|  EncryptStringENC:|    usePrivateKey: 0|    RSA_encrypt:|      KeyType: Public|"
                    "      InputSize: 0|      Padding: PKCS v1.5|      ModulusBitLen: 1024|      OutputSize: 0|"
                    "    Success.|"));
}
