#pragma once

namespace tsm {

/// Gives the calling thread a real-time priority (SCHED_FIFO, the lowest one) for a scope, as hosts
/// do for their audio threads. Threads that it starts meanwhile inherit that.
class CRealtimePriority {
public:
    CRealtimePriority() noexcept;
    ~CRealtimePriority();
    CRealtimePriority(const CRealtimePriority&) = delete;
    CRealtimePriority& operator=(const CRealtimePriority&) = delete;

    /// False where this process may not.
    [[nodiscard]] bool isGranted() const noexcept { return granted; }

private:
    bool granted;
};

} // namespace tsm
