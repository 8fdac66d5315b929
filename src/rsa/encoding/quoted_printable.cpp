#include "rsa/encoding/block_writer.h"
#include "rsa/encoding/content_coding.h"

namespace pavonix {

namespace {

// Breaks lines that would become too long.
class QuotedPrintableWriter {
public:
    QuotedPrintableWriter(StringBuffer *text, std::int32_t lineLength) : out_(text), lineLength_(lineLength) {}

    void Literal(std::uint8_t byte)
    {
        MakeRoom(1);
        out_.Put(static_cast<char>(byte));
    }

    void Escaped(std::uint8_t byte)
    {
        MakeRoom(3);
        out_.Put('=');
        out_.PutHex(byte);
    }

    void LineBreak()
    {
        out_.Put('\r');
        out_.Put('\n');
        column_ = 0;
    }

private:
    // One column stays free for the "=" of a soft line break.
    void MakeRoom(std::int32_t width)
    {
        if (column_ + width > lineLength_ - 1) {
            out_.Put('=');
            LineBreak();
        }
        column_ += width;
    }

    BlockWriter<2000> out_;
    const std::int32_t lineLength_;
    std::int32_t column_ = 0;
};

bool IsLineBreak(const std::uint8_t *at, const std::uint8_t *end)
{
    return end - at >= 2 && at[0] == '\r' && at[1] == '\n';
}

} // namespace

void ContentCoding::EncodeQuotedPrintable(const std::uint8_t *bytes, std::uint32_t count, StringBuffer *text) const
{
    if (bytes == nullptr) {
        return;
    }
    QuotedPrintableWriter writer(text, lineLength_);
    const std::uint8_t *end = bytes + count;
    for (const std::uint8_t *at = bytes; at < end; ++at) {
        const bool blank = *at == ' ' || *at == '\t';
        const bool blankEndsLine = blank && (at + 1 == end || IsLineBreak(at + 1, end));
        if (IsLineBreak(at, end)) {
            writer.LineBreak();
            ++at;
        } else if ((blank && !blankEndsLine) || (*at > ' ' && *at <= '~' && *at != '=')) {
            writer.Literal(*at);
        } else {
            writer.Escaped(*at);
        }
    }
}

} // namespace pavonix
