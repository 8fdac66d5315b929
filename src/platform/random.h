// Part of a port: random bytes from the system's cryptographic provider, and the C
// library's rand.
#pragma once

#include "platform/wide_char.h"

#include <cstdint>

namespace pavonix::platform {

using Provider = std::uintptr_t;

extern "C" {

// CryptAcquireContextW without a key container. A system with another source of random
// bytes ignores name, type and flags.
[[nodiscard]] bool AcquireProvider(Provider *provider, const WideChar *name, std::uint32_t type, std::uint32_t flags);
// CryptGenRandom: all `length` bytes, or false.
[[nodiscard]] bool GenerateRandom(Provider provider, std::uint8_t *bytes, std::uint32_t length);
// CryptReleaseContext.
void ReleaseProvider(Provider provider);

// srand and rand; every result has at least 15 random bits.
void SeedRand(std::uint32_t seed);
int NextRand();

} // extern "C"

} // namespace pavonix::platform
