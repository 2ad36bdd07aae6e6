#include "Platform/CMessageQueue.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <atomic>
#include <functional>
#include <future>
#include <memory>
#include <poll.h>
#include <thread>
#include <vector>

namespace tsm {
namespace {

using testing::ElementsAre;

/// Notes what it gets and does what the test wants with it.
class CProbe : public CMessageReceiver {
public:
    using CAction = std::function<void(int message, std::int64_t parameter)>;
    explicit CProbe(CAction whatToDo) : action(std::move(whatToDo)) {}
    void onMessage(int message, std::int64_t parameter) override
    {
        // A copy: the action may end this object.
        const CAction held = action;
        held(message, parameter);
    }
    CAction action;
};

bool isAwake()
{
    pollfd wake{CMessageQueue::getWakeHandle(), POLLIN, 0};
    return poll(&wake, 1, 0) == 1;
}

class AMessageQueue : public testing::Test {
protected:
    void TearDown() override { CMessageQueue::dispatchPending(); }
    std::unique_ptr<CProbe> makeProbe()
    {
        return std::make_unique<CProbe>(
            [this](int message, std::int64_t) { got.push_back(message); });
    }
    static void post(CMessageReceiver& to, int message) { EXPECT_EQ(to.post(message, 0), 0); }
    std::vector<int> got;
};

TEST_F(AMessageQueue, DeliversInTheOrderOfPostingOverAllReceivers)
{
    const auto a = makeProbe(), b = makeProbe();
    post(*a, 1);
    post(*b, 2);
    post(*a, 3);
    EXPECT_THAT(got, ElementsAre()) << "nothing arrives before the thread asks";
    EXPECT_EQ(CMessageQueue::dispatchPending(), 3);
    EXPECT_THAT(got, ElementsAre(1, 2, 3));
    EXPECT_EQ(CMessageQueue::dispatchPending(), 0);
}

TEST_F(AMessageQueue, CarriesTheWholeParameter)
{
    std::int64_t parameter = 0;
    CProbe probe([&](int, std::int64_t value) { parameter = value; });
    EXPECT_EQ(probe.post(5120, INT64_MIN + 7), 0);
    CMessageQueue::dispatchPending();
    EXPECT_EQ(parameter, INT64_MIN + 7);
}

TEST_F(AMessageQueue, LeavesWhatIsPostedMeanwhileToTheNextRound)
{
    CProbe* self = nullptr;
    CProbe again([&](int message, std::int64_t) {
        got.push_back(message);
        post(*self, message + 1);
    });
    self = &again;
    post(again, 1);
    EXPECT_EQ(CMessageQueue::dispatchPending(), 1);
    EXPECT_EQ(CMessageQueue::dispatchPending(), 1);
    EXPECT_THAT(got, ElementsAre(1, 2));
    EXPECT_TRUE(isAwake());
}

TEST_F(AMessageQueue, MayBeDrivenFromInsideAMessage)
{
    const auto inner = makeProbe();
    CProbe outer([&](int message, std::int64_t) {
        got.push_back(message);
        EXPECT_EQ(CMessageQueue::dispatchPending(), 2) << "what was there and what came";
    });
    post(outer, 1);
    post(*inner, 2);
    outer.action = [&, action = outer.action](int message, std::int64_t parameter) {
        post(*inner, 3);
        action(message, parameter);
    };
    EXPECT_EQ(CMessageQueue::dispatchPending(), 1);
    EXPECT_THAT(got, ElementsAre(1, 2, 3));
}

TEST_F(AMessageQueue, DropsWhatADestroyedReceiverHasNotGot)
{
    auto a = makeProbe(), b = makeProbe();
    post(*a, 1);
    post(*b, 2);
    a.reset();
    EXPECT_TRUE(isAwake());
    CMessageQueue::dispatchPending();
    EXPECT_THAT(got, ElementsAre(2));
    post(*b, 3);
    b.reset();
    EXPECT_FALSE(isAwake());
    EXPECT_EQ(CMessageQueue::dispatchPending(), 0);
}

TEST_F(AMessageQueue, LetsAReceiverEndItselfAndOthers)
{
    auto victim = makeProbe();
    const auto last = makeProbe();
    std::unique_ptr<CProbe> killer;
    killer = std::make_unique<CProbe>([&](int message, std::int64_t) {
        got.push_back(message);
        victim.reset();
        killer.reset();
    });
    for (CProbe* probe : {killer.get(), victim.get(), killer.get(), last.get()})
        post(*probe, static_cast<int>(got.size()));
    EXPECT_EQ(CMessageQueue::dispatchPending(), 2);
    EXPECT_FALSE(killer || victim);
    EXPECT_EQ(got.size(), 2u);
}

TEST_F(AMessageQueue, ShowsWaitingMessagesByItsHandle)
{
    const auto probe = makeProbe();
    EXPECT_FALSE(isAwake());
    EXPECT_FALSE(CMessageQueue::wait(0));
    post(*probe, 1);
    post(*probe, 2);
    EXPECT_TRUE(isAwake());
    EXPECT_TRUE(CMessageQueue::wait(-1));
    CMessageQueue::dispatchPending();
    EXPECT_FALSE(isAwake());
}

TEST(AMessageQueueThreads, KeepTheOrderOfEachSender)
{
    constexpr int kSenders = 4, kCount = 5000;
    std::vector<std::int64_t> latest(kSenders, -1);
    int total = 0;
    CProbe receiver([&](int sender, std::int64_t number) {
        EXPECT_EQ(number, ++latest[static_cast<std::size_t>(sender)]);
        ++total;
    });
    std::vector<std::thread> senders;
    for (int sender = 0; sender < kSenders; ++sender)
        senders.emplace_back([&, sender] {
            for (int i = 0; i < kCount; ++i)
                EXPECT_EQ(receiver.post(sender, i), 0);
        });
    while (total < kSenders * kCount && CMessageQueue::wait(10000))
        CMessageQueue::dispatchPending();
    for (std::thread& sender : senders)
        sender.join();
    EXPECT_EQ(total, kSenders * kCount);
}

TEST(AMessageQueueThreads, WakeAWaitingThread)
{
    std::promise<CProbe*> made;
    std::thread::id deliveredOn;
    std::thread waiting([&] {
        CProbe probe([&](int, std::int64_t) { deliveredOn = std::this_thread::get_id(); });
        made.set_value(&probe);
        EXPECT_TRUE(CMessageQueue::wait(-1));
        EXPECT_EQ(CMessageQueue::dispatchPending(), 1);
    });
    const std::thread::id expected = waiting.get_id();
    EXPECT_EQ(made.get_future().get()->post(1, 0), 0);
    waiting.join();
    EXPECT_EQ(deliveredOn, expected);
}

TEST(AMessageQueueThreads, ReceiversOutliveTheirThread)
{
    bool isDelivered = false;
    std::unique_ptr<CProbe> probe;
    std::thread([&] {
        probe = std::make_unique<CProbe>([&](int, std::int64_t) { isDelivered = true; });
        EXPECT_EQ(probe->post(1, 0), 0);
    }).join();
    EXPECT_NE(probe->post(2, 0), 0) << "nobody will ever take it";
    CMessageQueue::dispatchPending();
    probe.reset();
    EXPECT_FALSE(isDelivered);
}

TEST(AMessageQueueThreads, PostingGoesOnWhileTheThreadEnds)
{
    for (int round = 0; round < 50; ++round) {
        std::unique_ptr<CProbe> probe;
        std::promise<void> made;
        std::thread owner([&] {
            probe = std::make_unique<CProbe>([](int, std::int64_t) {});
            made.set_value();
            CMessageQueue::wait(1);
            CMessageQueue::dispatchPending();
        });
        made.get_future().get();
        while (probe->post(1, 0) == 0)
            ;
        owner.join();
    }
}

TEST(AMessageQueueThreads, HaveAQueueEach)
{
    int count = 0;
    CProbe here([&](int, std::int64_t) { ++count; });
    EXPECT_EQ(here.post(1, 0), 0);
    std::thread([] { EXPECT_EQ(CMessageQueue::dispatchPending(), 0); }).join();
    EXPECT_EQ(CMessageQueue::dispatchPending(), 1);
    EXPECT_EQ(count, 1);
}

} // namespace
} // namespace tsm
