// MGF1, the mask generation function of OAEP (RFC 3447, appendix B.2.1).
#pragma once

#include "rsa/log/log_base.h"
#include "rsa/digest/hash_table.h"
#include "rsa/text/data_buffer.h"

#include <cstdint>

namespace pavonix {

// Which of the two masks of OAEP is being made; logged as "MgfError" when that fails.
enum class MgfSite : std::int32_t { kDataBlockMask = 100, kSeedMask = 101 };

// Appends `maskLength` bytes made from `seed` to `mask`. False, with the reason
// logged, for an empty seed or a length of 0; also false when memory runs out.
[[nodiscard]] bool Mgf1(MgfSite site, HashId hash, ByteSpan seed, std::uint32_t maskLength, DataBuffer *mask,
                        LogBase &log);

} // namespace pavonix
