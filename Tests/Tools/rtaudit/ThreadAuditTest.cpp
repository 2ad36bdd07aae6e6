#include "Tools/rtaudit/CThreadAudit.h"

#include "Core/CMemory.h"
#include "Platform/CCriticalSection.h"
#include "Tools/rtaudit/CAuditKinds.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <cstdlib>
#include <functional>
#include <mutex>
#include <sys/mman.h>
#include <sys/syscall.h>
#include <thread>
#include <unistd.h>

namespace tsm {
namespace {

class AnAudit : public testing::Test {
protected:
    void SetUp() override
    {
        if (!CThreadAudit::isAvailable())
            GTEST_SKIP() << "a sanitizer has the heap";
    }
    static CAuditCounts countsOf(const std::function<void()>& work)
    {
        CAuditCounts counts;
        const CThreadAudit audit(counts);
        work();
        return counts;
    }
};

// The compiler may leave out what nobody looks at.
void* volatile seen = nullptr;

class ABlock : public AnAudit {
protected:
    void SetUp() override
    {
        AnAudit::SetUp();
        if (IsSkipped())
            return;
        CError* error = engine.start(512);
        ASSERT_EQ(error, nullptr) << error->getMessage().toUtf8();
    }
    /// The verdict on steady blocks with that work inside of some.
    std::string verdictOn(const std::function<void()>& work)
    {
        CAuditKind kind{"steady",
                        nullptr,
                        [](CAuditEngine&, int) {},
                        [&](CAuditEngine& audited, int) { audited.runInside(work); },
                        {},
                        4};
        CAuditRow row;
        EXPECT_TRUE(runAudit(engine, kind, row));
        return auditVerdict(row);
    }
    CAuditEngine engine;
};

using AnAuditThreads = AnAudit;

} // namespace

TEST_F(AnAudit, CountsTheHeapWhoeverAsksForIt)
{
    const CAuditCounts counts = countsOf([] {
        seen = std::malloc(1);
        std::free(seen);
        seen = ::operator new(1);
        ::operator delete(seen);
        seen = std::calloc(1, 8);
        seen = std::realloc(seen, 16); // asks and gives back
        std::free(seen);
        seen = std::aligned_alloc(64, 64);
        std::free(seen);
        seen = allocBlock(1 << 20); // beyond the pools
        freeBlock(seen);
    });
    EXPECT_EQ(counts.allocations, 6);
    EXPECT_EQ(counts.frees, 6);
}

TEST_F(AnAudit, CountsRefillsOfTheBlockAllocatorAlone)
{
    std::vector<void*> blocks(1000);
    const CAuditCounts counts = countsOf([&] {
        for (void*& block : blocks)
            block = allocBlock(3000);
    });
    EXPECT_GT(counts.refills, 0);
    EXPECT_EQ(counts.allocations, counts.refills);
    EXPECT_EQ(countsOf([&] {
                  for (void* block : blocks)
                      freeBlock(block);
                  for (void*& block : blocks)
                      block = allocBlock(3000);
              }).refills,
              0);
    for (void* block : blocks)
        freeBlock(block);
}

TEST_F(AnAudit, CountsSystemCallsByNumberAndLeavesTheirResults)
{
    if (!CThreadAudit::countsSystemCalls())
        GTEST_SKIP() << "this kernel doesn't hand system calls over";
    const pid_t parent = getppid();
    pid_t answer = 0;
    char text[3] = {};
    int pipes[2] = {};
    const CAuditCounts counts = countsOf([&] {
        answer = getppid();
        ASSERT_EQ(pipe(pipes), 0);
        ASSERT_EQ(write(pipes[1], "abc", 3), 3);
        ASSERT_EQ(read(pipes[0], text, 3), 3);
        (void)std::chrono::steady_clock::now(); // without the kernel
    });
    close(pipes[0]);
    close(pipes[1]);
    EXPECT_EQ(answer, parent);
    EXPECT_EQ(std::string(text, 3), "abc");
    ASSERT_EQ(counts.systemCalls, 4);
    EXPECT_EQ(counts.firstCalls[0], SYS_getppid);
    EXPECT_EQ(counts.firstCalls[2], SYS_write);
    EXPECT_EQ(counts.firstCalls[3], SYS_read);
}

TEST_F(AnAudit, CountsThePagesThatAreTouchedFirst)
{
    constexpr std::size_t kPages = 64;
    const auto bytes = kPages * static_cast<std::size_t>(sysconf(_SC_PAGESIZE));
    void* memory = mmap(nullptr, bytes, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
    ASSERT_NE(memory, MAP_FAILED);
    madvise(memory, bytes, MADV_NOHUGEPAGE);
    const auto touch = [&] {
        for (std::size_t i = 0; i < bytes; i += bytes / kPages)
            static_cast<volatile char*>(memory)[i] = 1;
    };
    EXPECT_GE(countsOf(touch).pageFaults, static_cast<std::int64_t>(kPages));
    EXPECT_LT(countsOf(touch).pageFaults, static_cast<std::int64_t>(kPages));
    munmap(memory, bytes);
}

TEST_F(AnAuditThreads, CountsLocksAndWaitsByLockOnItsOwnThread)
{
    CCriticalSection free{50};
    CCriticalSection held{50};
    std::mutex mutex;
    std::atomic<bool> isHeld = false;
    std::thread holder([&] {
        const CLockScope scope(held);
        const std::lock_guard guard(mutex);
        isHeld = true;
        std::this_thread::sleep_for(std::chrono::milliseconds(300)); // until it is waited for
    });
    while (!isHeld)
        std::this_thread::yield();
    const CAuditCounts counts = countsOf([&] {
        for (int i = 0; i < 3; ++i)
            const CLockScope scope(free);
        const CLockScope scope(held);
        const std::lock_guard guard(mutex);
    });
    holder.join();
    ASSERT_EQ(counts.lockCount, 3);
    EXPECT_EQ(counts.locks[0].lock, &free);
    EXPECT_EQ(counts.locks[0].acquisitions, 3);
    EXPECT_EQ(counts.locks[0].waits, 0);
    EXPECT_EQ(counts.locks[1].waits, 1);
    EXPECT_GT(counts.locks[1].longestWaitNs, 1'000'000);
    EXPECT_EQ(counts.locks[2].lock, &mutex);
    EXPECT_EQ(counts.acquisitions(), 5);
}

TEST_F(ABlock, ThatAllocatesLocksOrCallsTheSystemIsCaught)
{
    EXPECT_EQ(verdictOn([] {}), "");
    EXPECT_EQ(verdictOn([] {
                  seen = std::malloc(1);
                  std::free(seen);
              }),
              "allocates, frees");
    EXPECT_EQ(verdictOn([this] {
                  const CAudioParamLock lock(
                      *engine.getWrapper().getParamCollector().find("plugin.modMain.oversampling"));
              }),
              "locks CAudioParamCollector, locks a parameter");
    static std::mutex foreign;
    EXPECT_THAT(verdictOn([] { const std::lock_guard lock(foreign); }),
                testing::StartsWith("locks "));
    if (CThreadAudit::countsSystemCalls()) {
        EXPECT_EQ(verdictOn([] { std::this_thread::yield(); }), "calls the system");
    }
}

TEST_F(ABlock, OfEachKindKeepsToItsRule)
{
    for (const CAuditKind& kind : auditKinds()) {
        SCOPED_TRACE(kind.name);
        CAuditRow row;
        if (!kind.isBeside && runAudit(engine, kind, row)) {
            EXPECT_EQ(auditVerdict(row), "");
            EXPECT_EQ(row.waits, 0);
        }
    }
}

class ABlockThreads : public ABlock {};

TEST_F(ABlockThreads, WaitsForTheControlSideOnlyWhereThatHandsOver)
{
    for (const CAuditKind& kind : auditKinds()) {
        CAuditRow row;
        if (!kind.isBeside || !runAudit(engine, kind, row))
            continue;
        EXPECT_EQ(auditVerdict(row), "");
        for (const std::string& owner : row.waitedOwners)
            EXPECT_EQ(owner, "CAudioEnv");
        EXPECT_GT(row.foreignHolds, 0);
    }
}

} // namespace tsm
