#pragma once

#include <cstdint>

namespace tsm {

/// For how long the system has put the calling thread aside: it was ready, and others had the
/// processors (/proc/thread-self/schedstat, Documentation/scheduler/sched-stats.rst of Linux).
class CRunDelay {
public:
    /// Opens the thread's file, so that reading it takes one system call.
    static void prepare() noexcept;
    /// Since the thread began; 0 where the system doesn't say.
    [[nodiscard]] static std::int64_t getNs() noexcept;
};

} // namespace tsm
