#include "rsa/digest/hash_table.h"

#include "rsa/digest/md2.h"
#include "rsa/digest/md5.h"
#include "rsa/digest/sha1.h"
#include "rsa/digest/sha2.h"

namespace pavonix {

namespace {

template <typename Digest>
void Compute(const void *bytes, std::uint32_t length, std::uint8_t *digest)
{
    Digest hashing;
    hashing.Update(bytes, length);
    hashing.Finish(digest);
}

constexpr HashRow kRows[] = {
    {kSha1HashId, "SHA-1", Sha1::kDigestSize, Compute<Sha1>},
    {2, "SHA-384", Sha384::kDigestSize, Compute<Sha384>},
    {3, "SHA-512", Sha512::kDigestSize, Compute<Sha512>},
    {4, "MD2", Md2::kDigestSize, Compute<Md2>},
    {5, "MD5", Md5::kDigestSize, Compute<Md5>},
    {7, "SHA-256", Sha256::kDigestSize, Compute<Sha256>},
};

constexpr HashRow kUnknown = {0, "Unknown", 16, Compute<Sha1>};

} // namespace

const HashRow &FindHash(std::int32_t hashId)
{
    for (const HashRow &row : kRows) {
        if (row.id == hashId) {
            return row;
        }
    }
    return kUnknown;
}

} // namespace pavonix
