// The RSA primitives RSAEP and RSASP1 (RFC 3447, section 5) on byte strings.
#pragma once

#include "rsa/key/rsa_key.h"
#include "rsa/log/log_base.h"
#include "rsa/text/data_buffer.h"

#include <cstdint>

namespace pavonix {

// Takes `length` bytes as a big-endian integer, raises it to the exponent that
// `keyChoice` names (kPublicKey, or kPrivateKey by the Chinese remainder form)
// and appends the result to `output`, big-endian without leading zeros. With
// `zeroExtend` the result gets leading zeros up to `length`, but only when
// `length` is the modulus bit length divided by 8, not rounded up. False, the
// reason logged, and nothing appended, on failure.
[[nodiscard]] bool ExponentiateRsa(const std::uint8_t *input, std::uint32_t length, std::int32_t keyChoice,
                                   const RsaKey &key, bool zeroExtend, DataBuffer *output, LogBase &log);

} // namespace pavonix
