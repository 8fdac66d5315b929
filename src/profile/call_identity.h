// The device's identity for one call, and the token that proves it.
#pragma once

#include "platform/wide_char.h"
#include "rsa/text/fixed_text.h"
#include "rsa/text/zt_string.h"

namespace pavonix {

// Reads the profile into the process-wide one and sets up the process-wide RSA
// component with its keys. Destruction clears the profile's texts; the keys stay in the
// component.
class CallIdentity {
public:
    // Reports no error. Without a profile the texts are empty and the id is 0. If a key
    // cannot be imported, the token is empty, or made with the key that an earlier call
    // of the process imported.
    explicit CallIdentity(const WideChar *profilePath);
    ~CallIdentity();
    CallIdentity(const CallIdentity &) = delete;
    CallIdentity &operator=(const CallIdentity &) = delete;

    const ZtString &UserAgent() const;
    const ZtString &UserSerial() const;
    FixedText<16> UserId() const;
    // The device's local time, encrypted with its private key, in base64. Empty on
    // failure.
    ZtString UserCert() const;
};

} // namespace pavonix
