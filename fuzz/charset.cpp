// Texts in three representations and in code pages: iconv must convert the result back to
// the same text.
#include "demand.h"
#include "rsa/charset/convert_text.h"
#include "rsa/text/x_string.h"
#include "support/texts.h"

#include <iconv.h>

using namespace pavonix;

namespace {

struct Page {
    std::int32_t number;
    const char *name;
};
constexpr Page kPages[] = {
    {1252, "CP1252"}, {1251, "CP1251"}, {1250, "CP1250"}, {28592, "ISO-8859-2"}, {65001, "UTF-8"}};

// Returns an empty text if the bytes are invalid in the character set.
std::u16string ToWide(const char *charset, std::string bytes)
{
    std::u16string units(bytes.size() + 1, u'\0');
    char *from = bytes.data(), *to = reinterpret_cast<char *>(units.data());
    std::size_t left = bytes.size(), room = 2 * units.size();
    const iconv_t conversion = iconv_open("UTF-16LE", charset);
    const bool whole = iconv(conversion, &from, &left, &to, &room) != static_cast<std::size_t>(-1);
    iconv_close(conversion);
    units.resize(units.size() - room / 2);
    return whole ? units : u"";
}

void CheckRoundTrip(const std::u16string &units)
{
    XString text, fromUtf8;
    text.SetFromUtf16(units.c_str());
    const std::string utf8 = test::BytesOf(text.GetUtf8());
    Demand(ToWide("UTF-8", utf8) == units, "UTF-16 to UTF-8: " + utf8);
    fromUtf8.SetFromUtf8(utf8.c_str());
    Demand(units == fromUtf8.GetUtf16(), "UTF-8 to UTF-16: " + utf8);
    for (const Page &page : kPages) {
        Charset charset;
        charset.SetByCodePage(page.number);
        LogBase log;
        DataBuffer bytes;
        if (ConvertText(charset, text, &bytes, Advice::kNone, Context::kKeep, log)) {
            const std::u16string back = ToWide(page.name, test::BytesOf(bytes));
            Demand(back.empty() || back == units, std::string("to and from ") + page.name);
        }
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    const std::string bytes = Bytes(data, size).c_str();
    const std::u16string units = ToWide("UTF-8", bytes);
    if (!units.empty()) {
        CheckRoundTrip(units);
    }
    XString odd, ansi; // from any bytes
    odd.SetFromUtf8(bytes.c_str());
    odd.AppendAnsi(bytes.c_str());
    Demand(static_cast<std::size_t>(odd.LengthUtf16()) == std::u16string(odd.GetUtf16()).size(), "a length");
    ansi.SetFromAnsi(bytes.c_str());
    Demand(test::BytesOf(ansi.GetAnsi()) == bytes, "bytes of the ANSI page");
    XString again;
    again.SetFromUtf16(ansi.GetUtf16());
    Demand(test::BytesOf(again.GetAnsi()) == bytes, "bytes of the ANSI page to UTF-16 and back");
    return 0;
}
