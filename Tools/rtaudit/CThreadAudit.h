#pragma once

#include "Tools/rtaudit/CAuditCounts.h"

namespace tsm {

/// Counts what the calling thread does in a scope that real-time code shouldn't: heap calls,
/// refills of the block allocator, locks, system calls and page faults. The program is linked with
/// the probes (`tsm_rtaudit`); under a sanitizer, which has the heap for itself, nothing is
/// counted. One scope a thread at a time.
class CThreadAudit {
public:
    /// `results` is borrowed and added to.
    explicit CThreadAudit(CAuditCounts& results);
    ~CThreadAudit();
    CThreadAudit(const CThreadAudit&) = delete;
    CThreadAudit& operator=(const CThreadAudit&) = delete;

    /// False in a build whose heap isn't ours to count.
    [[nodiscard]] static bool isAvailable() noexcept;
    /// False where the system doesn't hand system calls over (Linux 5.11 does); they read as 0.
    [[nodiscard]] static bool countsSystemCalls() noexcept;

    /// The counts of the calling thread's scope, or null. For the probes.
    [[nodiscard]] static CAuditCounts* current() noexcept;

private:
    CAuditCounts& counts;
    std::int64_t faultsBefore;
};

} // namespace tsm
