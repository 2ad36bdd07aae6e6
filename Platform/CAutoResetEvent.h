#pragma once

#include <atomic>
#include <cstdint>

namespace tsm {

/// A signal that lets one waiting thread pass and is clear again. Set twice before anyone waits, it
/// still lets one pass only.
class CAutoResetEvent {
public:
    CAutoResetEvent() = default;
    CAutoResetEvent(const CAutoResetEvent&) = delete;
    CAutoResetEvent& operator=(const CAutoResetEvent&) = delete;

    /// What the caller wrote before is visible to the thread that passes. [any]
    void set() noexcept
    {
        state.store(1, std::memory_order_release);
        state.notify_one();
    }
    /// Waits without time limit until the signal is set, and clears it. [any]
    void wait() noexcept
    {
        while (state.exchange(0, std::memory_order_acquire) == 0)
            state.wait(0, std::memory_order_relaxed);
    }

private:
    std::atomic<std::int32_t> state = 0;
};

} // namespace tsm
