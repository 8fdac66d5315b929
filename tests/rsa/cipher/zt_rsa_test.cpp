// The component through its facade: OpenSSL decrypts the ciphertexts.
#include "rsa/cipher/zt_rsa.h"
#include "support/rsa_keys.h"
#include "support/tap.h"
#include "support/texts.h"

#include <gtest/gtest.h>

using namespace pavonix;
using namespace pavonix::test;

namespace {

// Printable text, of any length.
std::string Text(std::size_t length)
{
    std::string text;
    while (text.size() < length) {
        text.push_back(static_cast<char>(' ' + text.size() * 7 % 95));
    }
    return text;
}

std::string Log(ZtRsa *rsa)
{
    ZtString text;
    rsa->get_LastErrorText(&text);
    return text.c_str();
}

struct Encryption {
    bool success;
    std::string cipher; // bytes
};

Encryption Encrypt(ZtRsa *rsa, const std::string &text, bool privateKey)
{
    rsa->put_EncodingMode(" H e X ");
    ZtString result("left over"), mode;
    rsa->get_EncodingMode(&mode);
    EXPECT_STREQ(mode.c_str(), "hex");
    const bool success = rsa->EncryptStringENC(text.c_str(), privateKey, &result);
    return {success, FromHex(result.c_str())};
}

} // namespace

TEST(ZtRsa, BlocksOfEveryLengthDecryptWithOpenSsl)
{
    const struct {
        int bits;
        bool oaep;
        std::size_t length, blocks;
    } rows[] = {
        {1024, true, 0, 0},    {1024, true, 1, 1},    {1024, true, 86, 1},   {1024, true, 87, 2},  {1024, true, 300, 4},
        {1024, false, 0, 0},   {1024, false, 117, 1}, {1024, false, 118, 2}, {1536, true, 150, 1}, {1536, true, 151, 2},
        {2048, false, 245, 1}, {2048, false, 246, 2}, {344, true, 1, 1},     {344, true, 5, 5},    {368, true, 4, 1},
        {368, true, 9, 3},     {96, false, 1, 1},     {96, false, 30, 30},
    };
    for (const auto &row : rows) {
        const TestKey &key = KeyOfBits(row.bits);
        ZtRsa rsa;
        rsa.put_OAEP(row.oaep);
        ASSERT_TRUE(rsa.ImportPublicKey(key.PublicXml().c_str()));
        for (const bool privateKey : {false, true}) {
            SCOPED_TRACE(std::to_string(row.bits) + " " + std::to_string(row.length));
            if (privateKey) {
                ASSERT_TRUE(rsa.ImportPrivateKey(key.PrivateXml().c_str()));
            }
            const std::string text = Text(row.length);
            const Encryption encryption = Encrypt(&rsa, text, privateKey);
            EXPECT_TRUE(encryption.success) << Log(&rsa);
            EXPECT_EQ(encryption.cipher.size(), row.blocks * key.size());
            const int padding = row.oaep ? RSA_PKCS1_OAEP_PADDING : RSA_PKCS1_PADDING;
            EXPECT_EQ(key.Decode(privateKey, padding, encryption.cipher), text);
            EXPECT_TRUE(text.empty() || Encrypt(&rsa, text, privateKey).cipher != encryption.cipher);
        }
    }
}

TEST(ZtRsa, ABlockThatFailsDiscardsThoseBeforeIt)
{
    ZtRsa rsa; // 500 blocks almost certainly include one with a zero first byte
    ASSERT_TRUE(rsa.ImportPrivateKey(KeyOfBits(1025).PrivateXml().c_str()));
    const Encryption encryption = Encrypt(&rsa, Text(500 * 118), false);
    EXPECT_FALSE(encryption.success);
    EXPECT_EQ(encryption.cipher, "");
    const std::string log = Log(&rsa);
    EXPECT_NE(log.find(Lines("      Output of RSA encryption not equal to modulus size.|      InLength: 129|"
                             "      OutputLength: 12")), // 128, rarely less
              log.npos)
        << log.substr(0, 2000);
}

