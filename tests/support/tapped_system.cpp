// The tap on the rest of the platform: text, time, locks, random bytes.
#include "platform/clock.h"
#include "platform/code_pages.h"
#include "platform/critical_section.h"
#include "platform/random.h"
#include "support/tap.h"

#include <algorithm>
#include <cstdio>

using namespace pavonix;
using pavonix::tap::Enter;
using pavonix::tap::TheState;

namespace {

std::string Narrow(const WideChar *text)
{
    std::string narrow;
    for (; *text != 0; ++text) {
        narrow += static_cast<char>(*text);
    }
    return narrow;
}

} // namespace

extern "C" {

int __real_WideToBytes(std::uint32_t codePage, const WideChar *text, int length, char *bytes, int room, bool *lossy);
int __real_BytesToWide(std::uint32_t codePage, const char *bytes, int length, WideChar *text, int room);
void __real_ReadLocalTime(platform::LocalTime *time);
std::uint32_t __real_ReadTickCount();
void __real_InitCriticalSection(platform::CriticalSection *section);
void __real_FreeCriticalSection(platform::CriticalSection *section);
bool __real_AcquireProvider(platform::Provider *provider, const WideChar *name, std::uint32_t type,
                            std::uint32_t flags);
bool __real_GenerateRandom(platform::Provider provider, std::uint8_t *bytes, std::uint32_t length);
void __real_ReleaseProvider(platform::Provider provider);

int __wrap_WideToBytes(std::uint32_t codePage, const WideChar *text, int length, char *bytes, int room, bool *lossy)
{
    return Enter("WideToBytes", std::to_string(codePage))
               ? 0
               : __real_WideToBytes(codePage, text, length, bytes, room, lossy);
}

int __wrap_BytesToWide(std::uint32_t codePage, const char *bytes, int length, WideChar *text, int room)
{
    return Enter("BytesToWide", std::to_string(codePage)) ? 0 : __real_BytesToWide(codePage, bytes, length, text, room);
}

void __wrap_ReadLocalTime(platform::LocalTime *time)
{
    Enter("ReadLocalTime"); // it cannot fail
    if (const auto &clock = TheState().clock; clock) {
        *time = clock->time;
    } else {
        __real_ReadLocalTime(time);
    }
}

std::uint32_t __wrap_ReadTickCount()
{
    const auto &clock = TheState().clock;
    return clock ? clock->ticks : __real_ReadTickCount();
}

void __wrap_InitCriticalSection(platform::CriticalSection *section)
{
    ++TheState().held.sections;
    __real_InitCriticalSection(section);
}

void __wrap_FreeCriticalSection(platform::CriticalSection *section)
{
    --TheState().held.sections;
    __real_FreeCriticalSection(section);
}

bool __wrap_AcquireProvider(platform::Provider *provider, const WideChar *name, std::uint32_t type, std::uint32_t flags)
{
    char detail[80];
    std::snprintf(detail, sizeof detail, "%s,%u,%08x", Narrow(name).c_str(), type, flags);
    const bool acquired = !Enter("AcquireProvider", detail) && __real_AcquireProvider(provider, name, type, flags);
    TheState().held.providers += acquired ? 1 : 0;
    return acquired;
}

bool __wrap_GenerateRandom(platform::Provider provider, std::uint8_t *bytes, std::uint32_t length)
{
    if (Enter("GenerateRandom", std::to_string(length))) {
        return false;
    }
    const std::string &script = TheState().random;
    if (script.empty()) {
        return __real_GenerateRandom(provider, bytes, length);
    }
    for (std::uint32_t i = 0; i < length; ++i) {
        bytes[i] = static_cast<std::uint8_t>(script[i % script.size()]);
    }
    return true;
}

void __wrap_ReleaseProvider(platform::Provider provider)
{
    --TheState().held.providers;
    __real_ReleaseProvider(provider);
}

void __wrap_SeedRand(std::uint32_t seed)
{
    Enter("SeedRand", std::to_string(seed)); // it cannot fail
    TheState().rand = seed;
}

int __wrap_NextRand()
{
    TheState().rand = (TheState().rand * 1103515245 + 12345) % 0x80000000;
    return static_cast<int>(TheState().rand);
}

} // extern "C"
