// EME-OAEP, the padding of RSAES-OAEP (RFC 3447, section 7.1.1, step 2).
#pragma once

#include "rsa/log/log_base.h"
#include "rsa/digest/hash_table.h"
#include "rsa/text/data_buffer.h"

#include <cstdint>

namespace pavonix {

// Replaces `output` by the encoded message, as long in bytes as a modulus of
// `modulusBitLength` bits. The label may be empty. False, with the reason logged, for
// a null message, a message that does not fit and a modulus that is too small for the
// digest; also false when memory runs out.
[[nodiscard]] bool EncodeOaep(ByteSpan message, ByteSpan label, std::int32_t modulusBitLength, HashId hash,
                              DataBuffer *output, LogBase &log);

} // namespace pavonix
