// Splitting of URLs, and escaping of form values.
#pragma once

#include "rsa/text/string_buffer.h"

#include <string_view>

namespace pavonix {

// "http://host[:port]/path[?query]", or the same without the scheme. The pieces
// view the text they were cut from.
struct UrlParts {
    bool valid = false;      // false: another scheme, no host (a port alone is not one), or no "/" after it
    std::string_view host;   // with its port suffix, as the Host line carries it
    std::string_view target; // from the first "/" after the host; empty when that is all there is
};

UrlParts SplitUrl(const char *url);

// Appends the escaped form of a NUL-terminated 8-bit text: ASCII letters and
// digits as they are, a space as "+", every other byte as "%" and two upper-case
// hexadecimal digits. Stricter than application/x-www-form-urlencoded, which
// would leave some punctuation alone: servers in the field get just this.
void UrlEncode(const char *text, StringBuffer *encoded);

} // namespace pavonix
