#include "Platform/CSystemTimer.h"

#include "Platform/CClock.h"
#include "Platform/Linux/CTimerThread.h"

#include <algorithm>
#include <cerrno>

namespace tsm {
namespace {

// The longest time that the clock's 64 bits can add to any present, with room to spare.
constexpr std::int64_t kLongestMs = 0x7fffffff;

std::int64_t clockTicks(std::int64_t milliseconds)
{
    return milliseconds * (CClock::frequency() / 1000);
}

} // namespace

CSystemTimer::CSystemTimer(CCallback newCallback, void* newContext)
    : callback(newCallback), context(newContext)
{
    CTimerThread::get().addUser();
}

CSystemTimer::~CSystemTimer()
{
    stop();
    CTimerThread::get().removeUser();
}

bool CSystemTimer::hasQueue()
{
    return CTimerThread::get().isRunning();
}

int CSystemTimer::start(std::int64_t delayMs, std::int64_t periodMs)
{
    stop();
    if (!hasQueue())
        return EAGAIN;
    CTimerThread::get().start(*this, clockTicks(std::clamp<std::int64_t>(delayMs, 0, kLongestMs)),
                              clockTicks(std::clamp<std::int64_t>(periodMs, 1, kLongestMs)));
    return 0;
}

void CSystemTimer::stop()
{
    CTimerThread::get().stop(*this);
}

} // namespace tsm
