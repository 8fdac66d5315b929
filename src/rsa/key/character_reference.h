// References in XML text: &amp; &lt; &gt; &quot; &apos; &#65; &#x41;
#pragma once

#include "rsa/text/string_buffer.h"

namespace pavonix {

// Appends what the reference stands for, in UTF-8. `reference` points at the
// '&'; one that means nothing (unknown, without ';', beyond U+10FFFF, a
// surrogate) appends just that '&'. Answers the position behind what was taken.
const char *AppendReference(const char *reference, StringBuffer *content);

} // namespace pavonix
