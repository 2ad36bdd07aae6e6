#pragma once

#include <cstdint>

namespace tsm {

/// A periodic call from the process's one timer thread, which runs while any of these objects
/// exists. Ticks that come too late for their period are left out, not made up for.
class CSystemTimer {
public:
    /// Short work that waits for nobody: all timers of the process share the thread. It neither
    /// starts nor stops nor ends a timer. [timer thread]
    using CCallback = void (*)(void* context);

    /// `context` is borrowed. [any]
    CSystemTimer(CCallback callback, void* context);
    /// Stops; the last object to go also ends the thread. [any]
    ~CSystemTimer();
    CSystemTimer(const CSystemTimer&) = delete;
    CSystemTimer& operator=(const CSystemTimer&) = delete;

    /// False when the system gave no timer thread; nothing ticks then.
    [[nodiscard]] static bool hasQueue();
    /// Starts, or starts anew: the first tick after `delayMs` milliseconds (0: at once), then one
    /// every `periodMs` (at least 1). Returns a system error code, 0 for success. [any]
    [[nodiscard]] int start(std::int64_t delayMs, std::int64_t periodMs);
    /// No tick begins any more, and none is under way when this returns. The caller holds no lock
    /// that the callback takes. [any]
    void stop();

private:
    friend class CTimerThread;

    const CCallback callback;
    void* const context;
    std::int64_t nextDue = 0; // the clock's ticks; these three are guarded by the thread's lock
    std::int64_t period = 0;
    bool isActive = false;
};

} // namespace tsm
