#include "rsa/encoding/cls_encode.h"

#include "rsa/encoding/content_coding.h"

namespace pavonix {

ClsEncode::ClsEncode()
{
    uuencodeFileMode_.Append("644");
    uuencodeFileName_.setFromAnsi("file.dat");
}

void ClsEncode::EncodeInto(const std::uint8_t *bytes, std::uint32_t count, StringBuffer *text) const
{
    switch (mode_) {
    case EncodingMode::kBase64:
        ContentCoding::EncodeBase64(bytes, count, text);
        break;
    case EncodingMode::kQuotedPrintable:
        ContentCoding().EncodeQuotedPrintable(bytes, count, text);
        break;
    case EncodingMode::kHex:
        ContentCoding::EncodeHex(bytes, count, text);
        break;
    case EncodingMode::kUrl:
        ContentCoding::EncodeUrl(bytes, count, text);
        break;
    case EncodingMode::kHtml:
        break;
    case EncodingMode::kAnsi:
        ContentCoding::EncodeAnsi(bytes, count, text);
        break;
    case EncodingMode::kBase32:
        ContentCoding::EncodeBase32(bytes, count, text);
        break;
    case EncodingMode::kUuencode:
        ContentCoding::EncodeUuencode(bytes, count, uuencodeFileMode_.c_str(), uuencodeFileName_.getUtf8().c_str(),
                                      text);
        break;
    }
}

void ClsEncode::Encode(const DataBuffer &bytes, XString *output, bool append) const
{
    if (mode_ == EncodingMode::kHtml) {
        return;
    }
    StringBuffer text;
    EncodeInto(bytes.data(), bytes.length(), &text);
    if (!append) {
        output->clear();
    }
    if (text.complete()) {
        output->appendUtf8N(text.c_str(), text.length());
    } else {
        output->markIncomplete();
    }
}

} // namespace pavonix
