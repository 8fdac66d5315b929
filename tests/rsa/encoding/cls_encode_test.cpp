#include "rsa/encoding/cls_encode.h"

#include "support/tap.h"
#include "support/texts.h"

#include <gtest/gtest.h>

#include <string>

namespace pavonix {
namespace {

std::string Utf8Of(const XString &text)
{
    return test::BytesOf(text.GetUtf8());
}

class ClsEncodeTest : public testing::Test {
protected:
    void Select(const char *name)
    {
        XString text;
        text.SetFromAnsi(name);
        encode_.SetMode(text);
    }

    ClsEncode encode_;
    DataBuffer bytes_;
    XString output_;
};

TEST_F(ClsEncodeTest, ReplacesOrAppendsInEveryMode)
{
    ASSERT_TRUE(bytes_.Append("M>\xE9", 3));
    const char *rows[][2] = {
        {"base64", "TT7p"},     {"quoted-printable", "M>=E9"},
        {"hex", "4D3EE9"},      {"url", "M%3E%E9"},
        {"html", nullptr},      {"ansi", "M>\xE9"},
        {"base32", "JU7OS==="}, {"uuencode", "begin 644 file.dat\n#33[I\n`\nend\n"},
    };
    ASSERT_EQ(encode_.mode(), EncodingMode::kBase64);
    for (const auto &row : rows) {
        Select(row[0]);
        output_.SetFromAnsi("here");
        encode_.Encode(bytes_, &output_, true);
        EXPECT_EQ(Utf8Of(output_), row[1] == nullptr ? "here" : "here" + std::string(row[1])) << row[0];
        encode_.Encode(bytes_, &output_, false);
        EXPECT_EQ(Utf8Of(output_), row[1] == nullptr ? "here" : row[1]) << row[0];
        EXPECT_TRUE(output_.complete());
    }
}

TEST_F(ClsEncodeTest, EmptyInputEmptiesTheOutputExceptInHtml)
{
    for (const char *mode : {"base64", "html"}) {
        Select(mode);
        output_.SetFromAnsi("here");
        encode_.Encode(bytes_, &output_, false);
        EXPECT_EQ(Utf8Of(output_), mode == std::string("html") ? "here" : "") << mode;
    }
}

TEST_F(ClsEncodeTest, ZeroBytesStayInAnsi)
{
    ASSERT_TRUE(bytes_.Append("\0a\0", 3));
    Select("ansi");
    encode_.Encode(bytes_, &output_, false);
    encode_.Encode(bytes_, &output_, true);
    EXPECT_EQ(Utf8Of(output_), std::string("\0a\0\0a\0", 6));
}

// Whatever allocation fails: the whole encoding or none of it, and a loss shows.
TEST_F(ClsEncodeTest, NoPartOfAnEncodingIsHandedOut)
{
    ASSERT_TRUE(bytes_.AppendFill(0xA5, 300));
    for (const char *mode : {"base64", "quoted-printable", "hex", "url", "ansi", "base32"}) {
        Select(mode);
        encode_.Encode(bytes_, &output_, false);
        const std::string whole = Utf8Of(output_);
        tap::FailEach([&] {
            XString output;
            encode_.Encode(bytes_, &output, false);
            tap::FailNone();
            EXPECT_EQ(Utf8Of(output), output.complete() ? whole : "") << mode;
        });
    }
}

} // namespace
} // namespace pavonix
