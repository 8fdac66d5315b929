#include "rsa/text/decimal.h"
#include "rsa/text/fixed_text.h"
#include "rsa/text/x_string.h"
#include "rsa/text/zt_string.h"
#include "support/tap.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <string>

using namespace pavonix;

namespace {

int Conversions()
{
    return tap::CountOf("WideToBytes") + tap::CountOf("BytesToWide");
}

} // namespace

TEST(XString, ConvertsOnDemand)
{
    XString text;
    EXPECT_STREQ(text.GetAnsi().c_str(), "");
    EXPECT_STREQ(text.GetUtf8().c_str(), "");
    EXPECT_EQ(text.GetUtf16()[0], 0);

    text.SetFromUtf8("K\xC3\xA4se 5 \xE2\x82\xAC"); // "Käse 5 €"
    tap::Reset();
    EXPECT_STREQ(text.GetAnsi().c_str(), "K\xE4se 5 \x80");
    EXPECT_EQ(std::u16string(text.GetUtf16()), u"Käse 5 €");
    const int conversions = Conversions();
    EXPECT_STREQ(text.GetAnsi().c_str(), "K\xE4se 5 \x80");
    EXPECT_EQ(Conversions(), conversions) << "made once";

    text.AppendUtf8("!");
    EXPECT_EQ(std::u16string(text.GetUtf16()), u"Käse 5 €!");
    text.AppendAnsi("\xDF");
    EXPECT_STREQ(text.GetUtf8().c_str(), "K\xC3\xA4se 5 \xE2\x82\xAC!\xC3\x9F");
    text.SetFromUtf16(u"Ω\xD83Dz");
    EXPECT_STREQ(text.GetAnsi().c_str(), "??z") << "an unpaired surrogate does not consume the next character";
    text.SetFromUtf16(u"Жx"); // not in the ANSI code page
    EXPECT_STREQ(text.GetAnsi().c_str(), "?x");
    XString copy;
    copy.CopyFrom(text);
    EXPECT_STREQ(text.GetUtf8().c_str(), "\xD0\x96x") << "made from UTF-16, not from the lossy form";
    EXPECT_STREQ(copy.GetUtf8().c_str(), "\xD0\x96x");
    text.SetFromUtf16(nullptr);
    EXPECT_TRUE(text.isEmpty());
    text.SetFromUtf16(u"z");
    EXPECT_FALSE(text.isEmpty());
    tap::FailNth(1, true);
    const XString poor;
    tap::FailNone();
    EXPECT_TRUE(poor.GetUtf16()[0] == 0 && poor.LengthUtf16() == 0) << "empty without memory";
}

TEST(XString, CopiesOneRepresentationAndAsciiWithoutConversion)
{
    XString ansi, utf8, utf16, ascii, copy;
    ansi.AppendAnsiN("\x81\0\xFF", 3); // bytes that a conversion would change
    utf8.SetFromUtf8("\xFF\xC3");
    utf16.SetFromUtf16(u"żółw");
    ascii.SetFromAnsi("AQAB");
    tap::Reset();
    copy.CopyFrom(ansi);
    EXPECT_EQ(std::string(copy.GetAnsi().c_str(), 3), std::string("\x81\0\xFF", 3));
    copy.CopyFrom(utf8);
    EXPECT_STREQ(copy.GetUtf8().c_str(), "\xFF\xC3");
    copy.CopyFrom(utf16);
    EXPECT_EQ(std::u16string(copy.GetUtf16()), u"żółw");
    copy.CopyFrom(ascii);
    EXPECT_STREQ(copy.GetUtf8().c_str(), "AQAB");
    EXPECT_EQ(Conversions(), 0);
}

