// Escaping of form values.
#pragma once

#include "rsa/text/string_buffer.h"

namespace pavonix {

// Appends the escaped form of a NUL-terminated 8-bit text: ASCII letters and
// digits as they are, a space as "+", every other byte as "%" and two upper-case
// hexadecimal digits. Stricter than application/x-www-form-urlencoded, which
// would leave some punctuation alone; this is meant so.
void UrlEncode(const char *text, StringBuffer *encoded);

} // namespace pavonix
