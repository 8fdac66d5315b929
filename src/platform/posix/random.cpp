// The random contract over POSIX: the kernel's source in place of a provider.
#include "platform/random.h"

#include <algorithm>
#include <cstdlib>
#include <sys/random.h>

namespace pavonix::platform {

bool AcquireProvider(Provider *provider, const WideChar *, std::uint32_t, std::uint32_t)
{
    *provider = 1;
    return true;
}

bool GenerateRandom(Provider, std::uint8_t *bytes, std::uint32_t length)
{
    constexpr std::uint32_t kMost = 256; // no signal interrupts a request of up to this size
    for (std::uint32_t filled = 0; filled < length; filled += kMost) {
        if (getentropy(bytes + filled, std::min(length - filled, kMost)) != 0) {
            return false;
        }
    }
    return true;
}

void ReleaseProvider(Provider) {}

void SeedRand(std::uint32_t seed)
{
    std::srand(seed);
}

int NextRand()
{
    return std::rand();
}

} // namespace pavonix::platform
