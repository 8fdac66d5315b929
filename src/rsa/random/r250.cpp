#include "rsa/random/r250.h"

#include "platform/clock.h"
#include "platform/random.h"

#include <bit>

namespace pavonix {

static_assert(std::endian::native == std::endian::little, "words go out least significant byte first");

namespace {

constexpr WideChar kProviderName[] = {'M', 'i', 'c', 'r', 'o', 's', 'o', 'f', 't', ' ', 'B', 'a', 's', 'e', ' ',
                                      'C', 'r', 'y', 'p', 't', 'o', 'g', 'r', 'a', 'p', 'h', 'i', 'c', ' ', 'P',
                                      'r', 'o', 'v', 'i', 'd', 'e', 'r', ' ', 'v', '1', '.', '0', 0};
constexpr std::uint32_t kFullRsaProvider = 1;

// "Verify only" alone, then with a new key set, a machine key set, and both.
constexpr std::uint32_t kAcquireFlags[] = {0xF0000000, 0xF0000008, 0xF0000020, 0xF0000028};

bool AcquireAnyProvider(platform::Provider *provider)
{
    for (const std::uint32_t flags : kAcquireFlags) {
        if (platform::AcquireProvider(provider, kProviderName, kFullRsaProvider, flags)) {
            return true;
        }
    }
    return false;
}

bool HasZeroByte(std::uint32_t word)
{
    return (word & 0xFF) == 0 || (word & 0xFF00) == 0 || (word & 0xFF0000) == 0 || (word & 0xFF000000) == 0;
}

// In .bss: seeding gives every member its value.
constinit R250 sharedR250;

} // namespace

R250 &SharedR250()
{
    return sharedR250;
}

ZentorpRand::ZentorpRand()
{
    if (!sharedR250.seeded()) {
        platform::SeedRand(platform::ReadTickCount());
        sharedR250.Seed();
    }
}

void R250::Seed()
{
    seeded_ = true;
    j_ = 0;
    k_ = kLag;
    if (!FillFromProvider()) {
        FillFromRand();
    }
    MakeIndependent();
}

bool R250::FillFromProvider()
{
    platform::Provider provider = 0;
    if (!AcquireAnyProvider(&provider)) {
        return false;
    }
    const bool filled = platform::GenerateRandom(provider, reinterpret_cast<std::uint8_t *>(words_), sizeof words_);
    platform::ReleaseProvider(provider);
    return filled;
}

// Each word is made for the 15-bit rand of Windows: bits 2 to 16, bits 17 to 31, and
// bits 0 and 1. The wider results of other systems are used as they are.
void R250::FillFromRand()
{
    platform::SeedRand(platform::ReadTickCount());
    for (unsigned i = kWords; i-- > 0;) {
        const std::uint32_t first = static_cast<std::uint32_t>(platform::NextRand());
        const std::uint32_t second = static_cast<std::uint32_t>(platform::NextRand());
        const std::uint32_t third = static_cast<std::uint32_t>(platform::NextRand());
        words_[i] = (first | second << 15) << 2 | (third & 3);
    }
}

// The bits at one position of all words form a register of their own. A staircase of
// ones with zeros above it makes the 32 registers linearly independent and nonzero, so
// that no bit is stuck or repeats another.
void R250::MakeIndependent()
{
    for (unsigned i = 0; i < 32; ++i) {
        std::uint32_t &word = words_[3 + 7 * i];
        word = (word & 0xFFFFFFFFu >> i) | 0x80000000u >> i;
    }
}

std::uint32_t R250::Step()
{
    const std::uint32_t word = words_[j_] ^= words_[k_];
    j_ = static_cast<std::uint8_t>(j_ + 1 == kWords ? 0 : j_ + 1);
    k_ = static_cast<std::uint8_t>(k_ + 1 == kWords ? 0 : k_ + 1);
    return word;
}

// Surplus bytes of the last word are dropped, not kept for the next request.
bool R250::AppendWords(std::uint32_t count, bool allowZero, DataBuffer *output)
{
    if (!seeded_) {
        Seed();
    }
    if (count == 0) {
        return true;
    }
    if (count > UINT32_MAX - output->length()) {
        output->Clear();
        return false;
    }
    // The exact size: a plain append would reserve thousands of bytes.
    if (!output->EnsureCapacity(output->length() + count)) {
        return false;
    }
    while (count > 0) {
        const std::uint32_t word = Step();
        if (allowZero || !HasZeroByte(word)) {
            const std::uint32_t taken = count < sizeof word ? count : sizeof word;
            (void)output->Append(&word, taken); // there is room
            count -= taken;
        }
    }
    return true;
}

bool R250::AppendBytes(std::uint32_t count, DataBuffer *output)
{
    return AppendWords(count, true, output);
}

bool R250::AppendNonZeroBytes(std::uint32_t count, DataBuffer *output)
{
    return AppendWords(count, false, output);
}

} // namespace pavonix
