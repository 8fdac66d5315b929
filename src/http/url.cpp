#include "http/url.h"

#include "http/find_text.h"

#include <cstdint>

namespace pavonix {

namespace {

constexpr std::string_view kScheme = "http://"; // the one there is

// The "C" locale's letters and digits, independent of the process's locale.
bool IsDigit(char c)
{
    return c >= '0' && c <= '9';
}

bool IsLetter(char c)
{
    return (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z');
}

bool HasHttpScheme(std::string_view url)
{
    if (url.size() < kScheme.size()) {
        return false;
    }
    for (std::size_t i = 0; i < kScheme.size(); ++i) {
        const char lower = IsLetter(url[i]) ? static_cast<char>(url[i] | 0x20) : url[i];
        if (lower != kScheme[i]) {
            return false;
        }
    }
    return true;
}

} // namespace

UrlParts SplitUrl(const char *url)
{
    UrlParts parts;
    const bool hasSlashes = FindText(url, "//", 0) >= 0;
    if (hasSlashes && !HasHttpScheme(url)) {
        return parts;
    }
    const std::int32_t hostStart = hasSlashes ? static_cast<std::int32_t>(kScheme.size()) : 0;
    const std::int32_t pathStart = FindText(url, "/", hostStart);
    if (pathStart <= hostStart) { // without a text too
        return parts;
    }
    if (url[hostStart] == ':') {
        return parts; // a port only, and no host to ask for
    }
    const std::string_view whole = url;
    parts.valid = true;
    parts.host = whole.substr(static_cast<std::size_t>(hostStart), static_cast<std::size_t>(pathStart - hostStart));
    parts.target = whole.substr(static_cast<std::size_t>(pathStart));
    if (parts.target == "/") {
        parts.target = {}; // a bare "/" is sent as an empty target; the shop's URLs carry a longer path
    }
    return parts;
}

void UrlEncode(const char *text, StringBuffer *encoded)
{
    constexpr char kDigits[] = "0123456789ABCDEF";
    for (; *text != 0; ++text) {
        const std::uint8_t byte = static_cast<std::uint8_t>(*text);
        if (IsLetter(*text) || IsDigit(*text)) {
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
