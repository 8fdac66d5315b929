// What the library frees or keeps beyond its use holds no secret any more.
#include "rsa/cipher/zt_rsa.h"
#include "rsa/encoding/content_coding.h"
#include "support/rsa_keys.h"
#include "support/tap.h"
#include "support/texts.h"

#include <gtest/gtest.h>

using namespace pavonix;
using namespace pavonix::test;

namespace {

constexpr char kSecret[] = "s3cret";

// Each frees or shortens what holds the secret, in all of the ways there are.
const std::pair<const char *, void (*)()> kUses[] = {
    {"a text's end", [] { StringBuffer().Append(kSecret); }},
    {"a text's growth",
     [] {
         StringBuffer text;
         text.Append(kSecret);
         text.Append(std::string(300, 'x').c_str());
     }},
    {"a text that was cleared",
     [] {
         StringBuffer text;
         text.Append("the s3cret");
         text.Clear();
     }},
    {"what Trim moved away from",
     [] {
         StringBuffer text;
         text.Append("       s3cret");
         text.Trim();
     }},
    {"what RemoveChar moved away from",
     [] {
         StringBuffer text;
         text.Append("xxxxxxxs3cret");
         text.RemoveChar('x');
     }},
    {"bytes' end and growth",
     [] {
         DataBuffer bytes;
         EXPECT_TRUE(bytes.EnsureCapacity(6) && bytes.Append(kSecret, 6) && bytes.AppendByte(1));
     }},
    {"cleared bytes",
     [] {
         DataBuffer bytes;
         EXPECT_TRUE(bytes.Append(kSecret, 6));
         bytes.Clear();
     }},
    {"a growth that failed",
     [] {
         DataBuffer bytes;
         EXPECT_TRUE(bytes.EnsureCapacity(6) && bytes.Append(kSecret, 6));
         tap::FailNth(1, false);
         EXPECT_FALSE(bytes.AppendByte(1));
         tap::FailNone();
     }},
    {"a conversion by way of UTF-16",
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

// One digit of a big integer as it lies in memory.
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
        tap::WatchFreedBlocks({kSecret, std::string("s\0003\0c\0r\0e\0t", 11)});
        use();
        EXPECT_EQ(tap::FreedWithSecrets(), 0) << name;
    }
}

TEST(Wipe, AKeyLeavesNothingBehind)
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
    tap::WatchFreedBlocks(digits);
    {
        ZtRsa rsa;
        EXPECT_TRUE(rsa.ImportPrivateKey(xml.c_str()));
    }
    EXPECT_EQ(tap::FreedWithSecrets(), 0) << "big integers";
    tap::WatchFreedBlocks(secrets); // a calculation leaves digits in LibTomMath's own numbers
    {
        ZtRsa rsa;
        ZtString token;
        rsa.put_OAEP(true);
        EXPECT_TRUE(rsa.ImportPublicKey(xml.c_str()) && rsa.ImportPrivateKey(xml.c_str()));
        EXPECT_TRUE(rsa.EncryptStringENC("2010-3-5 9:7:3.042", true, &token));
    }
    EXPECT_EQ(tap::FreedWithSecrets(), 0) << "texts and bytes";
}
