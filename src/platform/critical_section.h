// Part of a port: locks, as recursive critical sections.
#pragma once

namespace pavonix::platform {

// Room for the system's own object; it is never moved once initialised.
struct CriticalSection {
    alignas(8) unsigned char room[64];
};

extern "C" {

void InitCriticalSection(CriticalSection *section);
void EnterSection(CriticalSection *section);
void LeaveSection(CriticalSection *section);
void FreeCriticalSection(CriticalSection *section);

} // extern "C"

} // namespace pavonix::platform
