#include "Platform/CClock.h"

#include <gtest/gtest.h>

#include <chrono>
#include <thread>

namespace tsm {

namespace {

TEST(AClock, RunsAtItsStatedFrequency)
{
    using Steady = std::chrono::steady_clock;
    // The reference is read outside of ours at the start and inside at the end, then the other way
    // round, so preemption can only widen the bounds.
    const Steady::time_point outerBegin = Steady::now();
    const std::int64_t begin = CClock::counter();
    const double secondsBegin = CClock::seconds();
    const Steady::time_point innerBegin = Steady::now();
    std::this_thread::sleep_for(std::chrono::milliseconds(30));
    const Steady::time_point innerEnd = Steady::now();
    const std::int64_t end = CClock::counter();
    const double secondsEnd = CClock::seconds();
    const Steady::time_point outerEnd = Steady::now();

    const double atLeast = std::chrono::duration<double>(innerEnd - innerBegin).count();
    const double atMost = std::chrono::duration<double>(outerEnd - outerBegin).count();
    const double counted =
        static_cast<double>(end - begin) / static_cast<double>(CClock::frequency());
    EXPECT_GE(counted, 0.999 * atLeast);
    EXPECT_LE(counted, 1.001 * atMost);
    EXPECT_GE(secondsEnd - secondsBegin, 0.999 * atLeast);
    EXPECT_LE(secondsEnd - secondsBegin, 1.001 * atMost);
}

TEST(AClock, BeginsItsSecondsWithTheFirstCall)
{
    const std::int64_t before = CClock::counter();
    const double first = CClock::seconds();
    std::this_thread::sleep_for(std::chrono::milliseconds(5));
    const double second = CClock::seconds();
    EXPECT_GE(first, 0.0);
    EXPECT_GE(second - first, 0.005);
    // Counted from a start in this process and not from the counter's own.
    EXPECT_LT(second, static_cast<double>(before) / static_cast<double>(CClock::frequency()));
}

} // namespace

} // namespace tsm
