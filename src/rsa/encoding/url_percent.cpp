#include "rsa/encoding/block_writer.h"
#include "rsa/encoding/content_coding.h"

namespace pavonix {

namespace {

bool IsUnreserved(std::uint8_t byte)
{
    const bool letter = (byte >= 'A' && byte <= 'Z') || (byte >= 'a' && byte <= 'z');
    const bool digit = byte >= '0' && byte <= '9';
    return letter || digit || byte == '-' || byte == '.' || byte == '_' || byte == '~';
}

} // namespace

void ContentCoding::EncodeUrl(const std::uint8_t *bytes, std::uint32_t count, StringBuffer *text)
{
    BlockWriter<256> writer(text);
    for (std::uint32_t i = 0; bytes != nullptr && i < count; ++i) {
        if (IsUnreserved(bytes[i])) {
            writer.Put(static_cast<char>(bytes[i]));
        } else {
            writer.Put('%');
            writer.PutHex(bytes[i]);
        }
    }
}

} // namespace pavonix
