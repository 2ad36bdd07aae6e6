#include "Tools/rtaudit/CLockHolds.h"

#include "Tools/rtaudit/CThreadAudit.h"

#include <algorithm>
#include <atomic>
#include <time.h>

namespace tsm {
namespace {

constinit std::atomic<const void*> watched = nullptr;
// Written by those who hold the watched lock.
constinit std::atomic<std::int64_t> longestNs = 0;
constinit std::atomic<std::int64_t> totalNs = 0;
constinit std::atomic<int> holdCount = 0;
constinit thread_local int depth = 0;
constinit thread_local std::int64_t beginNs = 0;

std::int64_t processorTimeNs() noexcept
{
    timespec now{};
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &now);
    return std::int64_t{1'000'000'000} * now.tv_sec + now.tv_nsec;
}

bool isWatched(const void* lock) noexcept
{
    return lock == watched.load(std::memory_order_relaxed) && !CThreadAudit::current();
}

} // namespace

void CLockHolds::watch(const void* lock) noexcept
{
    watched = lock;
    longestNs = 0;
    totalNs = 0;
    holdCount = 0;
}

std::int64_t CLockHolds::getLongestNs() noexcept
{
    return longestNs;
}

std::int64_t CLockHolds::getTotalNs() noexcept
{
    return totalNs;
}

int CLockHolds::getCount() noexcept
{
    return holdCount;
}

void CLockHolds::onEntered(const void* lock) noexcept
{
    if (isWatched(lock) && depth++ == 0)
        beginNs = processorTimeNs();
}

void CLockHolds::onLeaving(const void* lock) noexcept
{
    if (!isWatched(lock) || depth == 0 || --depth > 0)
        return;
    const std::int64_t held = processorTimeNs() - beginNs;
    longestNs = std::max(longestNs.load(), held);
    totalNs += held;
    ++holdCount;
}

} // namespace tsm
