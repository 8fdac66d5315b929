// A growable array of bytes.
#pragma once

#include "rsa/text/integrity_mark.h"
#include "rsa/text/objects.h"

#include <cstdint>
#include <span>

namespace pavonix {

// Bytes owned by another object; a null pointer only with a size of 0.
using ByteSpan = std::span<const std::uint8_t>;

// Lengths and capacities are unsigned 32-bit byte counts. An operation
// returns false when memory runs out, and the buffer is then empty: a failed growth
// loses the content. Appended bytes must not be part of the buffer. The buffer may hold
// a key: its own bytes are wiped when they are cleared or freed.
class DataBuffer : public ZentorpObject {
public:
    DataBuffer() = default;
    ~DataBuffer() override;

    [[nodiscard]] bool AppendByte(std::uint8_t byte);
    [[nodiscard]] bool AppendFill(std::uint8_t byte, std::uint32_t count);
    // A null pointer or a count of 0 appends nothing and succeeds.
    [[nodiscard]] bool Append(const void *bytes, std::uint32_t count);
    // Grows to exactly `capacity` bytes if the capacity is below that; returns whether
    // the buffer has data now.
    [[nodiscard]] bool EnsureCapacity(std::uint32_t capacity);

    // Keeps the allocation.
    void Clear();
    // Adopts a block made by AllocateArray<std::uint8_t>(size).
    void TakeOver(std::uint8_t *block, std::uint32_t size);
    // Refers to bytes that the caller keeps, wipes and frees. Not used by the three
    // calls.
    void Borrow(std::uint8_t *bytes, std::uint32_t size);
    // Hands the block to the caller, who releases it with delete[].
    [[nodiscard]] std::uint8_t *Detach();

    std::uint8_t *data();
    const std::uint8_t *data() const;
    ByteSpan bytes() const { return {data(), length()}; }
    std::uint32_t length() const;
    std::uint32_t capacity() const;
    bool borrowed() const;

private:
    bool Grow(std::uint64_t newCapacity);
    void Free();

    IntegrityMark<0xDB> mark_;
    bool borrowed_ = false;
    std::uint8_t *data_ = nullptr;
    std::uint32_t length_ = 0;
    std::uint32_t capacity_ = 0;
};

} // namespace pavonix
