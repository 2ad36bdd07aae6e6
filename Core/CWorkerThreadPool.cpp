#include "Core/CWorkerThreadPool.h"

#include "Core/CPersistentThread.h"

#include <cassert>

namespace tsm {
namespace {

/// Its end, with the module, ends the threads that still sleep.
struct CIdleThreads {
    CCriticalSection lock{4000};
    CPtr<CPersistentThread> head;
};

CIdleThreads& idleThreads()
{
    static CIdleThreads idle;
    return idle;
}

bool isAnyBusy(const CArray<CPersistentThread*>& list)
{
    for (CPersistentThread* thread : list)
        if (thread->getIsBusy())
            return true;
    return false;
}

} // namespace

CError* CWorkerThreadPool::acquireThread(CPersistentThread*& thread, CPtr<CWorkerThread> job)
{
    thread = nullptr;
    CPtr<CPersistentThread> taken;
    {
        CIdleThreads& idle = idleThreads();
        const CLockScope scope(idle.lock);
        if (idle.head) {
            taken = std::move(idle.head);
            idle.head = std::move(taken->nextIdle);
        } else {
            taken.reset(new CPersistentThread("worker-thread"));
            TSM_TRY(taken->runThread(false));
        }
    }
    job->thread = taken.get();
    taken->job = std::move(job);
    thread = taken.release();
    return nullptr;
}

CError* CWorkerThreadPool::joinThreads(const CArray<CPersistentThread*>& list)
{
    while (isAnyBusy(list))
        CNativeThread::yield();
    for (CPersistentThread* thread : list)
        if (thread->job && thread->job->error)
            TSM_TRY(thread->job->error.release());
    return nullptr;
}

void CWorkerThreadPool::releaseThreads(CArray<CPersistentThread*>& list)
{
    for (CPersistentThread* thread : list) {
        assert(!thread->getIsBusy());
        thread->job.reset();
        CIdleThreads& idle = idleThreads();
        const CLockScope scope(idle.lock);
        thread->nextIdle = std::move(idle.head);
        idle.head.reset(thread);
    }
    list.clear();
}

void CWorkerThreadPool::clearIdleThreads()
{
    CPtr<CPersistentThread> ended;
    CIdleThreads& idle = idleThreads();
    const CLockScope scope(idle.lock);
    // Waiting for their ends is short: they sleep, and take no lock on their way out.
    ended = std::move(idle.head);
    ended.reset();
}

} // namespace tsm
