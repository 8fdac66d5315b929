#include "rsa/encoding/cls_encode.h"

#include "rsa/encoding/content_coding.h"

namespace pavonix {

namespace {

void CopyNormalised(const XString &name, StringBuffer *copy)
{
    const StringBuffer &utf8 = name.GetUtf8();
    copy->AppendN(utf8.c_str(), utf8.length());
    copy->RemoveChar(' ');
    copy->Trim();
    copy->ToLower();
}

} // namespace

EncodingMode EncodingModeFromName(const XString &name)
{
    StringBuffer text;
    CopyNormalised(name, &text);
    text.RemoveChar('-');
    text.Trim(); // removing a dash may have exposed a space
    // The first rule that holds decides.
    if (text.BeginsWith("base")) {
        return text.Contains("32") ? EncodingMode::kBase32 : EncodingMode::kBase64;
    }
    if (text.BeginsWith("q")) {
        return EncodingMode::kQuotedPrintable;
    }
    if (text.BeginsWith("hex")) {
        return EncodingMode::kHex;
    }
    if (text.BeginsWith("ur")) {
        return EncodingMode::kUrl;
    }
    if (text.BeginsWith("ht")) {
        return EncodingMode::kHtml;
    }
    if (text.BeginsWith("an") || text.BeginsWith("asc")) {
        return EncodingMode::kAnsi;
    }
    return text.Contains("uu") ? EncodingMode::kUuencode : EncodingMode::kBase64;
}

void NormaliseEncodingName(const XString &name, XString *normalised)
{
    StringBuffer text;
    CopyNormalised(name, &text);
    normalised->SetFromUtf8(text.c_str());
}

ClsEncode::ClsEncode()
{
    uuencodeFileMode_.Append("644");
    uuencodeFileName_.SetFromAnsi("file.dat");
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
        ContentCoding::EncodeUuencode(bytes, count, uuencodeFileMode_.c_str(), uuencodeFileName_.GetUtf8().c_str(),
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
        output->Clear();
    }
    if (text.complete()) {
        output->AppendUtf8N(text.c_str(), text.length());
    } else {
        output->MarkIncomplete();
    }
}

} // namespace pavonix
