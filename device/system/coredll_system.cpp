// coredll.dll: clock, locks, random bytes, the thread error.
#include "device_options.h"
#include "system/coredll.h"
#include "system/open_handles.h"
#include "platform/clock.h"
#include "platform/critical_section.h"
#include "platform/random.h"

#include <chrono>
#include <memory>
#include <string_view>

namespace pavonix::device {

namespace {

struct SystemTime {
    std::uint16_t year, month, dayOfWeek, day, hour, minute, second, milliseconds;
};
static_assert(sizeof(SystemTime) == 16);

void GetLocalTime(SystemTime *time)
{
    platform::LocalTime now = {};
    platform::ReadLocalTime(&now);
    namespace chrono = std::chrono;
    const chrono::year_month_day date{chrono::year(now.year), chrono::month(static_cast<unsigned>(now.month)),
                                      chrono::day(static_cast<unsigned>(now.day))};
    const unsigned dayOfWeek = chrono::weekday(chrono::sys_days(date)).c_encoding();
    const auto narrow = [](auto value) { return static_cast<std::uint16_t>(value); };
    *time = {narrow(now.year), narrow(now.month),  narrow(dayOfWeek),  narrow(now.day),
             narrow(now.hour), narrow(now.minute), narrow(now.second), 0};
}

// The device's lock object has 20 bytes; the lock itself is kept beside it.
struct CriticalSection {
    std::int32_t lockCount;
    std::uint32_t owner;
    platform::CriticalSection *lock;
    std::uint32_t needsTrap, contentions;
};
static_assert(sizeof(CriticalSection) == 20);

platform::CriticalSection *LockOf(CriticalSection *section)
{
    if (!openHandles.sections.Has(section)) {
        Fatal("a critical section that is not initialised");
    }
    return section->lock;
}

void InitializeCriticalSection(CriticalSection *section)
{
    if (openHandles.sections.Has(section)) {
        Fatal("a critical section initialised twice");
    }
    openHandles.sections.Add(section);
    *section = {0, 0, new platform::CriticalSection, 0, 0};
    platform::InitCriticalSection(section->lock);
}

void EnterCriticalSection(CriticalSection *section)
{
    platform::EnterSection(LockOf(section));
    ++section->lockCount;
}

void LeaveCriticalSection(CriticalSection *section)
{
    if (--section->lockCount < 0) {
        Fatal("a critical section left more often than entered");
    }
    platform::LeaveSection(LockOf(section));
}

void DeleteCriticalSection(CriticalSection *section)
{
    platform::FreeCriticalSection(LockOf(section));
    if (section->lockCount != 0) {
        Fatal("a critical section is deleted while it is owned");
    }
    delete section->lock;
    openHandles.sections.Remove(section);
}

// Without a container no key is kept, and the caller must pass the flag for that.
constexpr std::uint32_t kVerifyContext = 0xF0000000;
constexpr std::uint32_t kKnownFlags = kVerifyContext | 0x78; // new, delete, machine's, silent
constexpr std::uint32_t kFullRsa = 1;
constexpr char16_t kBaseProvider[] = u"Microsoft Base Cryptographic Provider v1.0";
constexpr char16_t kEnhancedProvider[] = u"Microsoft Enhanced Cryptographic Provider v1.0";

// The reason for refusing such a provider; 0 if it exists.
std::uint32_t ReasonAgainst(std::u16string_view name, std::uint32_t type, std::uint32_t flags)
{
    if ((flags & ~kKnownFlags) != 0) {
        return kErrorBadFlags;
    }
    if (type != kFullRsa) {
        return kErrorBadProviderType;
    }
    if ((name != kBaseProvider && name != kEnhancedProvider) || deviceOptions.missing.count("provider") != 0) {
        return kErrorNoSuchProvider;
    }
    return (flags & kVerifyContext) == kVerifyContext ? 0 : kErrorBadKeySet;
}

// The handle that the library sees is the address of the platform's own.
int CryptAcquireContext(platform::Provider **handle, const WideChar *container, const WideChar *name,
                        std::uint32_t type, std::uint32_t flags)
{
    if (container != nullptr) {
        return FailWith(kErrorInvalidParameter, 0); // keys are never kept
    }
    const std::u16string_view wanted = name == nullptr ? kBaseProvider : name;
    if (const std::uint32_t reason = ReasonAgainst(wanted, type, flags); reason != 0) {
        return FailWith(reason, 0);
    }
    auto provider = std::make_unique<platform::Provider>();
    if (!platform::AcquireProvider(provider.get(), name, type, flags)) {
        return FailWith(kErrorBadKeySet, 0);
    }
    *handle = provider.release();
    openHandles.providers.Add(*handle);
    return 1;
}

int CryptGenRandom(const platform::Provider *handle, std::uint32_t length, std::uint8_t *bytes)
{
    return openHandles.providers.Has(handle) ? platform::GenerateRandom(*handle, bytes, length)
                                             : FailWith(kErrorInvalidParameter, 0);
}

int CryptReleaseContext(platform::Provider *handle, std::uint32_t flags)
{
    if (flags != 0) {
        return FailWith(kErrorBadFlags, 0);
    }
    if (!openHandles.providers.Remove(handle)) {
        return FailWith(kErrorInvalidParameter, 0);
    }
    platform::ReleaseProvider(*handle);
    delete handle;
    return 1;
}

void Srand(std::uint32_t seed)
{
    platform::SeedRand(seed);
}
int Rand()
{
    return platform::NextRand() & 0x7FFF;
} // 15 bits on the device

std::uint32_t GetLastError()
{
    return lastError;
}

void SetLastError(std::uint32_t error)
{
    lastError = error;
}

} // namespace

void AddSystemImports(std::vector<Import> &table)
{
    table.push_back(Unfailing<&GetLocalTime>(kCoreDll, "GetLocalTime"));
    table.push_back(Unfailing<&platform::ReadTickCount>(kCoreDll, "GetTickCount"));
    table.push_back(Unfailing<&InitializeCriticalSection>(kCoreDll, "InitializeCriticalSection"));
    table.push_back(Unfailing<&EnterCriticalSection>(kCoreDll, "EnterCriticalSection"));
    table.push_back(Unfailing<&LeaveCriticalSection>(kCoreDll, "LeaveCriticalSection"));
    table.push_back(Unfailing<&DeleteCriticalSection>(kCoreDll, "DeleteCriticalSection"));
    table.push_back(Failing<&CryptAcquireContext, 0>(kCoreDll, "CryptAcquireContextW"));
    table.push_back(Failing<&CryptGenRandom, 0>(kCoreDll, "CryptGenRandom"));
    table.push_back(Unfailing<&CryptReleaseContext>(kCoreDll, "CryptReleaseContext"));
    table.push_back(Unfailing<&Srand>(kCoreDll, "srand"));
    table.push_back(Unfailing<&Rand>(kCoreDll, "rand"));
    table.push_back(Unfailing<&GetLastError>(kCoreDll, "GetLastError"));
    table.push_back(Unfailing<&SetLastError>(kCoreDll, "SetLastError"));
}

} // namespace pavonix::device
