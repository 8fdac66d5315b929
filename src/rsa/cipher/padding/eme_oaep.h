// EME-OAEP, the padding of RSAES-OAEP (RFC 3447, section 7.1.1, step 2).
#pragma once

#include "rsa/log/log_base.h"
#include "rsa/text/data_buffer.h"

#include <cstdint>

namespace pavonix {

// Replaces `output` by the encoded message, as long as a modulus of
// `modulusBitLength` bits in bytes. The label may be null or empty. False, the
// reason logged, for a null message, a message that does not fit and a modulus
// that is too small for the digest; also for want of memory.
[[nodiscard]] bool EncodeOaep(const std::uint8_t *message, std::uint32_t messageLength, const std::uint8_t *label,
                              std::uint32_t labelLength, std::int32_t modulusBitLength, std::int32_t hashId,
                              DataBuffer *output, LogBase &log);

} // namespace pavonix
