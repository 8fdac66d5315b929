// EME-PKCS1-v1_5, the padding of RSAES-PKCS1-v1_5 (RFC 3447, section 7.2.1, step 2).
#pragma once

#include "rsa/log/log_base.h"
#include "rsa/text/data_buffer.h"

#include <cstdint>

namespace pavonix {

// The block type, a byte of the encoded message: an encryption block is filled with
// random bytes, a block of any other type with 0xFF.
constexpr std::uint8_t kEncryptionBlock = 2;
constexpr std::uint32_t kPkcs1Overhead = 11; // bytes of a block that are not the message's

// Replaces `output` by the encoded message, as long in bytes as a modulus of
// `modulusBitLength` bits. False, with the reason logged, for a message that does not
// fit; also false when memory runs out.
[[nodiscard]] bool EncodePkcs1(ByteSpan message, std::uint8_t blockType, std::int32_t modulusBitLength,
                               DataBuffer *output, LogBase &log);

} // namespace pavonix
