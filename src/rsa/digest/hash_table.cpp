#include "rsa/digest/hash_table.h"

#include "rsa/digest/md2.h"
#include "rsa/digest/md5.h"
#include "rsa/digest/sha1.h"
#include "rsa/digest/sha2.h"

namespace pavonix {

namespace {

template <typename Digest>
void Compute(std::span<const std::uint8_t> bytes, std::uint8_t *digest)
{
    Digest hashing;
    hashing.Update(bytes.data(), static_cast<std::uint32_t>(bytes.size()));
    hashing.Finish(digest);
}

constexpr HashRow kRows[] = {
    {HashId::kSha1, "SHA-1", Sha1::kDigestSize, Compute<Sha1>},
    {HashId::kSha384, "SHA-384", Sha384::kDigestSize, Compute<Sha384>},
    {HashId::kSha512, "SHA-512", Sha512::kDigestSize, Compute<Sha512>},
    {HashId::kMd2, "MD2", Md2::kDigestSize, Compute<Md2>},
    {HashId::kMd5, "MD5", Md5::kDigestSize, Compute<Md5>},
    {HashId::kSha256, "SHA-256", Sha256::kDigestSize, Compute<Sha256>},
};

constexpr HashRow kUnknown = {HashId{0}, "Unknown", 16, Compute<Sha1>};

} // namespace

const HashRow &FindHash(HashId id)
{
    for (const HashRow &row : kRows) {
        if (row.id == id) {
            return row;
        }
    }
    return kUnknown;
}

} // namespace pavonix
