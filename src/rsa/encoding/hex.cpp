#include "rsa/encoding/block_writer.h"
#include "rsa/encoding/content_coding.h"

namespace pavonix {

void ContentCoding::EncodeHex(const std::uint8_t *bytes, std::uint32_t count, StringBuffer *text)
{
    constexpr char kDigits[] = "0123456789ABCDEF";
    BlockWriter<256> writer(text);
    for (std::uint32_t i = 0; bytes != nullptr && i < count; ++i) {
        writer.Put(kDigits[bytes[i] >> 4]);
        writer.Put(kDigits[bytes[i] & 15]);
    }
}

} // namespace pavonix
