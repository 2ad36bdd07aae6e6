#pragma once

#include <array>
#include <cstdint>

namespace tsm {

/// What one lock has cost the audited thread.
struct CLockCounts {
    const void* lock = nullptr;
    const void* caller = nullptr; // the code that took it first
    int acquisitions = 0;
    int waits = 0;     // another thread held it
    int longWaits = 0; // longer than kLongWaitNs
    std::int64_t longestWaitNs = 0;
    std::int64_t asideNs = 0; // of that wait: the thread was ready, but put aside

    /// Far longer than anything that is done under a hand-over's lock.
    static constexpr std::int64_t kLongWaitNs = 100'000;
};

/// What a thread did while it was audited. Plain storage of fixed size: counting allocates nothing.
struct CAuditCounts {
    static constexpr int kMostLocks = 64;
    static constexpr int kMostCalls = 16;

    std::int64_t allocations = 0; // calls of the C library's heap for memory, whoever makes them
    std::int64_t frees = 0;
    int refills = 0; // of the block allocator's size classes
    int lockCount = 0;
    std::array<CLockCounts, kMostLocks> locks{};
    int systemCalls = 0;
    std::array<int, kMostCalls> firstCalls{}; // numbers of the first system calls
    std::int64_t pageFaults = 0;              // minor and major

    /// The counts of a lock, made when new; those beyond the room share the last place.
    [[nodiscard]] CLockCounts& of(const void* lock, const void* caller) noexcept
    {
        for (int i = 0; i < lockCount; ++i)
            if (locks[static_cast<std::size_t>(i)].lock == lock)
                return locks[static_cast<std::size_t>(i)];
        if (lockCount < kMostLocks)
            ++lockCount;
        CLockCounts& made = locks[static_cast<std::size_t>(lockCount - 1)];
        made.lock = lock;
        made.caller = caller;
        return made;
    }
    [[nodiscard]] int acquisitions() const noexcept { return sum(&CLockCounts::acquisitions); }
    [[nodiscard]] int waits() const noexcept { return sum(&CLockCounts::waits); }

private:
    [[nodiscard]] int sum(int CLockCounts::*count) const noexcept
    {
        int total = 0;
        for (const CLockCounts& lock : locks)
            total += lock.*count;
        return total;
    }
};

} // namespace tsm
