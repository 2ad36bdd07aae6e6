#include "Platform/CCriticalSection.h"

#include <gtest/gtest.h>

#include <chrono>
#include <thread>
#include <vector>

namespace tsm {

namespace {

class CriticalSectionThreads : public testing::TestWithParam<int> {};

TEST_P(CriticalSectionThreads, KeepOthersOutOfTheSection)
{
    constexpr int kThreads = 4;
    constexpr int kRounds = 5000;
    CCriticalSection lock(GetParam());
    std::int64_t counter = 0; // plain: an unguarded increment is lost, and reported by TSan
    const auto work = [&] {
        for (int i = 0; i < kRounds; ++i) {
            CLockScope outer(lock);
            CLockScope inner(lock);
            ++counter;
            if (i % 512 == 0) // the others go to sleep meanwhile
                std::this_thread::sleep_for(std::chrono::microseconds(200));
        }
    };
    std::vector<std::thread> threads;
    for (int i = 0; i < kThreads; ++i)
        threads.emplace_back(work);
    for (std::thread& thread : threads)
        thread.join();
    EXPECT_EQ(counter, kThreads * kRounds);
    EXPECT_FALSE(lock.isHeldByThisThread());
}

INSTANTIATE_TEST_SUITE_P(SpinCounts, CriticalSectionThreads, testing::Values(0, 50, 4000));

bool canEnterElsewhere(CCriticalSection& lock)
{
    bool isEntered = false;
    std::thread([&] {
        isEntered = lock.tryEnter();
        if (isEntered)
            lock.leave();
    }).join();
    return isEntered;
}

TEST(CriticalSectionWithThreads, EnterOnlyAfterTheLastLevelIsLeft)
{
    CCriticalSection lock;
    lock.enter();
    ASSERT_TRUE(lock.tryEnter());
    EXPECT_FALSE(canEnterElsewhere(lock));
    lock.leave();
    EXPECT_TRUE(lock.isHeldByThisThread());
    EXPECT_FALSE(canEnterElsewhere(lock));
    lock.leave();
    EXPECT_FALSE(lock.isHeldByThisThread());
    EXPECT_TRUE(canEnterElsewhere(lock));
}

TEST(CriticalSectionWithThreads, AllWakeWhenTheHolderWasLong)
{
    CCriticalSection lock;
    std::atomic<int> arrived = 0;
    int passed = 0;
    lock.enter();
    std::vector<std::thread> sleepers;
    for (int i = 0; i < 6; ++i)
        sleepers.emplace_back([&] {
            ++arrived;
            CLockScope hold(lock);
            ++passed;
        });
    while (arrived < 6)
        std::this_thread::yield();
    std::this_thread::sleep_for(std::chrono::milliseconds(20)); // until they sleep in the system
    lock.leave();
    for (std::thread& sleeper : sleepers)
        sleeper.join();
    EXPECT_EQ(passed, 6);
}

} // namespace

} // namespace tsm
