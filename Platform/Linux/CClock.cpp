#include "Platform/CClock.h"

#include <atomic>

#include <time.h>

namespace tsm {

namespace {

constexpr std::int64_t kTicksPerSecond = 1'000'000'000;

// 0: not noted yet. The counter starts with the machine, so a real time is never 0.
constinit std::atomic<std::int64_t> firstNoted = 0;

} // namespace

std::int64_t CClock::counter() noexcept
{
    timespec now{};
    clock_gettime(CLOCK_MONOTONIC, &now);
    return static_cast<std::int64_t>(now.tv_sec) * kTicksPerSecond + now.tv_nsec;
}

std::int64_t CClock::frequency() noexcept
{
    return kTicksPerSecond;
}

double CClock::seconds() noexcept
{
    const std::int64_t now = counter();
    std::int64_t start = 0;
    if (firstNoted.compare_exchange_strong(start, now, std::memory_order_relaxed))
        start = now;
    // A thread that read the clock just before the one that noted the start isn't before it.
    return now > start ? static_cast<double>(now - start) / static_cast<double>(kTicksPerSecond)
                       : 0.0;
}

} // namespace tsm
