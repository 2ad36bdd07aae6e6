#pragma once

#include "Tools/rtaudit/CAuditCounts.h"

namespace tsm {

/// Counts the system calls of a thread. The kernel hands each one over as a signal (Syscall User
/// Dispatch, Documentation/admin-guide/syscall-user-dispatch.rst of Linux), whose handler notes the
/// number and makes the call itself.
class CSystemCallProbe {
public:
    /// Whether the kernel can. [any]
    [[nodiscard]] static bool isAvailable() noexcept;
    /// Begins and ends counting on the calling thread.
    static void begin(CAuditCounts& counts) noexcept;
    static void end() noexcept;
    /// Has calls pass uncounted, or no longer; tells whether they did before.
    static bool setPaused(bool isPaused) noexcept;
};

/// Leaves the calling thread's system calls of a scope uncounted.
class CSystemCallPause {
public:
    CSystemCallPause() noexcept : wasPaused(CSystemCallProbe::setPaused(true)) {}
    ~CSystemCallPause() { CSystemCallProbe::setPaused(wasPaused); }
    CSystemCallPause(const CSystemCallPause&) = delete;
    CSystemCallPause& operator=(const CSystemCallPause&) = delete;

private:
    bool wasPaused;
};

} // namespace tsm
