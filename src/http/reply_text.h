// Texts taken out of a reply's first bytes.
#pragma once

#include "rsa/text/zt_byte_data.h"

#include <cstdint>

namespace pavonix {

// A new copy of the value of a header, released with delete[]; null when it is
// absent, has no colon or line end, or there is no memory. The name is looked for
// as it is anywhere in the head, also inside other names and values, and the
// value keeps the blank behind the colon: servers in the field depend on both.
[[nodiscard]] char *GetHeaderValue(const char *head, const char *name);

// Copies `count` bytes up to the first zero byte, then two zero bytes, and two
// more after a zero byte. A byte above 0xA0 leads a two-byte character: its trail
// byte is copied with it, also when that exceeds the count by one, so the source
// must be readable one byte beyond the count. A null source gives the two zeros.
void CopyResponsePrefix(const char *source, ZtByteData *target, std::int32_t count);

} // namespace pavonix
