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
// put_Utf8(true) was called; a null text counts as empty. The operations answer
// true for success, and the last-error text says what happened. Without memory
// for the component at its birth every operation fails.
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

    // Part of the component's surface; the shop leaves these as they are.
    void put_Utf8(bool utf8) { utf8_ = utf8; }
    void put_VerboseLogging(bool verbose);
    // False swaps the bytes of each 32-bit word of the ciphertext; true by default.
    void put_LittleEndian(bool littleEndian);
    // The Windows code page in which texts are encrypted, 1252 by default.
    void put_CharsetCodePage(std::int32_t codePage);

    // Read an XML key text into the one key of the component; what the text does
    // not name keeps what an earlier import wrote.
    bool ImportPublicKey(const char *xml);
    bool ImportPrivateKey(const char *xml);

    // Replaces `result` by the encoded ciphertext; on failure it is empty.
    bool EncryptStringENC(const char *text, bool usePrivateKey, ZtString *result);

    // What the last import or encryption logged, as plain text; replaces `text`, which
    // is incomplete when lines of it found no memory.
    void get_LastErrorText(ZtString *text);

private:
    void SetText(const char *text, XString *target) const;

    std::unique_ptr<ClsRsa> impl_;
    bool utf8_ = false;
};

} // namespace pavonix
