// Encrypts bytes of any number, block by block.
#pragma once

#include "rsa/cipher/block_encryption.h"

namespace pavonix {

// Replaces `output` by the ciphertext blocks, each as long as the modulus, one
// behind the other; no bytes make no block. False, the reason logged, when the
// modulus is too small for the padding or a block fails: `output` then holds the
// blocks before it.
[[nodiscard]] bool EncryptRsa(const std::uint8_t *input, std::uint32_t length, const RsaSettings &settings,
                              DataBuffer *output, LogBase &log);

} // namespace pavonix
