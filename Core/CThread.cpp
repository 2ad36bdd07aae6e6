#include "Core/CThread.h"

#include "Core/CMap.h"
#include "Core/CSystem.h"
#include "Core/CText.h"
#include "Platform/CCriticalSection.h"

namespace tsm {
namespace {

struct CThreadNames {
    CCriticalSection lock{50};
    CMap<std::uint32_t, CString> names;
};

CThreadNames& threadNames()
{
    static CThreadNames names;
    return names;
}

} // namespace

CThread::~CThread()
{
    stopThread();
}

void CThread::threadEntry(void* self)
{
    if (CError* error = static_cast<CThread*>(self)->run())
        CSystem::showError(error);
}

CError* CThread::runThread(bool highPriority)
{
    if (isRunning)
        TSM_FAIL("@tsmstr_CThread_runThread_AlreadyRunning Thread is already running.");
    stopRequested = false;
    if (const int code = thread.start(&threadEntry, this, threadName.toUtf8().c_str()))
        TSM_FAIL("@tsmstr_CThread_runThread_createThreadError Thread creation error %1.",
                 toString(code));
    isRunning = true;
    if (highPriority)
        thread.raisePriority();
    if (!threadName.isEmpty()) {
        CThreadNames& running = threadNames();
        const CLockScope scope(running.lock);
        running.names[thread.getId()] = threadName;
    }
    return nullptr;
}

void CThread::stopThread()
{
    if (!isRunning)
        return;
    const std::uint32_t id = thread.getId();
    stopRequested = true;
    wakeEvent.set();
    thread.join();
    if (!threadName.isEmpty()) {
        CThreadNames& running = threadNames();
        const CLockScope scope(running.lock);
        running.names.remove(id);
    }
    isRunning = false;
}

CString CThread::findThreadName(std::uint32_t threadId)
{
    CThreadNames& running = threadNames();
    const CLockScope scope(running.lock);
    const CString* name = running.names.find(threadId);
    return name ? *name : CString();
}

} // namespace tsm
