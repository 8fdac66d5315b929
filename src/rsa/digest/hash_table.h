// The digests that the padding code can be asked for, by their identifiers.
#pragma once

#include <cstdint>

namespace pavonix {

constexpr std::int32_t kSha1HashId = 1;
constexpr std::uint32_t kLongestDigest = 64;

struct HashRow {
    std::int32_t id;
    const char *name;         // as the log shows it
    std::uint32_t digestSize; // in bytes
    void (*compute)(const void *bytes, std::uint32_t length, std::uint8_t *digest);
};

// Identifiers: 1 SHA-1, 2 SHA-384, 3 SHA-512, 4 MD2, 5 MD5, 7 SHA-256. Any other
// one answers the row "Unknown", whose digest size is 16 although it computes
// SHA-1: callers then see the first 16 bytes.
const HashRow &FindHash(std::int32_t hashId);

// Writes the digest of `length` bytes. `digest` has kLongestDigest bytes of room,
// since the row "Unknown" writes more than its digest size.
inline void ComputeDigest(std::int32_t hashId, const void *bytes, std::uint32_t length, std::uint8_t *digest)
{
    FindHash(hashId).compute(bytes, length, digest);
}

} // namespace pavonix
