#include "Core/CUpdateNotifier.h"

#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <string>
#include <thread>
#include <vector>

namespace tsm {

namespace {

class CProbe : public CUpdateListener {
public:
    using CHook = std::function<void(const CUpdateMessage&)>;
    explicit CProbe(CHook onMessage) : hook(std::move(onMessage)) {}
    ~CProbe() override { attach(nullptr); }
    void onUpdate(const CUpdateMessage& message) override { hook(message); }

private:
    CHook hook;
};

class AnUpdateNotifier : public ::testing::Test {
protected:
    CProbe::CHook note(const char* who)
    {
        return [this, who](const CUpdateMessage&) { heard.push_back(who); };
    }
    void broadcast(std::uint64_t kind)
    {
        const CUpdateMessage message{this, kind};
        notifier->broadcast(&message);
    }

    std::unique_ptr<CUpdateNotifier> notifier = std::make_unique<CUpdateNotifier>();
    std::vector<std::string> heard;
};

using CStrings = std::vector<std::string>;

} // namespace

TEST_F(AnUpdateNotifier, CallsTheListenersOfAKindInTheOrderOfJoining)
{
    CProbe c(note("c"));
    CProbe b(note("b"));
    CProbe other(note("other"));
    c.attach(notifier.get(), 7);
    b.attach(notifier.get(), 7);
    other.attach(notifier.get(), 8);
    broadcast(7);
    EXPECT_EQ(heard, (CStrings{"c", "b"}));
    c.attach(notifier.get(), 7); // joins anew, at the end
    broadcast(7);
    EXPECT_EQ(heard, (CStrings{"c", "b", "b", "c"}));
    b.attach(nullptr);
    EXPECT_TRUE(notifier->hasListeners(7));
    c.attach(nullptr);
    EXPECT_FALSE(notifier->hasListeners(7));
}

TEST_F(AnUpdateNotifier, TakesNoMessageForKindZero)
{
    CProbe listener([&](const CUpdateMessage& message) {
        EXPECT_EQ(message.sender, nullptr);
        heard.push_back("zero");
    });
    listener.attach(notifier.get(), 0);
    notifier->broadcast(nullptr);
    EXPECT_EQ(heard, (CStrings{"zero"}));
}

TEST_F(AnUpdateNotifier, AllowsJoiningAndLeavingInACall)
{
    CProbe late(note("late"));
    CProbe dropped(note("dropped"));
    auto doomed = std::make_unique<CProbe>(note("doomed"));
    CProbe first([&](const CUpdateMessage&) {
        heard.push_back("first");
        dropped.attach(nullptr);
        doomed.reset();
        late.attach(notifier.get(), 1);
        first.attach(notifier.get(), 1); // isn't called again for joining anew
    });
    first.attach(notifier.get(), 1);
    dropped.attach(notifier.get(), 1);
    doomed->attach(notifier.get(), 1);
    broadcast(1);
    EXPECT_EQ(heard, (CStrings{"first"}));
    first.attach(nullptr);
    broadcast(1);
    EXPECT_EQ(heard, (CStrings{"first", "late"}));
}

TEST_F(AnUpdateNotifier, MayEndBeforeItsListeners)
{
    CProbe listener(note("x"));
    listener.attach(notifier.get(), 1);
    CUpdateNotifier* gone = notifier.get();
    notifier.reset();
    EXPECT_FALSE(listener.isAttached());
    listener.attach(gone, 1);
    EXPECT_FALSE(listener.isAttached());
    CUpdateNotifier next;
    listener.attach(&next, 1);
    EXPECT_TRUE(listener.isAttached());
}

TEST(UpdateNotifierThreads, EndNotifiersAndListenersAgainstEachOther)
{
    for (int round = 0; round < 300; ++round) {
        auto notifier = std::make_unique<CUpdateNotifier>();
        CUpdateNotifier* address = notifier.get();
        std::thread joiner([address] {
            for (int i = 0; i < 20; ++i) {
                CProbe listener([](const CUpdateMessage&) {});
                listener.attach(address, 1);
            }
        });
        std::thread other([address] {
            CProbe listener([](const CUpdateMessage&) {});
            for (int i = 0; i < 20; ++i)
                listener.attach(address, 2);
        });
        if (round % 2)
            std::this_thread::yield();
        notifier.reset();
        joiner.join();
        other.join();
    }
}

TEST(UpdateNotifierThreads, WaitForACallBeforeAListenerGoes)
{
    CUpdateNotifier notifier;
    std::atomic<bool> isDone = false;
    std::thread sender([&] {
        const CUpdateMessage message{nullptr, 1};
        while (!isDone.load())
            notifier.broadcast(&message);
    });
    for (int i = 0; i < 2000; ++i) {
        int calls = 0; // would be written after its end if the call outlived the listener
        CProbe listener([&calls](const CUpdateMessage&) { ++calls; });
        listener.attach(&notifier, 1);
        if (i % 2)
            std::this_thread::yield();
    }
    isDone = true;
    sender.join();
}

TEST(UpdateNotifierThreads, LetAListenerLeaveItselfWhileAnotherThreadEndsIt)
{
    CUpdateNotifier notifier;
    const CUpdateMessage message{nullptr, 1};
    std::atomic<bool> isDone = false;
    std::thread sender([&] {
        while (!isDone.load())
            notifier.broadcast(&message);
    });
    for (int i = 0; i < 1000; ++i) {
        std::atomic<bool> isEnded = false;
        {
            CProbe* self = nullptr;
            CProbe listener([&](const CUpdateMessage&) {
                self->attach(nullptr);
                std::this_thread::yield();
                EXPECT_FALSE(isEnded.load());
            });
            self = &listener;
            listener.attach(&notifier, 1);
            if (i % 2)
                std::this_thread::yield();
        }
        isEnded = true;
    }
    isDone = true;
    sender.join();
}

} // namespace tsm
