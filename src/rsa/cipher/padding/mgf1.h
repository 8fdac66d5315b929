// MGF1, the mask generation function of OAEP (RFC 3447, appendix B.2.1).
#pragma once

#include "rsa/log/log_base.h"
#include "rsa/text/data_buffer.h"

#include <cstdint>

namespace pavonix {

// Appends `maskLength` bytes made from `seed` to `mask`. A null seed or a length
// of 0 fails, and the log shows `callSite`, which tells the callers apart.
[[nodiscard]] bool Mgf1(std::int32_t callSite, std::int32_t hashId, const std::uint8_t *seed, std::uint32_t seedLength,
                        std::uint32_t maskLength, DataBuffer *mask, LogBase &log);

} // namespace pavonix
