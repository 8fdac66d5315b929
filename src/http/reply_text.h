// Texts taken out of a reply's first bytes.
#pragma once

#include "rsa/text/zt_byte_data.h"

#include <cstdint>

namespace pavonix {

// A new copy of a header's value, released with delete[]. Null when it is absent, has
// no colon or line end, or memory runs out. The search is case-sensitive and matches
// anywhere in the head, also inside other names and values, and the value keeps the
// space after the colon: servers in the field depend on both.
[[nodiscard]] char *GetHeaderValue(const char *head, const char *name);

// Copies up to `count` bytes and appends two zero bytes. A zero byte ends the copy and
// adds two zero bytes more. A byte above 0xA0 leads a two-byte character: its trail
// byte is copied too, even if it is one beyond the count, so the source must be
// readable one byte beyond the count. A null source gives the two zero bytes.
void CopyResponsePrefix(const char *source, ZtByteData *target, std::int32_t count);

} // namespace pavonix
