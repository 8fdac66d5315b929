// The SHA-1 digest (FIPS 180-4).
#pragma once

#include "rsa/digest/hashing.h"

namespace pavonix {

class Sha1 final : public Hashing {
public:
    static constexpr std::uint32_t kDigestSize = 20;

    Sha1() : Hashing(64) {}
    // Writes kDigestSize bytes and ends the use of the object.
    void Finish(std::uint8_t *digest);

private:
    void Compress(const std::uint8_t *block) override;

    std::uint32_t state_[5] = {0x67452301, 0xEFCDAB89, 0x98BADCFE, 0x10325476, 0xC3D2E1F0};
};

} // namespace pavonix
