#include "Core/CThread.h"

#include "Core/CPersistentThread.h"
#include "Core/CWorkerThreadPool.h"
#include "Platform/CThreadId.h"
#include "Tests/Support/CTestTree.h"

#include <atomic>
#include <functional>
#include <set>

namespace tsm {
namespace {

class CLoop : public CThread {
public:
    using CThread::CThread;
    ~CLoop() override { stopThread(); }
    CError* run() override
    {
        ++runs;
        seenId = currentThreadId();
        while (!isStopRequested())
            wakeEvent.wait();
        if (fails)
            TSM_FAIL("Broken.");
        return nullptr;
    }
    std::atomic<int> runs = 0;
    std::atomic<std::uint32_t> seenId = 0;
    bool fails = false;
};

class CJob : public CWorkerThread {
public:
    using CWork = std::function<const char*()>;
    explicit CJob(CWork doWork) : work(std::move(doWork)) {}
    CError* run() override
    {
        if (const char* failure = work())
            TSM_FAIL(failure);
        return nullptr;
    }

private:
    CWork work;
};

class AWorkerPoolThreads : public testing::Test {
protected:
    void TearDown() override { CWorkerThreadPool::clearIdleThreads(); }
    CPersistentThread* place(CJob::CWork work)
    {
        CPersistentThread* thread = nullptr;
        EXPECT_OK(CWorkerThreadPool::acquireThread(thread, CPtr<CWorkerThread>(new CJob(work))));
        list.add(thread);
        return thread;
    }
    void wakeAll()
    {
        for (CPersistentThread* thread : list)
            thread->wake();
    }
    CArray<CPersistentThread*> list;
};

} // namespace

TEST(AThreadThreads, RunsOnceUntilItIsStoppedAndCanStartAnew)
{
    CLoop thread("namer");
    thread.stopThread(); // not running: nothing happens
    for (int round = 1; round <= 3; ++round) {
        ASSERT_OK(thread.runThread(round == 2));
        EXPECT_FAILS_WITH(thread.runThread(false), "Thread is already running.");
        const std::uint32_t id = thread.getThreadId();
        EXPECT_EQ(CThread::findThreadName(id), CString("namer"));
        thread.stopThread();
        EXPECT_EQ(thread.runs, round);
        EXPECT_EQ(thread.seenId, id);
        EXPECT_EQ(CThread::findThreadName(id), CString());
        EXPECT_FALSE(thread.getIsRunning());
    }
}

TEST(AThreadThreads, ShowsTheErrorOfItsRun)
{
    CLoop thread;
    thread.fails = true;
    testing::internal::CaptureStderr();
    ASSERT_OK(thread.runThread(false));
    thread.stopThread();
    EXPECT_THAT(testing::internal::GetCapturedStderr(), testing::HasSubstr("Broken."));
}

TEST_F(AWorkerPoolThreads, RunJobsTogetherAndAreUsedAgain)
{
    constexpr int kJobs = 7;
    constexpr int kRounds = 50;
    std::set<CPersistentThread*> used;
    for (int round = 0; round < kRounds; ++round) {
        int results[kJobs] = {}; // plain: what jobs wrote is visible after the join
        std::atomic<int> started = 0;
        for (int i = 0; i < kJobs; ++i)
            used.insert(place([&, i]() -> const char* {
                // None ends before all run: they share no thread.
                ++started;
                while (started < kJobs)
                    CNativeThread::yield();
                results[i] = i + round;
                return nullptr;
            }));
        EXPECT_EQ(started, 0); // placed, not woken
        wakeAll();
        EXPECT_OK(CWorkerThreadPool::joinThreads(list));
        for (int i = 0; i < kJobs; ++i)
            EXPECT_EQ(results[i], i + round);
        CWorkerThreadPool::releaseThreads(list);
        EXPECT_TRUE(list.isEmpty());
    }
    EXPECT_EQ(used.size(), static_cast<std::size_t>(kJobs));
}

TEST_F(AWorkerPoolThreads, GiveTheFirstErrorOfTheListWhenAllHaveFinished)
{
    std::atomic<bool> isDone = false;
    place([]() -> const char* { return nullptr; });
    place([&] {
        while (!isDone)
            CNativeThread::yield();
        return "second";
    });
    place([&] {
        isDone = true;
        return "third";
    });
    wakeAll();
    EXPECT_FAILS_WITH(CWorkerThreadPool::joinThreads(list), "second");
    EXPECT_TRUE(isDone);
    CWorkerThreadPool::releaseThreads(list);
    EXPECT_OK(CWorkerThreadPool::joinThreads(list)); // empty
}

TEST_F(AWorkerPoolThreads, EndJobsThatNeverRan)
{
    const auto token = std::make_shared<int>();
    place([token]() -> const char* { return "never"; });
    EXPECT_EQ(token.use_count(), 2);
    EXPECT_OK(CWorkerThreadPool::joinThreads(list));
    CWorkerThreadPool::releaseThreads(list);
    EXPECT_EQ(token.use_count(), 1);
}

} // namespace tsm
