#include "texts.h"

#include "diagnostics/printable.h"

#include <boost/algorithm/string/replace.hpp>
#include <libxml/xmlstring.h>

#include <algorithm>
#include <array>

namespace shop {

namespace {

// Control characters, and those that change the direction of writing or end a line.
bool IsControl(int letter)
{
    return letter < 0x20 || (letter >= 0x7F && letter < 0xA0) || (letter >= 0x200E && letter <= 0x200F) ||
           (letter >= 0x2028 && letter <= 0x202E) || (letter >= 0x2066 && letter <= 0x2069) || letter >= 0xFFFE;
}

bool IsReadable(const std::string &text, const std::string &allowed)
{
    const auto *bytes = reinterpret_cast<const unsigned char *>(text.c_str());
    if (text.find('\0') != std::string::npos || !xmlCheckUTF8(bytes)) {
        return false;
    }
    for (std::size_t at = 0; at < text.size();) {
        int size = static_cast<int>(text.size() - at);
        const int letter = xmlGetUTF8Char(bytes + at, &size);
        if (letter < 0 || (IsControl(letter) && allowed.find(text[at]) == std::string::npos)) {
            return false;
        }
        at += static_cast<std::size_t>(size);
    }
    return true;
}

} // namespace

bool IsPlainText(const std::string &text)
{
    return IsReadable(text, "\t\r\n");
}

std::string ForTerminal(const std::string &text)
{
    return IsReadable(text, "") ? text : diagnostics::Printable(text, text.size());
}

void AppendEscaped(std::string *document, std::string_view text)
{
    constexpr std::string_view kSpecial = "&<>\"\r";
    constexpr std::array kEscapes = {"&amp;", "&lt;", "&gt;", "&quot;", "&#13;"};
    for (std::size_t at = 0; at < text.size();) {
        const std::size_t special = std::min(text.find_first_of(kSpecial, at), text.size());
        document->append(text, at, special - at);
        if (special < text.size()) {
            document->append(kEscapes[kSpecial.find(text[special])]);
        }
        at = special + 1;
    }
}

std::string Html(const std::string &text)
{
    std::string html;
    AppendEscaped(&html, ForTerminal(text));
    return boost::replace_all_copy(html, "'", "&#39;");
}

} // namespace shop
