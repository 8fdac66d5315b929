#include "diagnostics/printable.h"

namespace diagnostics {

namespace {

void AppendByte(std::string *text, char byte)
{
    constexpr char kDigits[] = "0123456789abcdef";
    const auto value = static_cast<unsigned char>(byte);
    switch (byte) {
    case '\r':
        *text += "\\r";
        break;
    case '\n':
        *text += "\\n";
        break;
    case '\t':
        *text += "\\t";
        break;
    case '\\':
        *text += "\\\\";
        break;
    default:
        if (value >= 0x20 && value < 0x7F) {
            *text += byte;
        } else {
            *text += {'\\', 'x', kDigits[value >> 4], kDigits[value & 0xF]};
        }
    }
}

} // namespace

std::string Printable(std::string_view bytes, std::size_t most)
{
    std::string text;
    for (const char byte : bytes.substr(0, most)) {
        AppendByte(&text, byte);
    }
    return bytes.size() > most ? text + "..." : text;
}

} // namespace diagnostics
