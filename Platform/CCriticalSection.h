#pragma once

#include <atomic>
#include <cstdint>

namespace tsm {

/// A recursive lock that spins a stated number of times before it waits in the system.
///
/// Short sections (a counter, a few fields) take a small count; registries and stores, whose
/// holders may be walking a map, take a large one. Whoever sleeps for the lock lends its priority
/// to the holder, so that an audio thread of real-time priority waits no longer than the section
/// takes, even if the system had put the holder aside for others.
class CCriticalSection {
public:
    /// `spinCount` is the number of tries before the caller sleeps.
    constexpr explicit CCriticalSection(int spinCount = 0) noexcept : spins(spinCount) {}
    ~CCriticalSection() = default; // trivial: locks of static tables outlive every static object
    CCriticalSection(const CCriticalSection&) = delete;
    CCriticalSection& operator=(const CCriticalSection&) = delete;

    /// Takes the lock; a thread that holds it already only counts one level up. [any]
    void enter();
    /// Takes the lock if that needs no waiting; tells whether it is held now. [any]
    [[nodiscard]] bool tryEnter();
    /// Gives one level back. The caller holds the lock, and doesn't end while it does. [any]
    void leave();
    /// True when the calling thread holds the lock; for assertions. [any]
    [[nodiscard]] bool isHeldByThisThread() const;

private:
    // The holder's number as the system counts threads, 0 while it is free; the system adds a mark
    // while others sleep.
    std::atomic<std::uint32_t> state = 0;
    std::uint32_t depth = 0;
    int spins;
};

/// Holds a lock for a scope.
class CLockScope {
public:
    explicit CLockScope(CCriticalSection& lock) : held(lock) { held.enter(); }
    ~CLockScope() { held.leave(); }
    CLockScope(const CLockScope&) = delete;
    CLockScope& operator=(const CLockScope&) = delete;

private:
    CCriticalSection& held;
};

} // namespace tsm
