#include "Platform/CCriticalSection.h"
#include "Platform/CThreadId.h"

#include <gtest/gtest.h>

#include <chrono>
#include <fstream>
#include <iterator>
#include <pthread.h>
#include <sched.h>
#include <sstream>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>
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

/// A thread's present priority as the system has it: 0 and above for usual ones, below for
/// real-time ones (proc_pid_stat(5)).
int priorityOf(std::uint32_t thread)
{
    std::ifstream stream("/proc/self/task/" + std::to_string(thread) + "/stat");
    std::string text((std::istreambuf_iterator<char>(stream)), {});
    std::istringstream fields(text.substr(text.rfind(')') + 1));
    constexpr int kFieldsBefore = 15; // from the state on
    std::string field;
    for (int i = 0; i < kFieldsBefore; ++i)
        fields >> field;
    int priority = 0;
    fields >> priority;
    return priority;
}

TEST(CriticalSectionWithThreads, TheHolderInheritsThePriorityOfASleeper)
{
    CCriticalSection lock;
    std::atomic<bool> isGranted = true;
    bool hasInherited = false;
    std::thread sleeper;
    {
        const CLockScope hold(lock);
        ASSERT_GE(priorityOf(currentThreadId()), 0);
        sleeper = std::thread([&] {
            sched_param param{};
            param.sched_priority = sched_get_priority_min(SCHED_FIFO);
            isGranted = pthread_setschedparam(pthread_self(), SCHED_FIFO, &param) == 0;
            const CLockScope wait(lock);
        });
        for (int i = 0; i < 10000 && isGranted && !hasInherited; ++i) {
            std::this_thread::sleep_for(std::chrono::milliseconds(1)); // until it sleeps
            hasInherited = priorityOf(currentThreadId()) < 0;
        }
    }
    sleeper.join();
    if (!isGranted)
        GTEST_SKIP() << "this process may not have real-time priorities";
    EXPECT_TRUE(hasInherited);
    EXPECT_GE(priorityOf(currentThreadId()), 0);
}

TEST(CriticalSectionWithThreads, WorkInAForkedProcess)
{
    (void)currentThreadId();
    const pid_t child = fork();
    ASSERT_GE(child, 0);
    if (child == 0) {
        alarm(20);
        CCriticalSection lock;
        lock.enter();
        std::thread sleeper([&] { const CLockScope hold(lock); });
        std::this_thread::sleep_for(std::chrono::milliseconds(20)); // until it sleeps
        lock.leave();
        sleeper.join();
        _exit(0);
    }
    int status = -1;
    ASSERT_EQ(waitpid(child, &status, 0), child);
    EXPECT_EQ(status, 0);
}

} // namespace

} // namespace tsm
