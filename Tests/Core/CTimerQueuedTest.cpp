#include "Core/CTimerQueued.h"

#include "Core/CNotifyServer.h"
#include "Core/CObjectContext.h"
#include "Core/CStdEventBridge.h"
#include "Platform/CMessageQueue.h"
#include "Platform/CThreadId.h"
#include "Tests/Support/CTestTree.h"

#include <chrono>
#include <functional>
#include <thread>

namespace tsm {
namespace {

using CClockTime = std::chrono::steady_clock;
using std::chrono::milliseconds;

class CTicked : public CObject {
public:
    static void declareClass(CObjectClassInfo& info)
    {
        CObject::declareClass(info);
        info.addEvent("on-tick", &CTicked::onTick);
    }
    std::vector<CClockTime::time_point> times;
    std::uint32_t thread = 0;
    std::function<void()> action;
    bool fails = false;

private:
    CError* onTick()
    {
        times.push_back(CClockTime::now());
        thread = currentThreadId();
        if (action)
            std::exchange(action, nullptr)();
        if (fails)
            TSM_FAIL("Broken.");
        return nullptr;
    }
};

class ATimerThreads : public ATree {
protected:
    void SetUp() override
    {
        start({creatorRow<CTicked>("test:ticked"), creatorRow<CTimerQueued>("core:timer"),
               creatorRow<CStdEventBridge>("ui:ui-event-bridge")});
        ui = &make<CStdEventBridge>(*root, "ui:ui-event-bridge", "ui");
        timer = &make<CTimerQueued>(*ui, "core:timer", "timer");
        ticked = &make<CTicked>(*ui, "test:ticked", "ticked");
        ticked->listenObject("ui.timer", "tick", "on-tick");
    }
    void TearDown() override
    {
        ATree::TearDown();
        CMessageQueue::dispatchPending();
    }
    void set(const char* name, const char* text) const
    {
        EXPECT_OK(timer->setAttr(name, CString(text), true));
    }
    int tickCount() const { return static_cast<int>(ticked->times.size()); }
    /// The thread's loop, for a time or until so many ticks have come.
    void loop(int ms, int ticks = 1 << 30) const
    {
        const auto end = CClockTime::now() + milliseconds(ms);
        while (CClockTime::now() < end && tickCount() < ticks) {
            CMessageQueue::wait(2);
            CMessageQueue::dispatchPending();
        }
    }
    /// Milliseconds between two ticks.
    double gapMs(int from, int to) const
    {
        return std::chrono::duration<double, std::milli>(
                   ticked->times[static_cast<std::size_t>(to)] -
                   ticked->times[static_cast<std::size_t>(from)])
            .count();
    }

