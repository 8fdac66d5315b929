// The facade's byte holder.
#pragma once

#include "rsa/text/data_buffer.h"
#include "rsa/text/objects.h"

#include <cstdint>

namespace pavonix {

// Grows by the rules of DataBuffer. When memory for an append runs out, the holder is
// empty.
class ZtByteData : public ZtObject {
public:
    void Clear() { bytes_.Clear(); } // keeps the allocation
    [[nodiscard]] bool Append(const void *bytes, std::uint32_t count) { return bytes_.Append(bytes, count); }
    [[nodiscard]] bool AppendByte(std::uint32_t value) { return bytes_.AppendByte(static_cast<std::uint8_t>(value)); }
    // The caller owns the block and releases it with delete[].
    [[nodiscard]] std::uint8_t *Detach() { return bytes_.Detach(); }

    const std::uint8_t *data() const { return bytes_.data(); }
    std::uint32_t length() const { return bytes_.length(); }

private:
    DataBuffer bytes_;
};

} // namespace pavonix
