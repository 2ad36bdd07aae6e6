#include "Platform/CCriticalSection.h"

#include "Platform/CThreadId.h"

#include <cassert>

#include <linux/futex.h>
#include <sys/syscall.h>
#include <unistd.h>

namespace tsm {

// Drepper, "Futexes Are Tricky" (2011), the mutex of three states: state 2 is the only one whose
// release enters the kernel, so a lock without waiters costs two atomic operations.
namespace {

constexpr std::uint32_t kFree = 0;
constexpr std::uint32_t kHeld = 1;
constexpr std::uint32_t kHeldWithSleepers = 2;

void sleepWhile(std::atomic<std::uint32_t>& state, std::uint32_t expected)
{
    // Any early return (a signal, a changed value) only means another look at the state.
    syscall(SYS_futex, &state, FUTEX_WAIT_PRIVATE, expected, nullptr, nullptr, 0);
}

void wakeOne(std::atomic<std::uint32_t>& state)
{
    syscall(SYS_futex, &state, FUTEX_WAKE_PRIVATE, 1, nullptr, nullptr, 0);
}

bool take(std::atomic<std::uint32_t>& state)
{
    std::uint32_t expected = kFree;
    return state.compare_exchange_strong(expected, kHeld, std::memory_order_acquire,
                                         std::memory_order_relaxed);
}

bool takeSpinning(std::atomic<std::uint32_t>& state, int tries)
{
    for (int i = 0; i < tries; ++i) {
        // Looks before it writes: a failed exchange would pull the line away from the holder.
        if (state.load(std::memory_order_relaxed) == kFree && take(state))
            return true;
        __builtin_ia32_pause();
    }
    return false;
}

} // namespace

void CCriticalSection::enter()
{
    const std::uint32_t caller = currentThreadId();
    if (owner.load(std::memory_order_relaxed) == caller) {
        ++depth;
        return;
    }
    if (!take(state) && !takeSpinning(state, spins)) {
        // Having slept, a thread can't know of further sleepers, so it takes the lock as if there
        // were some; the cost is one needless wake-up.
        while (state.exchange(kHeldWithSleepers, std::memory_order_acquire) != kFree)
            sleepWhile(state, kHeldWithSleepers);
    }
    owner.store(caller, std::memory_order_relaxed);
    depth = 1;
}

bool CCriticalSection::tryEnter()
{
    const std::uint32_t caller = currentThreadId();
    if (owner.load(std::memory_order_relaxed) == caller) {
        ++depth;
        return true;
    }
    if (!take(state))
        return false;
    owner.store(caller, std::memory_order_relaxed);
    depth = 1;
    return true;
}

void CCriticalSection::leave()
{
    assert(isHeldByThisThread());
    if (--depth > 0)
        return;
    owner.store(0, std::memory_order_relaxed);
    if (state.exchange(kFree, std::memory_order_release) == kHeldWithSleepers)
        wakeOne(state);
}

bool CCriticalSection::isHeldByThisThread() const
{
    return owner.load(std::memory_order_relaxed) == currentThreadId();
}

} // namespace tsm
