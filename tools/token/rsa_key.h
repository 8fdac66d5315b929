// The cryptography that opening a token needs: openssl/ for Linux, windows/ for Windows.
#pragma once

#include "token/base64.h"

#include <array>
#include <memory>
#include <span>

namespace token {

// A public key. Immutable, so threads can share it.
struct RsaKey;
using PublicKey = std::shared_ptr<const RsaKey>;
using ByteSpan = std::span<const unsigned char>;

// Both throw std::runtime_error for anything but an RSA public key.
[[nodiscard]] PublicKey MakePublicKey(ByteSpan modulus, ByteSpan exponent);
[[nodiscard]] PublicKey ReadPem(const std::string &text); // "BEGIN PUBLIC KEY"

[[nodiscard]] std::string PublicKeyToPem(const PublicKey &key);
[[nodiscard]] int ModulusBits(const PublicKey &key);
[[nodiscard]] Bytes ModulusOf(const PublicKey &key);

// Returns the number raised to the public exponent, as long as the modulus; empty if it is not below the modulus.
[[nodiscard]] Bytes RaiseToExponent(ByteSpan number, const PublicKey &key);

using Sha1Digest = std::array<unsigned char, 20>;
[[nodiscard]] Sha1Digest Sha1(ByteSpan bytes);

} // namespace token
