#include "rsa/cipher/cls_rsa.h"

#include "rsa/charset/convert_text.h"
#include "rsa/cipher/rsa_encrypt.h"
#include "rsa/key/key_reader.h"
#include "rsa/log/log_base.h"

namespace pavonix {

namespace {

constexpr std::int32_t kWindows1252 = 1252;

} // namespace

ClsRsa::ClsRsa()
{
    encodingMode_.SetFromUtf8("base64");
    charset_.SetByCodePage(kWindows1252);
}

void ClsRsa::put_VerboseLogging(bool verbose)
{
    const CritSecLock lock(*this);
    verboseLogging_ = verbose;
}

void ClsRsa::put_OAEP(bool oaep)
{
    const CritSecLock lock(*this);
    oaep_ = oaep;
}

void ClsRsa::put_LittleEndian(bool littleEndian)
{
    const CritSecLock lock(*this);
    littleEndian_ = littleEndian;
}

void ClsRsa::put_EncodingMode(const XString &name)
{
    const CritSecLock lock(*this);
    NormaliseEncodingName(name, &encodingMode_);
}

void ClsRsa::get_EncodingMode(XString *name)
{
    const CritSecLock lock(*this);
    name->CopyFrom(encodingMode_);
}

void ClsRsa::put_CharsetCodePage(std::int32_t codePage)
{
    const CritSecLock lock(*this);
    charset_.SetByCodePage(codePage);
}

bool ClsRsa::ImportKey(const char *method, const XString &xml)
{
    const CritSecLock lock(*this);
    LogBase &methodLog = StartMethod();
    const LogContext context(methodLog, method);
    return RecordResult(ReadKey(xml.GetUtf8().c_str(), &key_, false, methodLog));
}

bool ClsRsa::EncryptStringENC(const XString &text, bool usePrivateKey, XString *result)
{
    const CritSecLock lock(*this);
    LogBase &methodLog = StartMethod();
    LogContext context(methodLog, "EncryptStringENC");
    methodLog.logDataLong("usePrivateKey", usePrivateKey ? 1 : 0);
    DataBuffer bytes;
    if (!ConvertText(charset_, text, &bytes, Advice::kLog, Context::kLeave, methodLog)) {
        context.MarkLeft();
        result->Clear();
        return false;
    }
    return RecordResult(EncryptBytes(bytes, usePrivateKey, result, methodLog));
}

bool ClsRsa::EncryptBytes(const DataBuffer &bytes, bool usePrivateKey, XString *result, LogBase &methodLog)
{
    const RsaSettings settings = {
        .key = key_,
        .exponent = usePrivateKey ? KeyType::kPrivate : KeyType::kPublic,
        .padding = oaep_ ? RsaPadding::kOaep : RsaPadding::kPkcs1,
        .hash = HashId::kSha1,
        .label = {},
        .littleEndian = littleEndian_,
        .verbose = verboseLogging_,
    };
    DataBuffer encrypted;
    bool success = EncryptRsa(bytes.bytes(), settings, &encrypted, methodLog);
    if (success) {
        SetMode(encodingMode_);
        Encode(encrypted, result, false);
        success = result->complete(); // a token cut short would still look like one
    }
    if (!success) {
        result->Clear();
    }
    return success;
}

} // namespace pavonix
