// The MD2 digest (RFC 1319).
#pragma once

#include "rsa/digest/hashing.h"

namespace pavonix {

class Md2 final : public Hashing {
public:
    static constexpr std::uint32_t kDigestSize = 16;

    Md2() : Hashing(kDigestSize) {}
    // Writes kDigestSize bytes and ends the use of the object.
    void Finish(std::uint8_t *digest);

private:
    void Compress(const std::uint8_t *block) override;

    std::uint8_t state_[3 * kDigestSize] = {}; // the digest, the block, and their sum
    std::uint8_t checksum_[kDigestSize] = {};
};

} // namespace pavonix
