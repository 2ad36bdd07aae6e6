#include "Core/CPersistentThread.h"

namespace tsm {

CPersistentThread::~CPersistentThread()
{
    nextIdle.reset();
    job.reset();
    stopThread();
}

CError* CPersistentThread::run()
{
    for (;;) {
        wakeEvent.wait();
        if (isStopRequested())
            return nullptr;
        job->error.reset(job->run());
        const CLockScope scope(lock);
        isBusy = false;
    }
}

void CPersistentThread::wake()
{
    {
        const CLockScope scope(lock);
        isBusy = true;
    }
    wakeEvent.set();
}

bool CPersistentThread::getIsBusy()
{
    const CLockScope scope(lock);
    return isBusy;
}

} // namespace tsm
