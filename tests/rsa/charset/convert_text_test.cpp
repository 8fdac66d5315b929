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

using Converted = std::optional<std::string>; // nullopt if the conversion failed

Converted Convert(const Charset &charset, const std::u16string &text)
{
    XString wide;
    wide.SetFromUtf16(text.c_str());
    DataBuffer output;
    LogBase log;
    if (!ConvertText(charset, wide, &output, Advice::kNone, Context::kKeep, log)) {
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

TEST(ConvertText, Windows1252ConvertsEveryUnitAndServesIso88591Too)
{
    std::map<char16_t, std::string> expected;
    // Python's cp1252; the five undefined bytes (81, 8D, 8F, 90, 9D) are the control characters of that value
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

// Names from the registry of character sets; other numbers do not change the charset.
TEST(ConvertText, CodePagesAndTheirNames)
{
    std::map<int, std::string> names = {
        {437, "ibm437"}, {850, "ibm850"},         {852, "ibm852"},     {866, "cp866"},   {874, "windows-874"},
        {936, "gb2312"}, {949, "ks_c_5601-1987"}, {20127, "us-ascii"}, {65001, "utf-8"},
    };
    for (const int codePage : {1250, 1251, 1252, 1253, 1254, 1256, 1257}) {
        names[codePage] = "windows-" + std::to_string(codePage);
    }
    for (const int part : {1, 2, 3, 4, 5, 6, 7, 8, 9, 13, 15}) {
        names[28590 + part] = "iso-8859-" + std::to_string(part);
    }
    Charset charset;
    std::string name;
    for (int codePage = -1; codePage < 0x10000; ++codePage) {
        name = names.contains(codePage) ? names[codePage] : name;
        charset.SetByCodePage(codePage);
        ASSERT_EQ(charset.name(), name) << codePage;
        ASSERT_EQ(charset.codePage() == codePage, names.contains(codePage) || codePage == 0);
    }
}

TEST(ConvertText, AFailureIsReportedAndLeavesNoOutput)
{
    const std::string entries = "ZentorpLog:|  Caller:|    Character encoding conversion failed.|    NumCharsIn: 5|"
                                "    Charset: windows-1252|    ConvertedToNumBytes: 2|";
    const std::string advice = "    Set the Charset property to a charset that has all characters of the text, such as"
                               " utf-8.|";
    const struct {
        Advice advice;
        Context context;
        std::string log;
    } rows[] = {
        {Advice::kNone, Context::kKeep, "    after|"},
        {Advice::kLog, Context::kKeep, advice + "    after|"},
        {Advice::kLog, Context::kLeave, advice + "    Failed.|  after|"},
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
        EXPECT_FALSE(ConvertText(charset, text, &output, row.advice, row.context, log));
        EXPECT_EQ(output.length(), 0u);
        log.logInfo("after");
        EXPECT_EQ(LogText(log), Lines(entries + row.log));
    }
}
