#pragma once

#include "Tools/rtaudit/CAuditEngine.h"

#include <functional>
#include <set>
#include <string>
#include <vector>

namespace tsm {

/// One kind of block, and what it may do.
struct CAuditKind {
    /// What goes before a block; `round` counts up.
    using CAction = std::function<void(CAuditEngine& engine, int round)>;

    const char* name;
    const char* tag = nullptr;     // the kind exists where the product has that class
    CAction prepare;               // once
    CAction act;                   // before each run of blocks
    std::set<std::string> mayLock; // owners of locks, beside those of hand-overs
    int blocksEach = 8;            // counted behind each action, or more if they are short
    bool isHeavy = false;          // it loads something, and may allocate and take locks
    bool isBeside = false;         // a control thread works at the same time
};

/// What the worst block of a kind did, column by column, and all its locks.
struct CAuditRow {
    std::string name;
    int blocks = 0;
    CAuditCounts worst; // `locks` is unused here
    int worstAcquisitions = 0;
    int worstWaits = 0;
    std::int64_t longestWaitNs = 0;
    std::int64_t asideNs = 0; // of that wait, see CLockCounts
    int waits = 0;            // of all blocks
    int longWaits = 0;
    bool isRealtime = false;            // the audio thread had a real-time priority
    std::set<std::string> lockOwners;   // of the locks that were taken
    std::set<std::string> waitedOwners; // of the locks that were waited for
    std::set<int> systemCalls;          // numbers
    int foreignHolds = 0;               // of the environment's lock, by a thread beside
    std::int64_t longestForeignHoldNs = 0;
    std::int64_t meanForeignHoldNs = 0;
    bool isHeavy = false;
    std::set<std::string> mayLock;
};

/// All kinds that an instance's blocks can be.
[[nodiscard]] const std::vector<CAuditKind>& auditKinds();

/// Runs a kind in an instance: rounds that warm the pools up, then as many that count. False where
/// the kind doesn't exist in this product.
[[nodiscard]] bool runAudit(CAuditEngine& engine, const CAuditKind& kind, CAuditRow& row);

/// What the row does beyond the rule of its kind, in words; empty when it keeps to it: no heap, no
/// refill, no system call, and no locks but those of hand-overs (the environment's, the
/// visualisation queue's) and of the kind. Page faults are no part of it: when the system takes
/// memory away, or shares it, isn't this thread's doing.
[[nodiscard]] std::string auditVerdict(const CAuditRow& row);

} // namespace tsm
