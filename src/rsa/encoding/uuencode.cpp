#include "rsa/encoding/block_writer.h"
#include "rsa/encoding/content_coding.h"

namespace pavonix {

namespace {

constexpr std::uint32_t kLineBytes = 45;

using Writer = BlockWriter<256>;

// Six bits as a character. Zero is a grave accent, not a space, which would be
// lost at the end of a line where trailing spaces are stripped.
void PutBits(unsigned value, Writer *writer)
{
    writer->Put(value == 0 ? '`' : static_cast<char>(' ' + value));
}

// A line begins with its length; its last group is filled up with zero bytes.
void PutLine(const std::uint8_t *bytes, std::uint32_t count, Writer *writer)
{
    PutBits(count, writer);
    for (std::uint32_t i = 0; i < count; i += 3) {
        const unsigned first = bytes[i];
        const unsigned second = i + 1 < count ? bytes[i + 1] : 0u;
        const unsigned third = i + 2 < count ? bytes[i + 2] : 0u;
        PutBits(first >> 2, writer);
        PutBits((first & 3) << 4 | second >> 4, writer);
        PutBits((second & 15) << 2 | third >> 6, writer);
        PutBits(third & 63, writer);
    }
    writer->Put('\n');
}

} // namespace

void ContentCoding::EncodeUuencode(const std::uint8_t *bytes, std::uint32_t count, const char *mode,
                                   const char *fileName, StringBuffer *text)
{
    text->Append("begin ");
    text->Append(mode);
    text->Append(" ");
    text->Append(fileName);
    text->Append("\n");
    {
        Writer writer(text);
        while (bytes != nullptr && count > 0) {
            const std::uint32_t lineBytes = count < kLineBytes ? count : kLineBytes;
            PutLine(bytes, lineBytes, &writer);
            bytes += lineBytes;
            count -= lineBytes;
        }
        PutLine(nullptr, 0, &writer); // the empty line that ends the data
    }
    text->Append("end\n");
}

} // namespace pavonix
