// The SHA-2 digests (FIPS 180-4): SHA-256 on 32-bit words, SHA-384 and SHA-512
// on 64-bit words.
#pragma once

#include "rsa/digest/hashing.h"

namespace pavonix {

template <typename Word>
class Sha2 : public Hashing {
protected:
    // `initial`: eight 64-bit words, of which 32-bit digests use the upper halves.
    explicit Sha2(const std::uint64_t *initial);
    ~Sha2() = default;

    // Pads, and writes the first `size` bytes of the state.
    void Finish(std::uint8_t *digest, std::uint32_t size);

private:
    void Compress(const std::uint8_t *block) final;

    Word state_[8];
};

// Finish writes kDigestSize bytes and ends the use of the object.
class Sha256 final : public Sha2<std::uint32_t> {
public:
    static constexpr std::uint32_t kDigestSize = 32;
    Sha256();
    void Finish(std::uint8_t *digest) { Sha2::Finish(digest, kDigestSize); }
};

class Sha384 final : public Sha2<std::uint64_t> {
public:
    static constexpr std::uint32_t kDigestSize = 48;
    Sha384();
    void Finish(std::uint8_t *digest) { Sha2::Finish(digest, kDigestSize); }
};

class Sha512 final : public Sha2<std::uint64_t> {
public:
    static constexpr std::uint32_t kDigestSize = 64;
    Sha512();
    void Finish(std::uint8_t *digest) { Sha2::Finish(digest, kDigestSize); }
};

} // namespace pavonix
