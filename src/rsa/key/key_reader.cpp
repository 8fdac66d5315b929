#include "rsa/key/key_reader.h"

#include "rsa/key/cls_xml.h"

namespace pavonix {

namespace {

struct KeyPart {
    const char *element;
    mp_int RsaKey::*field;
    const char *missing; // null for a part that may be missing
    const char *invalid;
    const char *bitCountTag; // null for a part that is not logged
};

constexpr KeyPart kModulus = {"Modulus", &RsaKey::N, "No modulus", "Invalid modulus", "N_numBits"};
constexpr KeyPart kExponent = {"Exponent", &RsaKey::e, "No exponent", "Invalid exponent", nullptr};
constexpr KeyPart kP = {"P", &RsaKey::p, nullptr, "Invalid P", "P_numBits"};
constexpr KeyPart kPrivateParts[] = {
    {"Q", &RsaKey::q, nullptr, "Invalid Q", "Q_numBits"},
    {"DP", &RsaKey::dP, nullptr, "Invalid DP", "DP_numBits"},
    {"DQ", &RsaKey::dQ, nullptr, "Invalid DQ", "DQ_numBits"},
    {"InverseQ", &RsaKey::qP, nullptr, "Invalid InverseQ", "InverseQ_numBits"},
    {"D", &RsaKey::d, nullptr, "Invalid D", "D_numBits"},
};

class KeyReader {
public:
    KeyReader(const char *xml, RsaKey *key, bool verbose, LogBase &log) : key_(key), verbose_(verbose), log_(log)
    {
        (void)xml_.LoadXml(xml); // without a root element there is no modulus either
    }

    // False, with the reason logged, on failure. `*present`: whether the part exists.
    bool Read(const KeyPart &part, bool *present);
    bool Read(const KeyPart &part)
    {
        bool present = false;
        return Read(part, &present);
    }

    const StringBuffer &content() const { return content_; }

private:
    ClsXml xml_;
    StringBuffer content_;
    RsaKey *key_;
    bool verbose_;
    LogBase &log_;
};

bool KeyReader::Read(const KeyPart &part, bool *present)
{
    // A content for which memory ran out exists, but cannot be read.
    *present = xml_.GetChildContent(part.element, &content_) && (content_.length() > 0 || !content_.complete());
    if (!*present) {
        if (part.missing != nullptr) {
            log_.logError(part.missing);
        }
        return part.missing == nullptr;
    }
    mp_int &value = key_->*part.field;
    if (!content_.complete() || !value.ReadBase64(content_.c_str())) {
        log_.logError(part.invalid);
        return false;
    }
    if (verbose_ && part.bitCountTag != nullptr) {
        log_.logDataLong(part.bitCountTag, value.CountBits());
    }
    return true;
}

} // namespace

bool ReadKey(const char *xml, RsaKey *key, bool verbose, LogBase &log)
{
    KeyReader reader(xml, key, verbose, log);
    key->type = KeyType::kPrivate;
    if (!reader.Read(kModulus)) {
        return false;
    }
    if (verbose) {
        log.logData("N", reader.content().c_str());
    }
    bool isPrivate = false;
    if (!reader.Read(kExponent) || !reader.Read(kP, &isPrivate)) {
        return false;
    }
    if (!isPrivate) {
        key->type = KeyType::kPublic;
        return true;
    }
    for (const KeyPart &part : kPrivateParts) {
        if (!reader.Read(part)) {
            return false;
        }
    }
    return true;
}

} // namespace pavonix
