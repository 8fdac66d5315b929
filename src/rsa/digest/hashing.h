// The common base of the digests: it splits a stream of bytes into blocks.
#pragma once

#include <cstdint>

namespace pavonix {

// Call Update any number of times, then Finish of the derived class once.
class Hashing {
public:
    Hashing(const Hashing &) = delete;
    Hashing &operator=(const Hashing &) = delete;

    void Update(const void *bytes, std::uint32_t length);

protected:
    static constexpr std::uint32_t kLongestBlock = 128;
    enum class LengthOrder { kBigEndian, kLittleEndian };

    explicit Hashing(std::uint32_t blockSize) : blockSize_(blockSize) {}
    ~Hashing() = default; // digests live on the stack and are never deleted through the base

    virtual void Compress(const std::uint8_t *block) = 0;

    // Ends the stream as all digests but MD2 do: one bit of 1, zeros, and the
    // number of bits in the last eighth of the last block.
    void PadWithLength(LengthOrder order);
    // Bytes that the current block still takes; after an Update at least 1.
    std::uint32_t room() const { return blockSize_ - filled_; }

private:
    std::uint64_t total_ = 0; // bytes
    std::uint32_t filled_ = 0;
    const std::uint32_t blockSize_;
    std::uint8_t block_[kLongestBlock];
};

} // namespace pavonix
