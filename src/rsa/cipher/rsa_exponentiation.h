// The RSA primitives RSAEP and RSASP1 (RFC 3447, section 5) on byte strings.
#pragma once

#include "rsa/key/rsa_key.h"
#include "rsa/log/log_base.h"
#include "rsa/text/data_buffer.h"

#include <cstdint>

namespace pavonix {

// kExtend: a result shorter than the input gets leading zeros up to the input's length,
// but only if that length is the modulus bit length divided by 8, not rounded up.
enum class LeadingZeros { kNone, kExtend };

// Takes the input as a big-endian integer, raises it to the public exponent, or to the
// private one by the Chinese remainder form, and appends the result to `output`,
// big-endian. False, with the reason logged and nothing appended, on failure.
[[nodiscard]] bool ExponentiateRsa(ByteSpan input, KeyType exponent, const RsaKey &key, LeadingZeros zeros,
                                   DataBuffer *output, LogBase &log);

} // namespace pavonix
