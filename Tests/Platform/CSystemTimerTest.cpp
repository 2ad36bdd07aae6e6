#include "Platform/CMessageTimer.h"
#include "Platform/CThreadId.h"

#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <memory>
#include <thread>

namespace tsm {
namespace {

using std::chrono::milliseconds;

void sleepMs(int count)
{
    std::this_thread::sleep_for(milliseconds(count));
}

/// Counts ticks, and notes the thread and whether two overlap.
struct CCounter {
    std::atomic<int> count = 0;
    std::atomic<int> inside = 0;
    std::atomic<int> workMs = 0;
    std::atomic<bool> overlaps = false;
    std::atomic<std::uint32_t> thread = 0;

    static void tick(void* self)
    {
        auto* counter = static_cast<CCounter*>(self);
        if (++counter->inside > 1)
            counter->overlaps = true;
        counter->thread = currentThreadId();
        sleepMs(counter->workMs);
        --counter->inside;
        ++counter->count;
    }
    bool waitFor(int wanted) const
    {
        for (int i = 0; i < 1000 && count < wanted; ++i)
            sleepMs(5);
        return count >= wanted;
    }
};

} // namespace

TEST(ASystemTimerThreads, ShareOneThreadAndTickUntilTheyAreStopped)
{
    CCounter fast;
    CCounter slow;
    CCounter never;
    CSystemTimer first(&CCounter::tick, &fast);
    CSystemTimer second(&CCounter::tick, &slow);
    const CSystemTimer unstarted(&CCounter::tick, &never);
    ASSERT_EQ(first.start(0, 1), 0);
    ASSERT_EQ(second.start(20, 20), 0);
    ASSERT_TRUE(fast.waitFor(40));
    ASSERT_TRUE(slow.waitFor(2));
    first.stop();
    const int seen = fast.count;
    const int seenSlow = slow.count;
    ASSERT_TRUE(slow.waitFor(seenSlow + 2));
    EXPECT_EQ(fast.count, seen);
    EXPECT_EQ(never.count, 0);
    EXPECT_EQ(fast.thread, slow.thread);
    EXPECT_NE(fast.thread, currentThreadId());
}

TEST(ASystemTimerThreads, WaitForTheTickUnderWayWhenTheyEnd)
{
    for (int i = 0; i < 20; ++i) {
        CCounter counter;
        counter.workMs = 2;
        auto timer = std::make_unique<CSystemTimer>(&CCounter::tick, &counter);
        ASSERT_EQ(timer->start(0, 1), 0);
        ASSERT_TRUE(counter.waitFor(1));
        timer.reset(); // with it the thread ends, and the next round starts another one
        EXPECT_EQ(counter.inside, 0);
    }
}

TEST(ASystemTimerThreads, LeaveOutTheTicksThatASlowCallbackMissed)
{
    CCounter counter;
    counter.workMs = 50;
    CSystemTimer timer(&CCounter::tick, &counter);
    const auto begin = std::chrono::steady_clock::now();
    ASSERT_EQ(timer.start(0, 20), 0);
    ASSERT_TRUE(counter.waitFor(3));
    counter.workMs = 0;
    timer.stop();
    const auto passed = std::chrono::steady_clock::now() - begin;
    EXPECT_FALSE(counter.overlaps);
    // One every 20 ms at most, and the first at once: made-up ticks would come on top.
    EXPECT_LE(counter.count, 1 + passed / milliseconds(20));
}

TEST(AMessageTimerThreads, TicksOnItsOwnThreadAndMergesWhatThatMissed)
{
    CCounter counter;
    CMessageTimer timer(&CCounter::tick, &counter);
    ASSERT_EQ(timer.start(5), 0);
    EXPECT_TRUE(CMessageQueue::wait(5000));
    sleepMs(50); // several more, which are one by then
    EXPECT_EQ(counter.count, 0);
    CMessageQueue::dispatchPending();
    EXPECT_EQ(counter.count, 1);
    EXPECT_EQ(counter.thread, currentThreadId());
    EXPECT_TRUE(CMessageQueue::wait(5000));
    CMessageQueue::dispatchPending();
    EXPECT_EQ(counter.count, 2);
}

TEST(AMessageTimerThreads, TakesItsWaitingTickAlong)
{
    CCounter counter;
    auto timer = std::make_unique<CMessageTimer>(&CCounter::tick, &counter);
    ASSERT_EQ(timer->start(1), 0);
    EXPECT_TRUE(CMessageQueue::wait(5000));
    timer.reset();
    EXPECT_EQ(CMessageQueue::dispatchPending(), 0);
    EXPECT_EQ(counter.count, 0);
}

} // namespace tsm
