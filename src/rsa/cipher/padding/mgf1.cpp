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

bool Mgf1(MgfSite site, HashId hash, ByteSpan seed, std::uint32_t maskLength, DataBuffer *mask, LogBase &log)
{
    if (seed.empty() || maskLength == 0) {
        log.logError("NULL input param in Mask Generation Function");
        log.logDataLong("MgfError", static_cast<std::int32_t>(site));
        return false;
    }
    const auto seedLength = static_cast<std::uint32_t>(seed.size());
    const std::unique_ptr<std::uint8_t[]> work(AllocateArray<std::uint8_t>(seed.size() + kCounterRoom));
    if (work == nullptr) {
        log.logError("Memory error");
        log.logSize("SeedLen", seedLength);
        return false;
    }
    std::memcpy(work.get(), seed.data(), seed.size());
    const std::uint32_t digestSize = FindHash(hash).digestSize;
    std::uint32_t wanted = maskLength;
    for (std::uint32_t counter = 0; wanted > 0; ++counter) {
        std::uint8_t digest[kLongestDigest];
        StoreBigEndian(counter, work.get() + seedLength);
        ComputeDigest(hash, {work.get(), seedLength + kCounterSize}, digest);
        const std::uint32_t count = std::min(digestSize, wanted);
        if (!mask->Append(digest, count)) {
            return false;
        }
        wanted -= count;
    }
    return true;
}

} // namespace pavonix
