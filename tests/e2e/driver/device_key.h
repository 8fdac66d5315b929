// The device's key pair, and the server's check of a token.
#pragma once

#include "support/openssl_key.h"

namespace pavonix::e2e {

struct DeviceKey : test::OpenSslKey {
    using OpenSslKey::OpenSslKey;
};

// Expects that the token decrypts to the local time in the device's format, at most a few
// seconds ago.
void ExpectFreshToken(const DeviceKey &key, const std::string &token);

} // namespace pavonix::e2e
