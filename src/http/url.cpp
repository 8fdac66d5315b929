#include "http/url.h"

#include "http/find_text.h"

#include <cstdint>

namespace pavonix {

namespace {

constexpr std::int32_t kSchemeLength = 7; // of "http://", the one scheme there is

bool HasHttpScheme(std::string_view url)
{
    const std::string_view scheme = url.substr(0, kSchemeLength);
    constexpr std::string_view kHttp = "http://";
    for (std::size_t i = 0; i < scheme.size(); ++i) {
        // letters match in either case; setting bit 5 leaves ':' and '/' as they are
        if ((scheme[i] | 0x20) != kHttp[i]) {
            return false;
        }
    }
    return scheme.size() == kHttp.size();
}

} // namespace

UrlParts SplitUrl(const char *url)
{
    UrlParts parts;
    const bool hasSlashes = FindText(url, "//", 0) >= 0;
    if (url == nullptr || (hasSlashes && !HasHttpScheme(url))) {
        return parts;
    }
    const std::int32_t hostStart = hasSlashes ? kSchemeLength : 0;
    const std::int32_t pathStart = FindText(url, "/", hostStart);
    if (pathStart <= hostStart) {
        return parts;
    }
    const std::string_view whole = url;
    parts.valid = true;
    parts.host = whole.substr(hostStart, pathStart - hostStart);
    parts.target = whole.substr(pathStart);
    if (parts.target == "/") {
        parts.target = {}; // a bare "/" is sent as an empty target; the shop's URLs carry a longer path
    }
    return parts;
}

} // namespace pavonix
