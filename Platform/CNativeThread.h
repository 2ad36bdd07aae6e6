#pragma once

#include <cstdint>

namespace tsm {

/// One thread of the system. It takes no signals, which are the host's, and its floating-point
/// state is the system's default.
class CNativeThread {
public:
    using CEntry = void (*)(void* context);

    CNativeThread() = default;
    /// The thread has been joined.
    ~CNativeThread();
    CNativeThread(const CNativeThread&) = delete;
    CNativeThread& operator=(const CNativeThread&) = delete;

    /// Starts `entry(context)` on a new thread with the default stack; the system's tools show the
    /// first 15 bytes of `name`, unless it is null or empty. Returns a system error code, 0 for
    /// success. The thread isn't started already. [any]
    [[nodiscard]] int start(CEntry entry, void* context, const char* name = nullptr);
    /// Waits without time limit for the thread's end; nothing happens if none was started. Not to
    /// be called on the thread itself. [any]
    void join();
    /// Asks the system to run this thread before ordinary ones; a user who may not have that gets
    /// an ordinary thread. [any]
    void raisePriority();
    [[nodiscard]] bool isStarted() const noexcept { return threadId != 0; }
    /// The number that currentThreadId() gives on it; 0 before start() and after join().
    [[nodiscard]] std::uint32_t getId() const noexcept { return threadId; }

    /// Lets other threads run that wait for this processor. [any]
    static void yield() noexcept;

private:
    std::uint64_t handle = 0;
    std::uint32_t threadId = 0;
};

} // namespace tsm
