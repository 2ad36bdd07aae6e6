#pragma once

#include "Core/CError.h"
#include "Platform/CAutoResetEvent.h"
#include "Platform/CNativeThread.h"

#include <atomic>
#include <cstdint>

namespace tsm {

/// A thread of the framework's own. A subclass supplies `run()` and ends the thread by
/// `stopThread()` in its destructor, while its members still exist.
class CThread : public CCheckedObject {
public:
    /// `name` may be empty; it is for those who look at the process from outside.
    explicit CThread(const CString& name = CString()) : threadName(name) {}
    virtual ~CThread();
    CThread(const CThread&) = delete;
    CThread& operator=(const CThread&) = delete;

    /// The thread's work. It returns when the work is done or soon after a stop was asked for; an
    /// error is shown to the user. [the thread itself]
    [[nodiscard]] virtual CError* run() = 0;

    /// Starts the thread, before ordinary ones with `highPriority`, as far as the user may have
    /// that. Errors: it runs already; the system's refusal. [any] One caller at a time.
    [[nodiscard]] CError* runThread(bool highPriority);
    /// Asks the thread to stop, signals it, and waits without time limit for its end. Nothing
    /// happens if it isn't running; one whose `run()` has returned counts as running until here.
    /// [any] One caller at a time, and not the thread itself.
    void stopThread();

    [[nodiscard]] bool getIsRunning() const noexcept { return isRunning; }
    [[nodiscard]] bool isStopRequested() const noexcept { return stopRequested.load(); }
    /// The number of the thread while it runs, else 0.
    [[nodiscard]] std::uint32_t getThreadId() const noexcept { return thread.getId(); }
    /// The name of a running thread, or empty. [any]
    [[nodiscard]] static CString findThreadName(std::uint32_t threadId);

protected:
    CAutoResetEvent wakeEvent; // also set by stopThread()

private:
    static void threadEntry(void* self);

    const CString threadName;
    CNativeThread thread;
    std::atomic<bool> stopRequested = false;
    bool isRunning = false;
};

} // namespace tsm
