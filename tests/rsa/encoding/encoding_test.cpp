// The encoder and its mode names, and aspects of the codecs that fuzz/encoding.cpp does not
// test: earlier contents of the output, and failing allocations.
#include "rsa/encoding/cls_encode.h"

#include "rsa/encoding/content_coding.h"
#include "support/tap.h"
#include "support/texts.h"

#include <gtest/gtest.h>

#include <string>

namespace pavonix {
namespace {

using namespace test;

class Text : public XString {
public:
    explicit Text(const char *utf8) { SetFromUtf8(utf8); }
};

TEST(EncodingMode, IsReadLenientlyFromItsName)
{
    const struct {
        EncodingMode mode;
        const char *names[8];
    } rows[] = {
        {EncodingMode::kBase64, {"base64", "Base-64", "BASE", "base64-3 1", "b", "", " - ", "unknown"}},
        {EncodingMode::kBase32, {"base32", "Base 32", "Base-32", "base64 or 32", "\tBASE-3-2\r\n"}},
        {EncodingMode::kQuotedPrintable, {"quoted-printable", "q", "QP", "quux"}},
        {EncodingMode::kHex, {"hex", "hexadecimal", "- HEX", "hexuu"}},
        {EncodingMode::kUrl, {"url", "UR", "uri", "u r l", "-\turl", "uruu"}},
        {EncodingMode::kHtml, {"html", "HT", "h-t"}},
        {EncodingMode::kAnsi, {"ansi", "ascii", "AN", "asc"}},
        {EncodingMode::kUuencode, {"uu", "uuencode", "U-U", "x uu"}},
    };
    for (const auto &row : rows) {
        for (const char *name : row.names) {
            if (name != nullptr) {
                EXPECT_EQ(EncodingModeFromName(Text(name)), row.mode) << name;
            }
        }
    }
    // Close to a name, but not one.
    for (const char *name : {"as", "he", "u", "xbase32", "xhex", "h"}) {
        EXPECT_EQ(EncodingModeFromName(Text(name)), EncodingMode::kBase64) << name;
    }
}

TEST(EncodingMode, NamesAreStoredWithoutSpacesInLowerCase)
{
    const char *rows[][2] = {
        {"base64", "base64"},        {" \t Quoted-Printable \r\n", "quoted-printable"},
        {"B a s E\t32", "base\t32"}, {"   ", ""},
        {"\xC3\x84 X", "\xC3\x84x"}, // only ASCII letters change
    };
    for (const auto &row : rows) {
        Text normalised("earlier");
        NormaliseEncodingName(Text(row[0]), &normalised);
        EXPECT_STREQ(normalised.GetUtf8().c_str(), row[1]) << row[0];
    }
}

TEST(ClsEncode, ReplacesOrAppendsInEveryMode)
{
    const std::string bytes("M>\xE9\0", 4);
    const std::pair<const char *, std::string> rows[] = {
        {"base64", "TT7pAA=="}, {"quoted-printable", "M>=E9=00"},
        {"hex", "4D3EE900"},    {"url", "M%3E%E9%00"},
        {"ansi", bytes},        {"base32", "JU7OSAA="},
        {"html", ""},           {"uuencode", "begin 644 file.dat\n$33[I````\n`\nend\n"},
    };
    ClsEncode encode;
    DataBuffer input, none;
    ASSERT_TRUE(input.Append(bytes.data(), 4));
    EXPECT_EQ(encode.mode(), EncodingMode::kBase64);
    for (const auto &[mode, text] : rows) {
        SCOPED_TRACE(mode);
        const bool html = text.empty(); // does not change the output
        Text output("here");
        encode.SetMode(Text(mode));
        encode.Encode(input, &output, true);
        EXPECT_EQ(BytesOf(output.GetUtf8()), "here" + text);
        encode.Encode(input, &output, false);
        EXPECT_EQ(BytesOf(output.GetUtf8()), html ? "here" : text);
        encode.SetMode(Text(html ? mode : "base64"));
        encode.Encode(none, &output, false);
        EXPECT_EQ(BytesOf(output.GetUtf8()), html ? "here" : "");
        EXPECT_TRUE(output.complete());
    }
}

// Each allocation fails: the output is complete, or empty and marked incomplete.
TEST(ClsEncode, ReturnsNoPartOfAnEncoding)
{
    DataBuffer bytes;
    ASSERT_TRUE(bytes.AppendFill(0xA5, 300));
    for (const char *mode : {"base64", "quoted-printable", "hex", "url", "ansi", "base32"}) {
        ClsEncode encode;
        encode.SetMode(Text(mode));
        XString whole;
        encode.Encode(bytes, &whole, false);
        tap::FailEach([&] {
            XString output;
            encode.Encode(bytes, &output, false);
            tap::FailNone();
            EXPECT_EQ(BytesOf(output.GetUtf8()), output.complete() ? BytesOf(whole.GetUtf8()) : "") << mode;
        });
    }
}

TEST(ContentCoding, EncodesEmptyInput)
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

TEST(ContentCoding, UrlsKeepUnreservedCharacters)
{
    StringBuffer text;
    ContentCoding::EncodeUrl(Data("azAZ09-._~`{@[/:"), 16, &text);
    EXPECT_EQ(BytesOf(text), "azAZ09-._~%60%7B%40%5B%2F%3A");
}

TEST(ContentCoding, QuotedPrintableLines)
{
    const std::string line(71, 'x');
    const std::string rows[][2] = {
        {"a=b\xE4 \tc", "a=3Db=E4 \tc"},
        {"end \r\n\ra\nb\t\r\n ", "end=20\r\n=0Da=0Ab=09\r\n=20"},
        {line, line},
        {line + line + "x", line + "=\r\n" + line + "=\r\nx"},
        {line.substr(3) + "\xFF", line.substr(3) + "=FF"},
        {line.substr(2) + "\xFF", line.substr(2) + "=\r\n=FF"},
        {line + "\r\nyy", line + "\r\nyy"},
    };
    for (const auto &row : rows) {
        StringBuffer text;
        ContentCoding().EncodeQuotedPrintable(Data(row[0]), static_cast<std::uint32_t>(row[0].size()), &text);
        EXPECT_EQ(BytesOf(text), row[1]);
    }
}

TEST(ContentCoding, DecodingReplacesABufferAndAppendsToAText)
{
    DataBuffer bytes;
    ASSERT_TRUE(bytes.Append("earlier", 7));
    ASSERT_TRUE(ContentCoding::DecodeBase64("TWFuTWE=", 8, &bytes));
    EXPECT_EQ(BytesOf(bytes), "ManMa");
    // The length counts, not a terminator.
    ASSERT_TRUE(ContentCoding::DecodeBase64("TWFuTWE=", 5, &bytes));
    ASSERT_EQ(bytes.length(), 3u);
    EXPECT_EQ(bytes.data()[3] | bytes.data()[4], 0) << "no bits of half a byte, and a zero one place further";
    ASSERT_TRUE(ContentCoding::DecodeBase64("TWFu\0TWE=", 9, &bytes));
    EXPECT_EQ(BytesOf(bytes), "Man") << "but a zero ends the text";
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
    EXPECT_TRUE(ContentCoding::DecodeBase64("", 0, &bytes)); // allocates nothing
    ContentCoding::DecodeBase64("TWFu", &text);
    EXPECT_EQ(BytesOf(text), "earlier");
    EXPECT_EQ(bytes.length(), 0u);
}

} // namespace
} // namespace pavonix
