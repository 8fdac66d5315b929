// The lock of the component and of each log.
#pragma once

#include "platform/critical_section.h"

namespace pavonix {

// Recursive: one thread may enter several times and leaves as often.
class ZentorpCritSec {
public:
    ZentorpCritSec() { platform::InitCriticalSection(&section_); }
    virtual ~ZentorpCritSec() { platform::FreeCriticalSection(&section_); }
    ZentorpCritSec(const ZentorpCritSec &) = delete;
    ZentorpCritSec &operator=(const ZentorpCritSec &) = delete;

    void Enter() { platform::EnterSection(&section_); }
    void Leave() { platform::LeaveSection(&section_); }

private:
    platform::CriticalSection section_;
};

// Holds a section for a scope.
class CritSecLock {
public:
    explicit CritSecLock(ZentorpCritSec &section) : section_(section) { section_.Enter(); }
    ~CritSecLock() { section_.Leave(); }
    CritSecLock(const CritSecLock &) = delete;
    CritSecLock &operator=(const CritSecLock &) = delete;

private:
    ZentorpCritSec &section_;
};

} // namespace pavonix
