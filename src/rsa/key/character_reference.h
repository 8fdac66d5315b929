// References in XML text: &amp; &lt; &gt; &quot; &apos; &#65; &#x41;
#pragma once

#include "rsa/text/string_buffer.h"

namespace pavonix {

// Appends the referenced character in UTF-8. `reference` points at the '&'. An invalid
// reference (unknown, without ';', beyond U+10FFFF, a surrogate) appends just the '&'.
// Returns the position after the characters read.
const char *AppendReference(const char *reference, StringBuffer *content);

} // namespace pavonix
