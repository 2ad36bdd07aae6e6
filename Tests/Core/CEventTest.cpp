#include "Core/CStdEventBridge.h"

#include "Platform/CMessageQueue.h"
#include "Tests/Support/CTestTree.h"

#include <algorithm>
#include <atomic>
#include <functional>
#include <thread>

namespace tsm {
namespace {

/// Notes the events it gets, and does what the test tells it to.
class CListener : public CObject {
public:
    static void declareClass(CObjectClassInfo& info)
    {
        CObject::declareClass(info);
        info.addEvent("plain", &CListener::onPlain);
        info.addEvent("full", &CListener::onFull);
    }
    std::vector<std::string>* notes = nullptr;
    std::function<void()> action;

private:
    CError* onPlain() { return note("plain"); }
    CError* onFull(CAttrMap& params)
    {
        return note(params.getString("event-name").toUtf8() + "@" +
                    params.getString("sender").toUtf8());
    }
    CError* note(const std::string& what)
    {
        if (notes)
            notes->push_back(getFullName().toUtf8() + ":" + what);
        if (action)
            std::exchange(action, nullptr)();
        return nullptr;
    }
};

class AnEvent : public ATree {
protected:
    void SetUp() override
    {
        start({creatorRow<CListener>("test:listener"),
               creatorRow<CStdEventBridge>("ui:ui-event-bridge")});
        ui = &make<CStdEventBridge>(*root, "ui:ui-event-bridge", "ui");
        sender = &make(*ui, "core:object", "sender");
        for (const char* name : {"a", "b", "c"})
            listeners.push_back(&listener(name));
        // Dispatch goes by address; the tests speak of the first, second and third.
        std::sort(listeners.begin(), listeners.end());
    }
    CListener& listener(const char* name)
    {
        auto& made = make<CListener>(*ui, "test:listener", name);
        made.notes = &notes;
        return made;
    }
    void listen(CListener& who, const char* procedure, const char* event = "change")
    {
        who.listenObject("ui.sender", event, procedure);
    }
    static std::string note(const CListener& who, const char* what)
    {
        return who.getFullName().toUtf8() + ":" + what;
    }

    CStdEventBridge* ui = nullptr;
    CObject* sender = nullptr;
    std::vector<CListener*> listeners;
    std::vector<std::string> notes;
};

TEST_F(AnEvent, ReachesWhoListensWithOrWithoutParameters)
{
    listen(*listeners[0], "plain");
    listen(*listeners[1], "full");
    EXPECT_OK(sender->sendEvent("change"));
    EXPECT_OK(sender->sendEvent("other"));
    EXPECT_THAT(notes, testing::ElementsAre(note(*listeners[0], "plain"),
                                            note(*listeners[1], "change@ui.sender")));
    listeners[0]->unlistenObject("ui.sender", "change");
    notes.clear();
    EXPECT_OK(sender->sendEvent("change"));
    EXPECT_EQ(notes.size(), 1u);
    EXPECT_FAILS_WITH(listeners[0]->runEvent("nothing"), "Unknown event 'nothing'.");
    const CLogCollector log;
    listen(*listeners[0], "nothing");
    EXPECT_THAT(log.lines, testing::ElementsAre(testing::StartsWith(
                               "Event handler 'nothing' not found in listenObject(). // ui.")));
}

TEST_F(AnEvent, SentByAListenerRunsBehindTheRestOfTheOuterOne)
{
    for (CListener* who : listeners)
        listen(*who, "full");
    listen(*listeners[0], "full", "nested");
    listeners[0]->action = [this] { EXPECT_OK(sender->sendEvent("nested")); };
    EXPECT_OK(sender->sendEvent("change"));
    EXPECT_THAT(notes, testing::ElementsAre(note(*listeners[0], "change@ui.sender"),
                                            note(*listeners[1], "change@ui.sender"),
                                            note(*listeners[2], "change@ui.sender"),
                                            note(*listeners[0], "nested@ui.sender")));
}

TEST_F(AnEvent, SkipsAListenerThatAnEarlierOneDestroyed)
{
    for (CListener* who : listeners)
        listen(*who, "plain");
    listeners[0]->action = [this] { listeners[1]->destroyTree(); };
    const std::string first = note(*listeners[0], "plain");
    const std::string third = note(*listeners[2], "plain");
    EXPECT_OK(sender->sendEvent("change"));
    EXPECT_THAT(notes, testing::ElementsAre(first, third));
}

TEST_F(AnEvent, NeedsAThreadOwnerAboveTheListener)
{
    auto& outside = make<CListener>(*root, "test:listener", "outside");
    outside.notes = &notes;
    listen(outside, "plain");
    EXPECT_OK(sender->sendEvent("change"));
    EXPECT_THAT(notes, testing::IsEmpty());
}

TEST_F(AnEvent, WaitsInTheQueueWhenTheBridgeIsForced)
{
    listen(*listeners[0], "full");
    listen(*listeners[1], "full");
    EXPECT_OK(sender->sendEvent("change", true));
    EXPECT_THAT(notes, testing::IsEmpty());
    const std::string second = note(*listeners[1], "change@ui.sender");
    listeners[0]->destroyTree(); // what was on its way to it is dropped
    (void)CMessageQueue::dispatchPending();
    EXPECT_THAT(notes, testing::ElementsAre(second));
}

TEST_F(AnEvent, LetsAChildBeReleasedFromItsOwnCallback)
{
    CObject& parent = make(*ui, "core:object", "parent");
    auto& child = make<CListener>(parent, "test:listener", "child");
    parent.listenObject("ui.parent.child", "done", "release-child-bridged");
    listen(child, "plain");
    child.action = [&child] { EXPECT_OK(child.sendEvent("done", true)); };
    EXPECT_OK(sender->sendEvent("change"));
    EXPECT_NE(root->findObject("ui.parent.child"), nullptr);
    (void)CMessageQueue::dispatchPending();
    EXPECT_EQ(root->findObject("ui.parent.child"), nullptr);
}

TEST_F(AnEvent, FromAnotherThreadRunsOnTheOwnersThreadInOrderThreads)
{
    listen(*listeners[0], "full", "one");
    listen(*listeners[0], "full", "two");
    constexpr int kRounds = 200;
    std::atomic<int> sent = 0;
    std::thread other([&] {
        for (int i = 0; i < kRounds; ++i) {
            EXPECT_OK(sender->sendEvent(i % 2 ? "two" : "one"));
            ++sent;
        }
    });
    while (static_cast<int>(notes.size()) < kRounds) {
        (void)CMessageQueue::wait(100);
        (void)CMessageQueue::dispatchPending();
    }
    other.join();
    for (int i = 0; i < kRounds; ++i)
        EXPECT_EQ(notes[static_cast<std::size_t>(i)],
                  note(*listeners[0], i % 2 ? "two@ui.sender" : "one@ui.sender"));
}

} // namespace
} // namespace tsm