    CStdEventBridge* ui = nullptr;
    CTimerQueued* timer = nullptr;
    CTicked* ticked = nullptr;
};

TEST_F(ATimerThreads, KeepItsPeriodWithinLimits)
{
    EXPECT_FALSE(timer->getIsActive());
    set("is-high-precision", "false"); // no period: still nothing to tick
    EXPECT_FALSE(timer->getIsActive());
    struct CRow {
        const char* name;
        const char* text;
        double seconds;
    };
    for (const CRow& row :
         {CRow{"fps", "0", 1000.0}, CRow{"fps", "5000", 0.001}, CRow{"fps", "nan", 1000.0},
          CRow{"fps", "40", 0.025}, CRow{"interval", "0", 0.001}, CRow{"interval", "-3", 0.001},
          CRow{"interval", "1e300", 1e300}, CRow{"interval", "0.5", 0.5}}) {
        SCOPED_TRACE(row.text);
        set(row.name, row.text);
        EXPECT_DOUBLE_EQ(timer->getInterval(), row.seconds);
        EXPECT_TRUE(timer->getIsActive());
    }
}

TEST_F(ATimerThreads, TicksOnTheTreesThreadWithoutAPeriodNever)
{
    loop(30);
    EXPECT_EQ(tickCount(), 0);
    set("fps", "100");
    loop(5000, 10);
    ASSERT_EQ(tickCount(), 10);
    EXPECT_EQ(ticked->thread, currentThreadId());
    EXPECT_GE(gapMs(0, 9), 70.0); // 90; a first one that comes late shortens it by a period
}

TEST_F(ATimerThreads, StartsAnewForAnotherPeriodOnly)
{
    set("interval", "1000");
    loop(5000, 1); // a start ticks at once
    set("interval", "1000");
    set("fps", "0.001");
    loop(50);
    EXPECT_EQ(tickCount(), 1);
    set("interval", "999");
    loop(5000, 2);
    EXPECT_EQ(tickCount(), 2);
}

TEST_F(ATimerThreads, PaysBackTheTimeOfATick)
{
    ticked->action = [] { std::this_thread::sleep_for(milliseconds(250)); };
    // 2.5 intervals: what fell due meanwhile is lost, the next two ticks fall away, and the time is
    // paid. A busy machine may delay any of them, so one of several runs has to be so.
    bool isPaid = false;
    for (int run = 0; run < 5 && !isPaid; ++run) {
        set("interval", run % 2 ? "0.1001" : "0.1"); // starts anew
        ticked->times.clear();
        loop(5000, 3);
        ASSERT_EQ(tickCount(), 3);
        isPaid = gapMs(0, 1) >= 450.0 && gapMs(1, 2) <= 300.0;
    }
    EXPECT_TRUE(isPaid);
}

TEST_F(ATimerThreads, SendsOneMoreTickAfterTwoSecondsWithoutAnAnswer)
{
    ticked->action = [] { std::this_thread::sleep_for(milliseconds(3000)); };
    set("interval", "0.5");
    loop(5000, 1);
    CMessageQueue::dispatchPending(); // what was posted while the listener slept
    ASSERT_EQ(tickCount(), 2);
    CMessageQueue::dispatchPending();
    EXPECT_EQ(tickCount(), 2);
}

TEST_F(ATimerThreads, GoesOnByTheOtherMeansAlone)
{
    set("interval", "0.02");
    loop(5000, 2);
    // One is on its way already when the means change.
    std::this_thread::sleep_for(milliseconds(50));
    set("is-high-precision", "false");
    const int before = tickCount();
    CMessageQueue::dispatchPending();
    EXPECT_EQ(tickCount(), before);
    loop(5000, before + 5);
    ASSERT_EQ(tickCount(), before + 5);
    // Two timers would need half of the time.
    EXPECT_GE(gapMs(before, before + 4), 60.0);
    set("is-high-precision", "true");
    loop(5000, before + 10);
    EXPECT_EQ(tickCount(), before + 10);
}

TEST_F(ATimerThreads, GoesOnAfterAnErrorOfItsListener)
{
    const CLogCollector log;
    ticked->fails = true;
    set("interval", "0.01");
    loop(5000, 3);
    EXPECT_EQ(tickCount(), 3);
    EXPECT_FALSE(log.lines.empty());
}

TEST_F(ATimerThreads, MayBeEndedByItsListenerEvenFromANestedLoop)
{
    bool isInner = false;
    ticked->action = [&] {
        ticked->action = [&] {
            isInner = true;
            timer->destroyTree();
        };
        for (int i = 0; i < 5000 && !isInner; ++i) {
            CMessageQueue::wait(1);
            CMessageQueue::dispatchPending();
        }
    };
    set("interval", "0.01");
    loop(5000, 2);
    EXPECT_TRUE(isInner);
    loop(50);
    EXPECT_EQ(tickCount(), 2);
}

TEST_F(ATimerThreads, EndWhileTheyTick)
{
    for (int i = 0; i < 100; ++i) {
        auto& other = make<CTimerQueued>(*ui, "core:timer", "other#");
        EXPECT_OK(other.setAttr("interval", CString("0.001"), true));
        if (i % 3 == 0)
            std::this_thread::sleep_for(milliseconds(1));
        if (i % 2)
            CMessageQueue::dispatchPending();
        other.destroyTree();
    }
}

TEST_F(ATimerThreads, NotifyReachesTheTreeOnlyWhileItIsThere)
{
    const std::uint32_t id = root->getContext()->getId();
    std::thread other([id] {
        CAttrMap params;
        CNotifyServer::notifyContext(id, "ui.timer", "tick", params);
    });
    other.join();
    EXPECT_EQ(tickCount(), 0);
    CMessageQueue::dispatchPending();
    EXPECT_EQ(tickCount(), 1);
    const CLogCollector log;
    root.reset();
    CAttrMap params;
    CNotifyServer::notifyContext(id, "ui.timer", "tick", params);
    EXPECT_TRUE(log.lines.empty());
}

} // namespace
} // namespace tsm
