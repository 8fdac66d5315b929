// Texts taken out of a reply's first bytes.
#pragma once

#include "rsa/text/zt_byte_data.h"

#include <cstdint>
#include <string_view>

namespace pavonix {

// A new copy of a header's value, released with delete[]. Null when it is absent, has
// no colon or line end, or memory runs out. The search is case-sensitive and matches
// anywhere in the head, also inside other names and values, and the value keeps the
// space after the colon: servers in the field depend on both.
[[nodiscard]] char *GetHeaderValue(const char *head, const char *name);

// The status in a reply's head: the three characters after the first space of the status
// line, as a number; 0 when that line has no space. Line ends before the status line are
// skipped, and a zero byte ends the head.
std::int32_t ParseStatus(std::string_view head);

// Copies up to `count` bytes and appends two zero bytes. A zero byte ends the copy and
// adds two zero bytes more. A byte above 0xA0 leads a two-byte character: its trail
// byte is copied too, even if it is one beyond the count, so the source must be
// readable one byte beyond the count. A null source gives the two zero bytes.
void CopyResponsePrefix(const char *source, ZtByteData *target, std::int32_t count);

} // namespace pavonix
