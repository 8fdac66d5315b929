// The random contract over the Windows cryptographic providers and C library.
#include "platform/random.h"

#include "platform/windows/system.h"

#include <cstdlib>

namespace pavonix::platform {

static_assert(sizeof(HCRYPTPROV) == sizeof(Provider));

bool AcquireProvider(Provider *provider, const WideChar *name, std::uint32_t type, std::uint32_t flags)
{
    const auto acquire = PAVONIX_CRYPT_FUNCTION(CryptAcquireContextW);
    HCRYPTPROV acquired = 0;
    if (acquire == nullptr || !acquire(&acquired, nullptr, name, type, flags)) {
        return false;
    }
    *provider = acquired;
    return true;
}

bool GenerateRandom(Provider provider, std::uint8_t *bytes, std::uint32_t length)
{
    const auto generate = PAVONIX_CRYPT_FUNCTION(CryptGenRandom);
    return generate != nullptr && generate(provider, length, bytes);
}

void ReleaseProvider(Provider provider)
{
    if (const auto release = PAVONIX_CRYPT_FUNCTION(CryptReleaseContext); release != nullptr) {
        release(provider, 0);
    }
}

void SeedRand(std::uint32_t seed)
{
    std::srand(seed);
}

int NextRand()
{
    return std::rand();
}

} // namespace pavonix::platform
