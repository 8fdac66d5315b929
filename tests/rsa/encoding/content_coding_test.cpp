#include "rsa/encoding/content_coding.h"

#include "support/tap.h"
#include "support/texts.h"

#include <gtest/gtest.h>

#include <string>

namespace pavonix {
namespace {

using namespace test;

TEST(ContentCoding, Base64IsAppendedWithOneAllocation)
{
    const std::string bytes(10000, 'M');
    StringBuffer text;
    text.Append("before ");
    tap::FailNth(0, false);
    ContentCoding::EncodeBase64(Data(bytes), 10000, &text);
    EXPECT_EQ(tap::FallibleCalls(), 1);
    EXPECT_EQ(text.length(), 7 + 13336);
    EXPECT_EQ(text.increment(), 202); // only growing appends change it
    EXPECT_EQ(BytesOf(text).substr(0, 11), "before TU1N");
}

TEST(ContentCoding, NoBytesGiveWhatTheEncodingMakesOfThem)
{
    using Encoder = void (*)(const std::uint8_t *, std::uint32_t, StringBuffer *);
    for (const Encoder encode : {&ContentCoding::EncodeBase64, &ContentCoding::EncodeBase32, &ContentCoding::EncodeHex,
                                 &ContentCoding::EncodeUrl, &ContentCoding::EncodeAnsi}) {
        StringBuffer text;
        encode(nullptr, 5, &text);
        encode(Data("x"), 0, &text);
        EXPECT_EQ(BytesOf(text), "");
    }
    StringBuffer text;
    ContentCoding().EncodeQuotedPrintable(nullptr, 5, &text);
    ContentCoding::EncodeUuencode(nullptr, 5, "600", "a b", &text);
    EXPECT_EQ(BytesOf(text), "begin 600 a b\n`\nend\n");
}

TEST(ContentCoding, QuotedPrintableLines)
{
    const struct {
        std::string bytes, text;
    } rows[] = {
        {"a=b\xE4 \tc", "a=3Db=E4 \tc"},
        {"end \r\ntab\t\r\n ", "end=20\r\ntab=09\r\n=20"},
        {"a\rb\nc\r\r\nd", "a=0Db=0Ac=0D\r\nd"},
        {std::string(71, 'x'), std::string(71, 'x')},
        {std::string(150, 'x'), std::string(71, 'x') + "=\r\n" + std::string(71, 'x') + "=\r\nxxxxxxxx"},
        {std::string(68, 'x') + "\xFF", std::string(68, 'x') + "=FF"},
        {std::string(69, 'x') + "\xFF", std::string(69, 'x') + "=\r\n=FF"},
        {std::string(71, 'x') + "\r\nyy", std::string(71, 'x') + "\r\nyy"},
    };
    for (const auto &row : rows) {
        StringBuffer text;
        ContentCoding().EncodeQuotedPrintable(Data(row.bytes), static_cast<std::uint32_t>(row.bytes.size()), &text);
        EXPECT_EQ(BytesOf(text), row.text);
    }
}

TEST(ContentCoding, DecodingReplacesABufferAndIsAppendedToAText)
{
    DataBuffer bytes;
    ASSERT_TRUE(bytes.Append("earlier", 7));
    ASSERT_TRUE(ContentCoding::DecodeBase64("TWFuTWE=", 8, &bytes));
    EXPECT_EQ(BytesOf(bytes), "ManMa");
    // The length counts, not a terminator.
    ASSERT_TRUE(ContentCoding::DecodeBase64("TWFuTWE=", 4, &bytes));
    ASSERT_EQ(bytes.length(), 3u);
    EXPECT_EQ(bytes.data()[4], 0); // one place after the decoded length
    ASSERT_TRUE(ContentCoding::DecodeBase64(nullptr, 4, &bytes));
    EXPECT_EQ(bytes.length(), 0u);

    StringBuffer text;
    ContentCoding::DecodeBase64("TWFu", &text);
    ContentCoding::DecodeBase64("AAAA", &text);
    ContentCoding::DecodeBase64(nullptr, &text);
    EXPECT_EQ(BytesOf(text), std::string("Man\0\0\0", 6));
}

TEST(ContentCoding, MemoryFailures)
{
    DataBuffer bytes;
    ASSERT_TRUE(bytes.Append("earlier", 7));
    StringBuffer text;
    text.Append("earlier");
    tap::FailNth(1, true);
    EXPECT_FALSE(ContentCoding::DecodeBase64("TWFu", 4, &bytes));
    EXPECT_TRUE(ContentCoding::DecodeBase64("", 0, &bytes)); // needs none
    ContentCoding::DecodeBase64("TWFu", &text);
    EXPECT_EQ(BytesOf(text), "earlier");
    EXPECT_EQ(bytes.length(), 0u);
}

} // namespace
} // namespace pavonix
