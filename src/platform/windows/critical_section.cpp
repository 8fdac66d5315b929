// The locking contract over Windows, whose critical sections are recursive.
#include "platform/critical_section.h"

#include "platform/windows/system.h"

namespace pavonix::platform {

static_assert(sizeof(CRITICAL_SECTION) <= sizeof(CriticalSection));

namespace {

CRITICAL_SECTION *Native(CriticalSection *section)
{
    return reinterpret_cast<CRITICAL_SECTION *>(section->room);
}

} // namespace

void InitCriticalSection(CriticalSection *section)
{
    InitializeCriticalSection(Native(section));
}

void EnterSection(CriticalSection *section)
{
    EnterCriticalSection(Native(section));
}

void LeaveSection(CriticalSection *section)
{
    LeaveCriticalSection(Native(section));
}

void FreeCriticalSection(CriticalSection *section)
{
    DeleteCriticalSection(Native(section));
}

} // namespace pavonix::platform
