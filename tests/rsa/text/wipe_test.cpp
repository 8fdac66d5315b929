// No block that the library frees still holds a secret.
#include "rsa/cipher/zt_rsa.h"
#include "rsa/encoding/content_coding.h"
#include "support/rsa_keys.h"
#include "support/tap.h"
#include "support/texts.h"

#include <functional>
#include <gtest/gtest.h>

using namespace pavonix;
using namespace pavonix::test;

namespace {

constexpr char kSecret[] = "s3cret";

// Each frees or shortens a buffer that holds the secret.
const std::pair<const char *, void (*)()> kUses[] = {
    {"text that grows",
     [] {
         StringBuffer text;
         text.Append(kSecret);
         text.Append(std::string(300, 'x').c_str());
     }},
    {"Clear, Trim and RemoveChar of a text",
     [] {
         StringBuffer cleared, trimmed, shortened;
         cleared.Append("the s3cret");
         cleared.Clear();
         trimmed.Append("       s3cret");
         trimmed.Trim();
         shortened.Append("xxxxxxxs3cret");
         shortened.RemoveChar('x');
     }},
    {"bytes that grow or are cleared",
     [] {
         DataBuffer grown, cleared;
         EXPECT_TRUE(grown.EnsureCapacity(6) && grown.Append(kSecret, 6) && grown.AppendByte(1));
         EXPECT_TRUE(cleared.Append(kSecret, 6));
         cleared.Clear();
     }},
    {"growth that fails",
     [] {
         DataBuffer bytes;
         EXPECT_TRUE(bytes.EnsureCapacity(6) && bytes.Append(kSecret, 6));
         tap::FailNth(1, false);
         EXPECT_FALSE(bytes.AppendByte(1));
         tap::FailNone();
     }},
    {"conversion through UTF-16",
     [] {
         XString text;
         text.SetFromAnsi("s3cret\xE4");
         EXPECT_STREQ(text.GetUtf8().c_str(), "s3cret\xC3\xA4");
     }},
    {"decoded base64",
     [] {
         DataBuffer bytes;
         StringBuffer text;
         EXPECT_TRUE(ContentCoding::DecodeBase64("czNjcmV0", 8, &bytes));
         ContentCoding::DecodeBase64("czNjcmV0", &text);
         EXPECT_EQ(BytesOf(bytes), BytesOf(text));
     }},
};

// The number of blocks that `use` frees while one of the secrets is in them.
int FreedWith(const std::vector<std::string> &secrets, const std::function<void()> &use)
{
    tap::TheState().secrets = secrets;
    tap::TheState().freedWithSecrets = 0;
    use();
    return tap::TheState().freedWithSecrets;
}

// One digit of a big integer, as stored in memory.
std::string DigitOf(const std::string &part)
{
    const Number number = ToNumber(part);
    BN_rshift(number.get(), number.get(), 2 * MP_DIGIT_BIT);
    BN_mask_bits(number.get(), MP_DIGIT_BIT);
    std::string digit(sizeof(mp_digit), 0);
    BN_bn2lebinpad(number.get(), reinterpret_cast<unsigned char *>(digit.data()), sizeof(mp_digit));
    return digit;
}

} // namespace

TEST(Wipe, NoFreedBlockHoldsASecret)
{
    for (const auto &[name, use] : kUses) {
        EXPECT_EQ(FreedWith({kSecret, std::string("s\0003\0c\0r\0e\0t", 11)}, use), 0) << name;
    }
}

TEST(Wipe, NoFreedBlockHoldsAKeyPart)
{
    const TestKey &key = KeyOfBits(1024);
    const std::string xml = key.PrivateXml();
    std::vector<std::string> secrets, digits;
    for (const auto &[name, bytes] : key.Parts()) {
        if (name != "Modulus" && name != "Exponent") {
            secrets.push_back(ToBase64(bytes).substr(20, 20));
            secrets.push_back(bytes.substr(20, 12));
            digits.push_back(DigitOf(bytes));
        }
    }
    ASSERT_EQ(digits.size(), 6u);
    const auto import = [&] { EXPECT_TRUE(ZtRsa().ImportPrivateKey(xml.c_str())); };
    EXPECT_EQ(FreedWith(digits, import), 0) << "big integers";
    const auto sign = [&] { // calculations leave digits in LibTomMath's own numbers
        ZtRsa rsa;
        ZtString token;
        rsa.put_OAEP(true);
        EXPECT_TRUE(rsa.ImportPublicKey(xml.c_str()) && rsa.ImportPrivateKey(xml.c_str()));
        EXPECT_TRUE(rsa.EncryptStringENC("2010-3-5 9:7:3.042", true, &token));
    };
    EXPECT_EQ(FreedWith(secrets, sign), 0) << "texts and bytes";
}
