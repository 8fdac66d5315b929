// The device's key pair, made by OpenSSL, and the server's view of a token.
#pragma once

#include <memory>
#include <optional>
#include <string>

struct rsa_st; // OpenSSL's RSA

namespace pavonix::e2e {

class DeviceKey {
public:
    // Makes a new key pair.
    explicit DeviceKey(int bits);

    // The key texts of the profile, each one line.
    std::string PublicXml() const;
    std::string PrivateXml() const;

    // Undoes base64, the private operation and the padding of each block.
    // Nullopt when one of them does not fit.
    std::optional<std::string> Open(const std::string &token) const;

private:
    std::unique_ptr<rsa_st, void (*)(rsa_st *)> key_;
};

// Expects that the token opens to the local time as the device writes it, a few
// seconds ago at most.
void ExpectFreshToken(const DeviceKey &key, const std::string &token);

} // namespace pavonix::e2e
