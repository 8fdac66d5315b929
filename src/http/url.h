// The two pieces of a URL that a request needs.
#pragma once

#include <string_view>

namespace pavonix {

// "http://host[:port]/path[?query]", or the same without the scheme. The pieces
// view the text they were cut from.
struct UrlParts {
    bool valid = false;      // false: another scheme, no host, or no "/" behind the host
    std::string_view host;   // with its port suffix, as the Host line carries it
    std::string_view target; // from the first "/" behind the host; empty when that is all there is
};

UrlParts SplitUrl(const char *url);

} // namespace pavonix
