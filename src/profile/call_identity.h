// What a request carries to tell and to prove who the device is.
#pragma once

#include "platform/wide_char.h"
#include "rsa/text/fixed_text.h"
#include "rsa/text/zt_string.h"

namespace pavonix {

// The device's identity for the length of one call: reads the profile into the
// process-wide one and sets the process-wide RSA component up with its keys. The
// profile's texts are cleared again at the end; the keys stay in the component.
class CallIdentity {
public:
    // Nothing is reported: without a profile the texts are empty and the id is 0; a
    // key that does not import leaves the token empty, or made with what an earlier
    // call of the process has imported.
    explicit CallIdentity(const WideChar *profilePath);
    ~CallIdentity();
    CallIdentity(const CallIdentity &) = delete;
    CallIdentity &operator=(const CallIdentity &) = delete;

    const ZtString &UserAgent() const;
    const ZtString &UserSerial() const;
    FixedText<16> UserId() const;
    // The device's local time, encrypted with its private key, in base64. Empty when
    // that fails.
    ZtString UserCert() const;
};

} // namespace pavonix
