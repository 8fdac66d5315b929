// The lock contract over POSIX threads.
#include "platform/critical_section.h"

#include <pthread.h>

#include <new>

namespace pavonix::platform {

namespace {

static_assert(sizeof(pthread_mutex_t) <= sizeof(CriticalSection));

pthread_mutex_t *Mutex(CriticalSection *section)
{
    return std::launder(reinterpret_cast<pthread_mutex_t *>(section->room));
}

} // namespace

void InitCriticalSection(CriticalSection *section)
{
    pthread_mutex_t *mutex = new (section->room) pthread_mutex_t;
    pthread_mutexattr_t recursive;
    pthread_mutexattr_init(&recursive);
    pthread_mutexattr_settype(&recursive, PTHREAD_MUTEX_RECURSIVE);
    pthread_mutex_init(mutex, &recursive);
    pthread_mutexattr_destroy(&recursive);
}

void EnterSection(CriticalSection *section)
{
    pthread_mutex_lock(Mutex(section));
}

void LeaveSection(CriticalSection *section)
{
    pthread_mutex_unlock(Mutex(section));
}

void FreeCriticalSection(CriticalSection *section)
{
    pthread_mutex_destroy(Mutex(section));
}

} // namespace pavonix::platform
