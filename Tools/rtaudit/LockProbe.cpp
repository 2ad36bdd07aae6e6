// Functions that the linker puts in the place of others (--wrap of ld): the locks of ours and of
// the C++ library, and the slow road of the block allocator.

#include "Platform/CClock.h"
#include "Platform/CCriticalSection.h"
#include "Tools/rtaudit/CLockHolds.h"
#include "Tools/rtaudit/CRunDelay.h"
#include "Tools/rtaudit/CSystemCallProbe.h"
#include "Tools/rtaudit/CThreadAudit.h"

#include <pthread.h>

namespace {

std::int64_t runDelayNs()
{
    const tsm::CSystemCallPause pause; // not the audited code's
    return tsm::CRunDelay::getNs();
}

/// Takes a lock for the audited thread by `tryEnter`, or waits by `enter` and takes the time.
template <class Try, class Enter>
void enterCounted(tsm::CLockCounts& of, Try tryEnter, Enter enter)
{
    ++of.acquisitions;
    if (tryEnter())
        return;
    const std::int64_t delayBefore = runDelayNs();
    const std::int64_t begin = tsm::CClock::counter();
    enter();
    const std::int64_t waited = tsm::CClock::counter() - begin;
    ++of.waits;
    of.longWaits += waited > tsm::CLockCounts::kLongWaitNs;
    if (waited <= of.longestWaitNs)
        return;
    of.longestWaitNs = waited;
    of.asideNs = runDelayNs() - delayBefore;
}

} // namespace

// NOLINTBEGIN(bugprone-reserved-identifier, readability-identifier-naming)
extern "C" {

void __real__ZN3tsm16CCriticalSection5enterEv(tsm::CCriticalSection* lock);
bool __real__ZN3tsm16CCriticalSection8tryEnterEv(tsm::CCriticalSection* lock);
void __real__ZN3tsm16CCriticalSection5leaveEv(tsm::CCriticalSection* lock);
int __real_pthread_mutex_lock(pthread_mutex_t* lock);
void* __real__ZN3tsm8CMemPool6refillEv(void* pool);

void __wrap__ZN3tsm16CCriticalSection5enterEv(tsm::CCriticalSection* lock)
{
    if (tsm::CAuditCounts* counts = tsm::CThreadAudit::current())
        enterCounted(
            counts->of(lock, __builtin_return_address(0)),
            [&] { return __real__ZN3tsm16CCriticalSection8tryEnterEv(lock); },
            [&] { __real__ZN3tsm16CCriticalSection5enterEv(lock); });
    else
        __real__ZN3tsm16CCriticalSection5enterEv(lock);
    tsm::CLockHolds::onEntered(lock);
}

bool __wrap__ZN3tsm16CCriticalSection8tryEnterEv(tsm::CCriticalSection* lock)
{
    const bool isEntered = __real__ZN3tsm16CCriticalSection8tryEnterEv(lock);
    tsm::CAuditCounts* counts = tsm::CThreadAudit::current();
    if (isEntered && counts)
        ++counts->of(lock, __builtin_return_address(0)).acquisitions;
    if (isEntered)
        tsm::CLockHolds::onEntered(lock);
    return isEntered;
}

void __wrap__ZN3tsm16CCriticalSection5leaveEv(tsm::CCriticalSection* lock)
{
    tsm::CLockHolds::onLeaving(lock);
    __real__ZN3tsm16CCriticalSection5leaveEv(lock);
}

int __wrap_pthread_mutex_lock(pthread_mutex_t* lock)
{
    tsm::CAuditCounts* counts = tsm::CThreadAudit::current();
    if (!counts)
        return __real_pthread_mutex_lock(lock);
    int result = 0;
    enterCounted(
        counts->of(lock, __builtin_return_address(0)),
        [&] { return pthread_mutex_trylock(lock) == 0; },
        [&] { result = __real_pthread_mutex_lock(lock); });
    return result;
}

void* __wrap__ZN3tsm8CMemPool6refillEv(void* pool)
{
    if (tsm::CAuditCounts* counts = tsm::CThreadAudit::current())
        ++counts->refills;
    return __real__ZN3tsm8CMemPool6refillEv(pool);
}
}
// NOLINTEND(bugprone-reserved-identifier, readability-identifier-naming)