TEST(ZtRsa, ByteOrderSwapsEachWord)
{
    for (const int bits : {1024, 344, 368}) { // tails of 0, 3 and 2 bytes
        const TestKey &key = KeyOfBits(bits);
        ZtRsa rsa;
        rsa.put_OAEP(true);
        ASSERT_TRUE(rsa.ImportPublicKey(key.PublicXml().c_str()));
        ScriptSeed("twenty bytes of seed");
        const std::string straight = Encrypt(&rsa, "x", false).cipher;
        rsa.put_LittleEndian(false);
        ScriptSeed("twenty bytes of seed");
        const std::string swapped = Encrypt(&rsa, "x", false).cipher;
        std::string expected;
        for (std::size_t i = 0; i < straight.size(); i += 4) {
            const std::string word = straight.substr(i, 4);
            expected.append(word.rbegin(), word.rend());
        }
        EXPECT_EQ(ToHex(swapped), ToHex(expected));
    }
}

TEST(ZtRsa, ArgumentsAreAnsiOrUtf8)
{
    const TestKey &key = KeyOfBits(1024);
    for (const bool utf8 : {false, true}) { // the euro sign
        ZtRsa rsa;
        rsa.put_Utf8(utf8);
        ASSERT_TRUE(rsa.ImportPublicKey(key.PublicXml().c_str()));
        const Encryption encryption = Encrypt(&rsa, utf8 ? "\xE2\x82\xAC" : "\x80", false);
        EXPECT_EQ(key.Decode(false, RSA_PKCS1_PADDING, encryption.cipher), "\x80");
        EXPECT_FALSE(rsa.ImportPrivateKey(nullptr)) << "null is an empty key";
    }
}

// Each run either has the complete result or reports a failure.
TEST(ZtRsa, EveryAllocationMayFail)
{
    const std::string xml = KeyOfBits(1024).PrivateXml();
    std::string token;
    const auto run = [&] {
        ZtRsa rsa;
        rsa.put_OAEP(true);
        rsa.put_EncodingMode("base64");
        rsa.put_LittleEndian(true);
        rsa.put_CharsetCodePage(1252);
        rsa.put_VerboseLogging(false);
        bool imported = rsa.ImportPublicKey(xml.c_str());
        imported = rsa.ImportPrivateKey(xml.c_str()) && imported;
        ZtString result;
        const bool success = rsa.EncryptStringENC("2010-3-5 9:7:3.042", true, &result);
        tap::FailNone();
        EXPECT_EQ(success, !result.isEmpty());
        token = result.c_str();
        (void)Log(&rsa);
        return imported && success;
    };
    const tap::OpenHandles before = tap::Held();
    ScriptSeed("twenty bytes of seed");
    EXPECT_TRUE(run());
    const std::string whole = token;
    EXPECT_EQ(whole.size(), 172u);
    EXPECT_LE(tap::TheState().peakBytes, 64 * 1024);
    int failures = 0;
    ScriptSeed("twenty bytes of seed");
    tap::FailEach([&] {
        const bool success = run();
        failures += success ? 0 : 1;
        ASSERT_TRUE(!success || token == whole);
        ASSERT_EQ(tap::Held(), before);
        ScriptSeed("twenty bytes of seed");
    });
    EXPECT_GT(failures, 200);
}

TEST(ZtRsa, TheLastErrorTextReportsItsLoss)
{
    ZtRsa rsa;
    EXPECT_TRUE(rsa.ImportPublicKey(KeyOfBits(1024).PublicXml().c_str()));
    EXPECT_TRUE(Encrypt(&rsa, "x", false).success);
    const std::string whole = Log(&rsa);
    int lost = 0;
    tap::FailEach([&] {
        ZtString text;
        rsa.get_LastErrorText(&text);
        tap::FailNone();
        EXPECT_TRUE(text.c_str() == whole || !text.complete());
        lost += text.complete() ? 0 : 1;
    });
    EXPECT_GT(lost, 0);
}
