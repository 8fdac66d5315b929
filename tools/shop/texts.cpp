#include "texts.h"

#include "diagnostics/printable.h"

#include <libxml/xmlstring.h>

namespace shop {

namespace {

// Controls of both sets, and what turns the direction of writing or ends a line.
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

} // namespace shop
