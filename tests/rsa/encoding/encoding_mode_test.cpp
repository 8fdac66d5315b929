#include "rsa/encoding/cls_encode.h"

#include <gtest/gtest.h>

namespace pavonix {
namespace {

EncodingMode ModeOf(const char *name)
{
    XString text;
    text.SetFromUtf8(name);
    return EncodingModeFromName(text);
}

TEST(EncodingMode, IsReadLooselyFromItsName)
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
                EXPECT_EQ(ModeOf(name), row.mode) << name;
            }
        }
    }
    // Not quite the name of anything else.
    for (const char *name : {"as", "he", "u", "xbase32", "xhex", "h"}) {
        EXPECT_EQ(ModeOf(name), EncodingMode::kBase64) << name;
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
        XString name;
        XString normalised;
        normalised.SetFromAnsi("earlier");
        name.SetFromUtf8(row[0]);
        NormaliseEncodingName(name, &normalised);
        EXPECT_STREQ(normalised.GetUtf8().c_str(), row[1]) << row[0];
    }
}

} // namespace
} // namespace pavonix
