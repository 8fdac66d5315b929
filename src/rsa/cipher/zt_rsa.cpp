#include "rsa/cipher/zt_rsa.h"

#include "rsa/cipher/cls_rsa.h"
#include "rsa/text/allocate.h"

namespace pavonix {

ZtRsa::ZtRsa() : impl_(AllocateObject<ClsRsa>()) {}

ZtRsa::~ZtRsa() = default;

void ZtRsa::SetText(const char *text, XString *target) const
{
    if (utf8_) {
        target->SetFromUtf8(text);
    } else {
        target->SetFromAnsi(text);
    }
}

void ZtRsa::put_VerboseLogging(bool verbose)
{
    if (impl_ != nullptr) {
        impl_->put_VerboseLogging(verbose);
    }
}

void ZtRsa::put_OAEP(bool oaep)
{
    if (impl_ != nullptr) {
        impl_->put_OAEP(oaep);
    }
}

void ZtRsa::put_LittleEndian(bool littleEndian)
{
    if (impl_ != nullptr) {
        impl_->put_LittleEndian(littleEndian);
    }
}

void ZtRsa::put_EncodingMode(const char *name)
{
    XString nameText;
    SetText(name, &nameText);
    if (impl_ != nullptr) {
        impl_->put_EncodingMode(nameText);
    }
}

void ZtRsa::get_EncodingMode(ZtString *name)
{
    name->Clear();
    if (impl_ != nullptr) {
        impl_->get_EncodingMode(&name->text());
    }
}

void ZtRsa::put_CharsetCodePage(std::int32_t codePage)
{
    if (impl_ != nullptr) {
        impl_->put_CharsetCodePage(codePage);
    }
}

bool ZtRsa::ImportPublicKey(const char *xml)
{
    XString xmlText;
    SetText(xml, &xmlText);
    return impl_ != nullptr && impl_->ImportPublicKey(xmlText);
}

bool ZtRsa::ImportPrivateKey(const char *xml)
{
    XString xmlText;
    SetText(xml, &xmlText);
    return impl_ != nullptr && impl_->ImportPrivateKey(xmlText);
}

bool ZtRsa::EncryptStringENC(const char *text, bool usePrivateKey, ZtString *result)
{
    XString input;
    SetText(text, &input);
    if (impl_ == nullptr) {
        result->Clear();
        return false;
    }
    return impl_->EncryptStringENC(input, usePrivateKey, &result->text());
}

void ZtRsa::get_LastErrorText(ZtString *text)
{
    StringBuffer rendered;
    if (impl_ != nullptr) {
        impl_->GetLastErrorText(&rendered);
    }
    text->text().SetFromUtf8(rendered.c_str());
    if (!rendered.complete()) {
        text->text().MarkIncomplete();
    }
}

} // namespace pavonix
