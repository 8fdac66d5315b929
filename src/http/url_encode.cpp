#include "http/url_encode.h"

#include <cstdint>

namespace pavonix {

namespace {

// The "C" locale's letters and digits, whatever locale the process has set.
bool IsLetterOrDigit(char c)
{
    return (c >= '0' && c <= '9') || (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z');
}

} // namespace

void UrlEncode(const char *text, StringBuffer *encoded)
{
    constexpr char kDigits[] = "0123456789ABCDEF";
    for (; *text != 0; ++text) {
        const std::uint8_t byte = static_cast<std::uint8_t>(*text);
        if (IsLetterOrDigit(*text)) {
            encoded->AppendChar(*text);
        } else if (*text == ' ') {
            encoded->AppendChar('+');
        } else {
            const char escape[3] = {'%', kDigits[byte >> 4], kDigits[byte & 15]};
            encoded->AppendN(escape, sizeof escape);
        }
    }
}

} // namespace pavonix
