#include "rsa/cipher/padding/mgf1.h"

#include "rsa/digest/hash_table.h"
#include "rsa/digest/word_bytes.h"
#include "rsa/text/allocate.h"

#include <algorithm>
#include <cstring>
#include <memory>

namespace pavonix {

namespace {

constexpr std::uint32_t kCounterRoom = 32;
constexpr std::uint32_t kCounterSize = 4;

} // namespace

bool Mgf1(std::int32_t callSite, std::int32_t hashId, const std::uint8_t *seed, std::uint32_t seedLength,
          std::uint32_t maskLength, DataBuffer *mask, LogBase &log)
{
    if (seed == nullptr || seedLength == 0 || maskLength == 0) {
        log.logError("NULL input param in Mask Generation Function");
        log.logDataLong("MgfError", callSite);
        return false;
    }
    const std::unique_ptr<std::uint8_t[]> work(AllocateArray<std::uint8_t>(std::size_t{seedLength} + kCounterRoom));
    if (work == nullptr) {
        log.logError("Memory error");
        log.logSize("SeedLen", seedLength);
        return false;
    }
    std::memcpy(work.get(), seed, seedLength);
    const std::uint32_t digestSize = FindHash(hashId).digestSize;
    std::uint32_t wanted = maskLength;
    for (std::uint32_t counter = 0; wanted > 0; ++counter) {
        std::uint8_t digest[kLongestDigest];
        StoreBigEndian(counter, work.get() + seedLength);
        ComputeDigest(hashId, work.get(), seedLength + kCounterSize, digest);
        const std::uint32_t count = std::min(digestSize, wanted);
        if (!mask->Append(digest, count)) {
            return false;
        }
        wanted -= count;
    }
    return true;
}

} // namespace pavonix
