// EME-PKCS1-v1_5, the padding of RSAES-PKCS1-v1_5 (RFC 3447, section 7.2.1, step 2).
#pragma once

#include "rsa/log/log_base.h"
#include "rsa/text/data_buffer.h"

#include <cstdint>

namespace pavonix {

constexpr std::uint8_t kEncryptionBlock = 2; // filled with random bytes; any other type with 0xFF
constexpr std::uint32_t kPkcs1Overhead = 11; // bytes of a block that the message cannot have

// Replaces `output` by the encoded message, as long as a modulus of
// `modulusBitLength` bits in bytes. False, the reason logged, for a message that
// does not fit; also for want of memory.
[[nodiscard]] bool EncodePkcs1(const std::uint8_t *message, std::uint32_t messageLength, std::uint8_t blockType,
                               std::int32_t modulusBitLength, DataBuffer *output, LogBase &log);

} // namespace pavonix
