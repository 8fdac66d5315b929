// The MD5 digest (RFC 1321).
#pragma once

#include "rsa/digest/hashing.h"

namespace pavonix {

class Md5 final : public Hashing {
public:
    static constexpr std::uint32_t kDigestSize = 16;

    Md5() : Hashing(64) {}
    // Writes kDigestSize bytes and ends the use of the object.
    void Finish(std::uint8_t *digest);

private:
    void Compress(const std::uint8_t *block) override;

    std::uint32_t state_[4] = {0x67452301, 0xEFCDAB89, 0x98BADCFE, 0x10325476};
};

} // namespace pavonix
