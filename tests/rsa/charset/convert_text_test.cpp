#include "rsa/charset/convert_text.h"
#include "rsa/log/logger.h"
#include "support/tap.h"
#include "support/texts.h"

#include <gtest/gtest.h>

#include <fstream>
#include <map>
#include <optional>
#include <string>

using namespace pavonix;
using namespace pavonix::test;

namespace {

using Converted = std::optional<std::string>; // nothing when the conversion failed

Converted Convert(const Charset &charset, const std::u16string &text)
{
    XString wide;
    wide.SetFromUtf16(text.c_str());
    DataBuffer output;
    LogBase log;
    if (!ConvertText(charset, wide, &output, false, false, log)) {
        return std::nullopt;
    }
    return BytesOf(output);
}

Converted Convert(int codePage, const std::u16string &text)
{
    Charset charset;
    charset.SetByCodePage(codePage);
    return Convert(charset, text);
}

} // namespace

// All units but the terminator. The five bytes that the code page leaves undefined
// (81, 8D, 8F, 90, 9D) stand for the control characters of the same value.
TEST(ConvertText, Windows1252ConvertsEveryUnitAndServesIso88591Too)
{
    std::map<char16_t, std::string> expected;
    std::ifstream lines(TEST_DATA_DIR "/cp1252.txt");
    for (unsigned byte, unit; lines >> std::hex >> byte >> unit;) {
        expected[static_cast<char16_t>(unit)] = std::string(1, static_cast<char>(byte));
    }
    ASSERT_EQ(expected.size(), 256u);
    for (unsigned unit = 1; unit < 0x10000; ++unit) {
        const std::u16string text(1, static_cast<char16_t>(unit));
        const auto row = expected.find(text[0]);
        const Converted wanted = row != expected.end() ? Converted(row->second) : std::nullopt;
        ASSERT_EQ(Convert(1252, text), wanted) << std::hex << unit;
        ASSERT_EQ(Convert(28591, text), wanted) << std::hex << unit;
    }
}

TEST(ConvertText, ANumberWithoutANameLeavesTheCharsetUnchanged)
{
    Charset charset;
    charset.SetByCodePage(1252);
    charset.SetByCodePage(28605);
    for (const int codePage : {0, -1, 1, 1249, 1259, 28590, 65002}) {
        charset.SetByCodePage(codePage);
        EXPECT_EQ(charset.codePage(), 28605);
        EXPECT_STREQ(charset.name(), "iso-8859-15");
    }
}

TEST(ConvertText, TheOutputIsTheTextAloneInAnyLength)
{
    EXPECT_EQ(Convert(1252, u""), "");
    EXPECT_EQ(Convert(65001, u"a\u20ac\U0001F600"), "a\u20ac\xF0\x9F\x98\x80") << "no byte-order mark, pairs whole";
    std::u16string text;
    std::string bytes;
    for (int i = 0; i < 30000; ++i) { // more than the room of one growth
        text += u"\u4e2d";
        bytes += "\xE4\xB8\xAD";
    }
    EXPECT_EQ(Convert(65001, text), bytes);
}

TEST(ConvertText, AFailureIsReportedAndLeavesNoOutput)
{
    const std::string entries = "    Character encoding conversion failed.\r\n"
                                "    NumCharsIn: 5\r\n"
                                "    Charset: windows-1252\r\n"
                                "    ConvertedToNumBytes: 2\r\n";
    const std::string advice = "    Set the Charset property to a charset that has all characters of the text, such as"
                               " utf-8.\r\n";
    const std::string start = "ZentorpLog:\r\n  Caller:\r\n";
    const struct {
        bool advise, leaveContext;
        std::string log;
    } rows[] = {
        {false, false, start + entries + "    after\r\n"},
        {true, false, start + entries + advice + "    after\r\n"},
        {true, true, start + entries + advice + "    Failed.\r\n  after\r\n"},
    };
    Charset charset;
    charset.SetByCodePage(1252);
    XString text;
    text.SetFromUtf16(u"\u20ac1\U0001F600b");
    for (const auto &row : rows) {
        Logger log;
        log.enterContext("Caller");
        DataBuffer output;
        ASSERT_TRUE(output.AppendByte('x'));
        EXPECT_FALSE(ConvertText(charset, text, &output, row.advise, row.leaveContext, log));
        EXPECT_EQ(output.length(), 0u);
        log.logInfo("after");
        EXPECT_EQ(LogText(log), row.log);
    }
}

// Each allocation and each conversion failing once, and ever after: all of the
// bytes or a failure, never a part of them.
TEST(ConvertText, MissingMemoryIsAFailureAndNothingElse)
{
    Charset charset;
    charset.SetByCodePage(1252);
    const tap::Holdings before = tap::Held();
    const int faults = tap::FailEach([&] {
        XString text;
        text.SetFromUtf8("2026-\xE2\x82\xAC");
        DataBuffer output;
        Logger log;
        log.enterContext("Caller");
        const bool converted = ConvertText(charset, text, &output, true, true, log);
        tap::FailNone();
        EXPECT_TRUE(converted || tap::FaultHappened());
        EXPECT_EQ(output.length(), converted && text.complete() ? 6u : 0u);
    });
    EXPECT_GT(faults, 16);
    EXPECT_EQ(tap::Held(), before);
}
