// The copy of a reply's first bytes that a transaction hands to its caller.
#pragma once

#include "rsa/text/zt_byte_data.h"

#include <cstdint>

namespace pavonix {

// Copies `count` bytes up to the first zero byte, then two zero bytes, and two
// more after a zero byte. A byte above 0xA0 leads a two-byte character: its trail
// byte is copied with it, also when that exceeds the count by one, so the source
// must be readable one byte beyond the count. A null source gives the two zeros.
void CopyResponsePrefix(const char *source, ZtByteData *target, std::int32_t count);

} // namespace pavonix
