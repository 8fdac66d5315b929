#include "rsa/digest/hashing.h"

#include "rsa/digest/word_bytes.h"

#include <cstring>

namespace pavonix {

void Hashing::Update(const void *bytes, std::uint32_t length)
{
    const auto *next = static_cast<const std::uint8_t *>(bytes);
    total_ += length;
    while (length > 0) {
        const std::uint32_t taken = length < room() ? length : room();
        std::memcpy(block_ + filled_, next, taken);
        filled_ += taken;
        next += taken;
        length -= taken;
        if (filled_ == blockSize_) {
            Compress(block_);
            filled_ = 0;
        }
    }
}

void Hashing::PadWithLength(LengthOrder order)
{
    block_[filled_++] = 0x80;
    std::memset(block_ + filled_, 0, room());
    if (room() < blockSize_ / 8) {
        Compress(block_);
        std::memset(block_, 0, blockSize_);
    }
    // SHA-512 has 16 bytes for the length; no stream needs more than eight of them.
    std::uint8_t *lastBytes = block_ + blockSize_ - sizeof(std::uint64_t);
    const std::uint64_t bits = total_ * 8;
    if (order == LengthOrder::kBigEndian) {
        StoreBigEndian(bits, lastBytes);
    } else {
        StoreLittleEndian(bits, lastBytes);
    }
    Compress(block_);
}

} // namespace pavonix
