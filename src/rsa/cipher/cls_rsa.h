// The RSA component.
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
// holds the component's lock from entry to return. The imports and the encryption
// start the log anew, so that it describes the last of them. The component is its
// own encoder.
class ClsRsa : public ClsEncode, public ClsBase, public ZentorpCritSec {
public:
    ClsRsa();

    void put_OAEP(bool oaep); // true: OAEP padding, false: PKCS #1 v1.5
    // Stored without blanks and in lower case; an unknown name means base64.
    void put_EncodingMode(const XString &name);

    // Part of the component's surface; the shop never calls these.
    void get_EncodingMode(XString *name);
    void put_VerboseLogging(bool verbose);
    // False swaps the bytes of each 32-bit word of the ciphertext.
    void put_LittleEndian(bool littleEndian);
    // A Windows code-page number; one without a name changes nothing.
    void put_CharsetCodePage(std::int32_t codePage);

    // Read an XML key text into the component's key. They differ in their name in
    // the log alone: what the text holds decides whether the key is private.
    bool ImportPublicKey(const XString &xml) { return ImportKey("ImportPublicKey", xml); }
    bool ImportPrivateKey(const XString &xml) { return ImportKey("ImportPrivateKey", xml); }

    // Encrypts the text, taken as bytes of the charset, and stores the ciphertext
    // in the encoding of EncodingMode. On failure `result` is empty.
    bool EncryptStringENC(const XString &text, bool usePrivateKey, XString *result);

private:
    bool ImportKey(const char *method, const XString &xml);
    bool EncryptBytes(const DataBuffer &bytes, bool usePrivateKey, XString *result, LogBase &methodLog);

    bool verboseLogging_ = false;
    bool oaep_ = false;
    [[maybe_unused]] bool reserved1_ = false; // the reserved flags keep the component's layout
    bool littleEndian_ = true;
    [[maybe_unused]] bool reserved2_ = false;
    RsaKey key_;
    XString encodingMode_;
    Charset charset_;
};

} // namespace pavonix
