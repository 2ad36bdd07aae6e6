#include "Platform/CNativeThread.h"

#include "Platform/CAutoResetEvent.h"
#include "Platform/CThreadId.h"

#include <cassert>
#include <cstring>
#include <pthread.h>
#include <sched.h>
#include <signal.h>

namespace tsm {
namespace {

static_assert(sizeof(pthread_t) == sizeof(std::uint64_t));

/// What the new thread takes over from its maker, who waits until it has done so.
struct CStart {
    CNativeThread::CEntry entry;
    void* context;
    std::uint32_t threadId = 0;
    CAutoResetEvent isTaken;
};

void* runEntry(void* parameter)
{
    auto* start = static_cast<CStart*>(parameter);
    const CNativeThread::CEntry entry = start->entry;
    void* const context = start->context;
    start->threadId = currentThreadId();
    start->isTaken.set();
    entry(context);
    return nullptr;
}

/// Blocks all signals of the calling thread for a scope; a thread made meanwhile keeps them so.
class CSignalPause {
public:
    CSignalPause()
    {
        sigset_t all;
        sigfillset(&all);
        pthread_sigmask(SIG_SETMASK, &all, &former);
    }
    ~CSignalPause() { pthread_sigmask(SIG_SETMASK, &former, nullptr); }
    CSignalPause(const CSignalPause&) = delete;
    CSignalPause& operator=(const CSignalPause&) = delete;

private:
    sigset_t former{};
};

} // namespace

CNativeThread::~CNativeThread()
{
    assert(!isStarted());
}

int CNativeThread::start(CEntry entry, void* context, const char* name)
{
    assert(!isStarted());
    CStart handover{entry, context, 0, {}};
    pthread_t made{};
    {
        const CSignalPause quiet;
        if (const int code = pthread_create(&made, nullptr, &runEntry, &handover))
            return code;
    }
    handover.isTaken.wait();
    handle = made;
    threadId = handover.threadId;
    if (name && *name) {
        char shortName[16] = {};
        std::strncpy(shortName, name, sizeof shortName - 1);
        pthread_setname_np(made, shortName);
    }
    return 0;
}

void CNativeThread::join()
{
    if (!isStarted())
        return;
    pthread_join(handle, nullptr);
    handle = 0;
    threadId = 0;
}

void CNativeThread::raisePriority()
{
    sched_param lowest{};
    lowest.sched_priority = sched_get_priority_min(SCHED_RR);
    // A refusal is no failure: users have this right only where the system's owner gave it.
    if (isStarted())
        (void)pthread_setschedparam(handle, SCHED_RR, &lowest);
}

void CNativeThread::yield() noexcept
{
    sched_yield();
}

} // namespace tsm
