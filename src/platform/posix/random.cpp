// The random contract over POSIX: the kernel's source in place of a provider.
#include "platform/random.h"

#include <cerrno>
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
    std::uint32_t filled = 0;
    while (filled < length) {
        const ssize_t count = getrandom(bytes + filled, length - filled, 0);
        if (count < 0 && errno != EINTR) {
            return false;
        }
        filled += count > 0 ? static_cast<std::uint32_t>(count) : 0;
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
