#include "rsa/encoding/encoding_mode.h"

namespace pavonix {

namespace {

void CopyNormalised(const XString &name, StringBuffer *copy)
{
    const StringBuffer &utf8 = name.getUtf8();
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
    text.Trim(); // a dash may have kept a blank from the end
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
    normalised->setFromUtf8(text.c_str());
}

} // namespace pavonix
