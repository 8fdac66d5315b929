// Encrypts bytes of any number, block by block.
#pragma once

#include "rsa/key/rsa_key.h"
#include "rsa/log/log_base.h"
#include "rsa/text/data_buffer.h"

#include <cstdint>

namespace pavonix {

constexpr std::int32_t kPkcs1Padding = 1;
constexpr std::int32_t kOaepPadding = 2;

// How a text is encrypted, the same for all its blocks.
struct RsaSettings {
    const RsaKey &key;
    std::int32_t keyChoice;    // kPublicKey or kPrivateKey
    std::int32_t padding;      // anything but kOaepPadding is kPkcs1Padding
    std::int32_t hashId;       // for OAEP
    const std::uint8_t *label; // for OAEP; may be null
    std::uint32_t labelLength; // bytes
    bool littleEndian;         // false swaps the bytes of each 32-bit word of the result
    bool verbose;
};

// Replaces `output` by the ciphertext blocks, each as long as the modulus, one
// behind the other; no bytes make no block. False, the reason logged, when the
// modulus is too small for the padding or a block fails: `output` then holds the
// blocks before it. Room for all of them that is not to be had is not logged.
[[nodiscard]] bool EncryptRsa(const std::uint8_t *input, std::uint32_t length, const RsaSettings &settings,
                              DataBuffer *output, LogBase &log);

} // namespace pavonix
