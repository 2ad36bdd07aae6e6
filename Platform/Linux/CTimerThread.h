#pragma once

#include "Platform/CNativeThread.h"
#include "Platform/CSystemTimer.h"

#include <condition_variable>
#include <mutex>
#include <vector>

namespace tsm {

/// The one thread that all timers of the process tick on.
class CTimerThread {
public:
    static CTimerThread& get();
    /// At the process's end users may be left.
    ~CTimerThread() { end(); }

    /// Counts the users up; the first one starts the thread.
    void addUser();
    /// Counts the users down; the last one ends the thread.
    void removeUser();
    [[nodiscard]] bool isRunning();
    /// As CSystemTimer's, in ticks of CClock.
    void start(CSystemTimer& timer, std::int64_t delay, std::int64_t period);
    void stop(CSystemTimer& timer);

private:
    CTimerThread() = default;
    void end();
    static void threadEntry(void* self) { static_cast<CTimerThread*>(self)->run(); }
    void run();
    [[nodiscard]] CSystemTimer* earliest() const;
    void tick(CSystemTimer& timer, std::unique_lock<std::mutex>& hold, std::int64_t now);

    std::mutex userLock; // held while the thread starts and ends; never taken by it
    int userCount = 0;
    CNativeThread thread;

    std::mutex lock;
    std::condition_variable changed;
    std::condition_variable tickEnded;
    std::vector<CSystemTimer*> active;
    const CSystemTimer* ticking = nullptr;
    bool isEnding = false;
};

} // namespace tsm
