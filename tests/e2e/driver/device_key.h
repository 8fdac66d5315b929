// The device's key pair, and the server's view of a token.
#pragma once

#include "support/openssl_key.h"

namespace pavonix::e2e {

class DeviceKey : public test::OpenSslKey {
public:
    using OpenSslKey::OpenSslKey;
};

// Expects that the token decrypts to the local time as the device writes it, a few
// seconds ago at most.
void ExpectFreshToken(const DeviceKey &key, const std::string &token);

} // namespace pavonix::e2e
