// The facade of the RSA component.
#pragma once

#include "rsa/text/objects.h"
#include "rsa/text/zt_string.h"

#include <cstdint>
#include <memory>

namespace pavonix {

class ClsRsa;
class XString;

// Texts are zero-terminated, in the system's ANSI code page unless
// put_Utf8(true) was called; a null text counts as empty. The operations return
// true on success, and the last-error text says what happened. If memory ran out in the
// constructor, every operation fails.
class ZtRsa : public ZtObject {
public:
    ZtRsa();
    ~ZtRsa() override;
    ZtRsa(const ZtRsa &) = delete;
    ZtRsa &operator=(const ZtRsa &) = delete;

    void put_OAEP(bool oaep); // true: OAEP padding, false (the default): PKCS #1 v1.5
    // The encoding of results, "base64" by default and for unknown names.
    void put_EncodingMode(const char *name);
    // Replaces `name` by the name set last, in lower case without spaces.
    void get_EncodingMode(ZtString *name);

    // Not used by the three calls, which keep the defaults.
    void put_Utf8(bool utf8) { utf8_ = utf8; }
    void put_VerboseLogging(bool verbose);
    // False swaps the bytes of each 32-bit word of the ciphertext; true by default.
    void put_LittleEndian(bool littleEndian);
    // The Windows code page in which texts are encrypted, 1252 by default.
    void put_CharsetCodePage(std::int32_t codePage);

    // Read an XML key text into the component's key. Fields absent from the XML keep
    // their previous values.
    [[nodiscard]] bool ImportPublicKey(const char *xml);
    [[nodiscard]] bool ImportPrivateKey(const char *xml);

    // Replaces `result` by the ciphertext in the encoding above (ENC: encoded); on failure
    // it is empty.
    [[nodiscard]] bool EncryptStringENC(const char *text, bool usePrivateKey, ZtString *result);

    // Replaces `text` by the log of the last import or encryption, as plain text;
    // incomplete if memory ran out.
    void get_LastErrorText(ZtString *text);

private:
    void SetText(const char *text, XString *target) const;

    std::unique_ptr<ClsRsa> impl_;
    bool utf8_ = false;
};

} // namespace pavonix
