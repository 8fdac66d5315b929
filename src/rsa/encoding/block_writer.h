// Collects characters and appends them to a text in blocks, so that a long output needs
// few appends.
#pragma once

#include "rsa/text/string_buffer.h"

#include <cstdint>

namespace pavonix {

// The destructor appends the last block.
template <std::int32_t kSize>
class BlockWriter {
public:
    explicit BlockWriter(StringBuffer *text) : text_(*text) {}
    ~BlockWriter() { Flush(); }
    BlockWriter(const BlockWriter &) = delete;
    BlockWriter &operator=(const BlockWriter &) = delete;

    void Put(char character)
    {
        block_[held_++] = character;
        if (held_ == kSize) {
            Flush();
        }
    }

    // Two upper-case digits.
    void PutHex(std::uint8_t byte)
    {
        constexpr char kDigits[] = "0123456789ABCDEF";
        Put(kDigits[byte >> 4]);
        Put(kDigits[byte & 15]);
    }

private:
    void Flush()
    {
        text_.AppendN(block_, held_);
        held_ = 0;
    }

    StringBuffer &text_;
    std::int32_t held_ = 0;
    char block_[kSize];
};

} // namespace pavonix
