#include "Platform/CCriticalSection.h"

#include "Platform/CThreadId.h"

#include <cassert>
#include <ctime>

#include <linux/futex.h>
#include <sys/syscall.h>
#include <unistd.h>

namespace tsm {

// A futex with priority inheritance (Documentation/locking/pi-futex.rst of Linux; Sha, Rajkumar,
// Lehoczky, "Priority Inheritance Protocols", 1990). Only a lock that others sleep for is left
// through the kernel, so one without waiters costs two atomic operations. The C library's mutex
// does the same, but can't be a constant that is never destroyed, and doesn't spin.
namespace {

constexpr std::uint32_t kFree = 0;

bool take(std::atomic<std::uint32_t>& state, std::uint32_t caller)
{
    std::uint32_t expected = kFree;
    return state.compare_exchange_strong(expected, caller, std::memory_order_acquire,
                                         std::memory_order_relaxed);
}

bool takeSpinning(std::atomic<std::uint32_t>& state, std::uint32_t caller, int tries)
{
    for (int i = 0; i < tries; ++i) {
        // Looks before it writes: a failed exchange would pull the line away from the holder.
        if (state.load(std::memory_order_relaxed) == kFree && take(state, caller))
            return true;
        __builtin_ia32_pause();
    }
    return false;
}

void takeSleeping(std::atomic<std::uint32_t>& state, std::uint32_t caller)
{
    // Fails while the holder's thread is just ending, and on a kernel without inheritance.
    constexpr timespec kRetryInterval{0, 50'000};
    while (syscall(SYS_futex, &state, FUTEX_LOCK_PI_PRIVATE, 0, nullptr, nullptr, 0) != 0) {
        if (take(state, caller))
            return;
        nanosleep(&kRetryInterval, nullptr);
    }
    // The kernel has entered the caller's number, behind what the former holder did.
    [[maybe_unused]] const std::uint32_t entered = state.load(std::memory_order_acquire);
    assert((entered & FUTEX_TID_MASK) == caller);
}

void giveToSleeper(std::atomic<std::uint32_t>& state)
{
    // The kernel orders memory, but not in the eyes of a tool that follows the program alone.
    state.fetch_or(0, std::memory_order_release);
    syscall(SYS_futex, &state, FUTEX_UNLOCK_PI_PRIVATE, 0, nullptr, nullptr, 0);
}

} // namespace

void CCriticalSection::enter()
{
    if (isHeldByThisThread()) {
        ++depth;
        return;
    }
    const std::uint32_t caller = currentThreadId();
    if (!take(state, caller) && !takeSpinning(state, caller, spins))
        takeSleeping(state, caller);
    depth = 1;
}

bool CCriticalSection::tryEnter()
{
    if (isHeldByThisThread()) {
        ++depth;
        return true;
    }
    if (!take(state, currentThreadId()))
        return false;
    depth = 1;
    return true;
}

void CCriticalSection::leave()
{
    assert(isHeldByThisThread());
    if (--depth > 0)
        return;
    std::uint32_t expected = currentThreadId();
    if (!state.compare_exchange_strong(expected, kFree, std::memory_order_release,
                                       std::memory_order_relaxed))
        giveToSleeper(state);
}

bool CCriticalSection::isHeldByThisThread() const
{
    return (state.load(std::memory_order_relaxed) & FUTEX_TID_MASK) == currentThreadId();
}

} // namespace tsm
