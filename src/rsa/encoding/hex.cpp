#include "rsa/encoding/block_writer.h"
#include "rsa/encoding/content_coding.h"

namespace pavonix {

void ContentCoding::EncodeHex(const std::uint8_t *bytes, std::uint32_t count, StringBuffer *text)
{
    BlockWriter<256> writer(text);
    for (std::uint32_t i = 0; bytes != nullptr && i < count; ++i) {
        writer.PutHex(bytes[i]);
    }
}

} // namespace pavonix
