// The digests available to the padding code, by identifier.
#pragma once

#include <cstdint>
#include <span>

namespace pavonix {

enum class HashId : std::int32_t {
    kSha1 = 1,
    kSha384 = 2,
    kSha512 = 3,
    kMd2 = 4,
    kMd5 = 5,
    kSha256 = 7,
};

constexpr std::uint32_t kLongestDigest = 64;

struct HashRow {
    HashId id;
    const char *name;         // as the log shows it
    std::uint32_t digestSize; // in bytes
    void (*compute)(std::span<const std::uint8_t> bytes, std::uint8_t *digest);
};

// Any other number returns the row "Unknown", whose digest size is 16 although it
// computes SHA-1: callers then see the first 16 bytes.
const HashRow &FindHash(HashId id);

// Writes the digest of the bytes. `digest` has kLongestDigest bytes of room, since the
// row "Unknown" writes more than its digest size.
inline void ComputeDigest(HashId id, std::span<const std::uint8_t> bytes, std::uint8_t *digest)
{
    FindHash(id).compute(bytes, digest);
}

} // namespace pavonix
