#include "rsa/encoding/content_coding.h"

namespace pavonix {

void ContentCoding::EncodeAnsi(const std::uint8_t *bytes, std::uint32_t count, StringBuffer *text)
{
    // No text can hold INT32_MAX characters: the append of as many marks it.
    const std::int32_t length = count < INT32_MAX ? static_cast<std::int32_t>(count) : INT32_MAX;
    text->AppendN(reinterpret_cast<const char *>(bytes), length);
}

} // namespace pavonix
