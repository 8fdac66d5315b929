// Encrypts any number of bytes, block by block.
#pragma once

#include "rsa/digest/hash_table.h"
#include "rsa/key/rsa_key.h"
#include "rsa/log/log_base.h"
#include "rsa/text/data_buffer.h"

#include <cstdint>

namespace pavonix {

enum class RsaPadding : std::int32_t { kPkcs1 = 1, kOaep = 2 };

// The settings of an encryption, the same for all blocks.
struct RsaSettings {
    const RsaKey &key;
    KeyType exponent;
    RsaPadding padding;
    HashId hash;       // for OAEP
    ByteSpan label;    // for OAEP; may be empty
    bool littleEndian; // false swaps the bytes of each 32-bit word of the result
    bool verbose;
};

// Replaces `output` by the ciphertext blocks, each as long as the modulus, in order;
// an empty input makes no block. False, with the reason logged, when the modulus is
// too small for the padding or a block fails: `output` then holds the blocks before
// it. Failure to reserve the output buffer is not logged.
[[nodiscard]] bool EncryptRsa(ByteSpan input, const RsaSettings &settings, DataBuffer *output, LogBase &log);

} // namespace pavonix
