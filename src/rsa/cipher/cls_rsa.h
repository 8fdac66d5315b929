// The RSA component that the facade ZtRsa uses: a class with properties (put_, get_) and
// operations that log what they did.
#pragma once

#include "rsa/charset/charset.h"
#include "rsa/encoding/cls_encode.h"
#include "rsa/key/rsa_key.h"
#include "rsa/log/cls_base.h"
#include "rsa/log/zentorp_crit_sec.h"
#include "rsa/text/x_string.h"

#include <cstdint>

namespace pavonix {

// Holds one key, which the imports write and encryption reads. Each operation
// holds the component's lock from entry to return. The imports and the encryption clear
// the log first, so that it describes the last of them. The component is its own
// encoder.
class ClsRsa : public ClsEncode, public ClsBase, public ZentorpCritSec {
public:
    ClsRsa();

    void put_OAEP(bool oaep); // true: OAEP padding, false: PKCS #1 v1.5
    // Stored without spaces and in lower case; an unknown name means base64.
    void put_EncodingMode(const XString &name);

    // Not used by the three calls.
    void get_EncodingMode(XString *name);
    void put_VerboseLogging(bool verbose);
    // False swaps the bytes of each 32-bit word of the ciphertext.
    void put_LittleEndian(bool littleEndian);
    // A Windows code-page number; one without a name changes nothing.
    void put_CharsetCodePage(std::int32_t codePage);

    // Read an XML key text into the component's key. They differ only in their name in
    // the log: the text decides whether the key is private.
    [[nodiscard]] bool ImportPublicKey(const XString &xml) { return ImportKey("ImportPublicKey", xml); }
    [[nodiscard]] bool ImportPrivateKey(const XString &xml) { return ImportKey("ImportPrivateKey", xml); }

    // Encrypts the text, taken as bytes of the charset, and stores the ciphertext
    // in the encoding of EncodingMode (ENC: encoded). On failure `result` is empty.
    [[nodiscard]] bool EncryptStringENC(const XString &text, bool usePrivateKey, XString *result);

private:
    bool ImportKey(const char *method, const XString &xml);
    bool EncryptBytes(const DataBuffer &bytes, bool usePrivateKey, XString *result, LogBase &methodLog);

    bool verboseLogging_ = false;
    bool oaep_ = false;
    [[maybe_unused]] bool reserved1_ = false; // the reserved flags are unused; the component's data layout has them
    bool littleEndian_ = true;
    [[maybe_unused]] bool reserved2_ = false;
    RsaKey key_;
    XString encodingMode_;
    Charset charset_;
};

} // namespace pavonix
