#include "Platform/Linux/CTimerThread.h"

#include "Platform/CClock.h"
#include "Platform/CThreadId.h"

#include <algorithm>
#include <cassert>
#include <chrono>

namespace tsm {

CTimerThread& CTimerThread::get()
{
    static CTimerThread thread;
    return thread;
}

void CTimerThread::addUser()
{
    const std::lock_guard scope(userLock);
    if (++userCount > 1 && thread.isStarted())
        return;
    isEnding = false;
    // Without a thread the timers don't tick, which their owners find out by isRunning().
    (void)thread.start(&threadEntry, this, "timer-queue");
}

void CTimerThread::removeUser()
{
    const std::lock_guard scope(userLock);
    if (--userCount > 0)
        return;
    assert(active.empty());
    end();
}

void CTimerThread::end()
{
    {
        const std::lock_guard hold(lock);
        isEnding = true;
    }
    changed.notify_one();
    thread.join();
}

bool CTimerThread::isRunning()
{
    const std::lock_guard scope(userLock);
    return thread.isStarted();
}

void CTimerThread::start(CSystemTimer& timer, std::int64_t delay, std::int64_t period)
{
    {
        const std::lock_guard hold(lock);
        timer.nextDue = CClock::counter() + delay;
        timer.period = period;
        if (!timer.isActive)
            active.push_back(&timer);
        timer.isActive = true;
    }
    changed.notify_one();
}

void CTimerThread::stop(CSystemTimer& timer)
{
    std::unique_lock hold(lock);
    assert(thread.getId() != currentThreadId());
    if (timer.isActive)
        std::erase(active, &timer);
    timer.isActive = false;
    tickEnded.wait(hold, [&] { return ticking != &timer; });
}

CSystemTimer* CTimerThread::earliest() const
{
    const auto found = std::min_element(
        active.begin(), active.end(),
        [](const CSystemTimer* a, const CSystemTimer* b) { return a->nextDue < b->nextDue; });
    return found == active.end() ? nullptr : *found;
}

void CTimerThread::run()
{
    std::unique_lock hold(lock);
    while (!isEnding) {
        CSystemTimer* next = earliest();
        const std::int64_t now = CClock::counter();
        if (!next)
            changed.wait(hold);
        else if (next->nextDue > now)
            changed.wait_until(hold, std::chrono::steady_clock::now() +
                                         std::chrono::nanoseconds(next->nextDue - now));
        else
            tick(*next, hold, now);
    }
}

void CTimerThread::tick(CSystemTimer& timer, std::unique_lock<std::mutex>& hold, std::int64_t now)
{
    const std::int64_t missed = (now - timer.nextDue) / timer.period;
    timer.nextDue += (missed + 1) * timer.period;
    ticking = &timer;
    hold.unlock();
    timer.callback(timer.context);
    hold.lock();
    ticking = nullptr;
    tickEnded.notify_all();
}

} // namespace tsm