TEST(XString, ReportsItsLoss)
{
    ZtString text("some text");
    tap::FailNth(1, true);
    text.Append(std::string(1000, 'x').c_str());
    tap::FailNone();
    EXPECT_STREQ(text.c_str(), "some text");
    EXPECT_FALSE(text.complete());
    EXPECT_FALSE(ZtString(text).complete()) << "a copy is incomplete too";
    text.Set("new");
    EXPECT_TRUE(text.complete());

    // Appending to a text that could not be converted loses it; setting a text replaces it.
    for (const bool everAfter : {false, true}) {
        XString converted;
        converted.SetFromUtf8("\xC3\xA4");
        tap::FailNth(1, everAfter);
        EXPECT_EQ(converted.LengthUtf16(), 0);
        tap::FailNth(1, everAfter);
        converted.AppendAnsi("b");
        tap::FailNone();
        EXPECT_FALSE(converted.complete());
        tap::FailNth(1, everAfter);
        converted.SetFromUtf16(u"a wide text");
        tap::FailNone();
        EXPECT_TRUE(converted.isEmpty() && !converted.complete());
    }
}

TEST(XString, AConversionWithoutMemoryIsTriedAgain)
{
    const std::string ascii(300, 'x');
    const std::string rows[][2] = {{"\xC3\xA4", "\xE4"}, {ascii, ascii}};
    for (const auto &[utf8, ansi] : rows) {
        for (int failing = 1; failing <= 6; ++failing) { // conversions and allocations
            XString text;
            text.SetFromUtf8(utf8.c_str());
            tap::FailNth(failing, true);
            const std::string first = text.GetAnsi().c_str();
            tap::FailNone();
            EXPECT_TRUE(first.empty() || first == ansi);
            EXPECT_EQ(text.GetAnsi().c_str(), ansi);
        }
    }
}

TEST(ZtString, HandsOutTheChosenRepresentation)
{
    ZtString text("\xE4");
    EXPECT_STREQ(text.c_str(), "\xE4");
    text.put_Utf8(true);
    EXPECT_STREQ(text.c_str(), "\xC3\xA4");
    text.Append("\xC3\xB6");
    const ZtString copy = text;
    EXPECT_STREQ(copy.c_str(), "\xC3\xA4\xC3\xB6");
    text = text;
    text.Append(ZtString("\xFC")); // whose own representation is ANSI
    text.AppendN("\xC3\x9F", 2);
    EXPECT_STREQ(text.c_str(), "\xC3\xA4\xC3\xB6\xC3\xBC\xC3\x9F");
    text.Set("\xC3\xA4");
    text.put_Utf8(false);
    EXPECT_STREQ(text.c_str(), "\xE4");
}

TEST(Decimal, WritesLikePrintf)
{
    for (const std::int32_t value : {0, 7, 42, -42, 998, -998, 1000, INT32_MAX, INT32_MIN}) {
        char expected[16];
        std::snprintf(expected, sizeof expected, "%d", value);
        EXPECT_STREQ(DecimalText(value).c_str(), expected);
        std::snprintf(expected, sizeof expected, "%.3d", value);
        EXPECT_STREQ(DecimalText(value, 3).c_str(), expected);
    }
}

TEST(Decimal, ReadsLikeAtoi)
{
    for (const char *text : {"0", "42", " 42", "\t\r\n\v\f-42x", "+7", "", "x", "-", "+-1", "- 1", "2147483647",
                             "-2147483648", "007", "9 9"}) {
        EXPECT_EQ(ParseDecimal(text), std::atoi(text)) << text;
    }
    EXPECT_EQ(ParseDecimal("2147483648"), INT32_MAX) << "beyond 32 bits: the nearest number, on every flavour";
    EXPECT_EQ(ParseDecimal("99999999999999999999"), INT32_MAX);
    EXPECT_EQ(ParseDecimal("-2147483649"), INT32_MIN);
    EXPECT_EQ(ParseDecimal("-99999999999999999999"), INT32_MIN);
}

TEST(FixedText, TruncatesAndReportsIt)
{
    FixedText<8> text;
    text.Append("id=").AppendDecimal(1234);
    EXPECT_STREQ(text.c_str(), "id=1234");
    EXPECT_TRUE(text.fits());
    text.Append("5");
    EXPECT_STREQ(text.c_str(), "id=1234");
    EXPECT_FALSE(text.Append("").fits()) << "truncation is permanent";
}
