#include "Core/CSharedAttribute.h"

#include "Core/CAttrDoubler.h"
#include "Core/CStdEventBridge.h"
#include "Platform/CMessageQueue.h"
#include "Tests/Support/CTestTree.h"

#include <thread>

namespace tsm {
namespace {

using CAttrs = std::vector<std::pair<const char*, const char*>>;

class AnAttribute : public ATree {
protected:
    void SetUp() override
    {
        start({creatorRow<CSharedAttribute>("core:shared-attribute"),
               creatorRow<CAttrDoubler>("core:attr-doubler"),
               creatorRow<CStdEventBridge>("ui:ui-event-bridge")});
        ASSERT_TRUE(store.removeData("drag-precision", nullptr));
        ui = &make<CStdEventBridge>(*root, "ui:ui-event-bridge", "ui");
    }
    template <class T>
    static CError* create(T*& object, CObject& parent, const char* tag, const char* name,
                          const CAttrs& attrs)
    {
        CAttrMap map;
        for (const auto& [key, value] : attrs)
            map.setText(key, value);
        return parent.createChild(object, tag, name, false, nullptr, &map);
    }
    CSharedAttribute& shared(CObject& parent, CAttrs more = {})
    {
        more.insert(more.end(),
                    {{"storage-type", "global"}, {"attribute", "precision"}, {"def-value", "0.8"}});
        CSharedAttribute* made = nullptr;
        EXPECT_OK(create(made, parent, "core:shared-attribute", "drag-precision", more));
        return *made;
    }
    static std::string valueOf(const CObject& object)
    {
        return object.getAttrString("precision").toUtf8();
    }

    CAppData& store = CAppData::getStore(CAppData::EStore::Global);
    CStdEventBridge* ui = nullptr;
};

TEST_F(AnAttribute, ShowsTheStoredValueOrTheDefault)
{
    EXPECT_EQ(valueOf(shared(*ui)), "0.8");
    store.writeText("drag-precision", "0.25", nullptr);
    CObject& scope = make(*ui, "core:object", "global-data");
    EXPECT_EQ(valueOf(shared(scope)), "0.25");
    EXPECT_EQ(valueOf(shared(scope, {{"data-name", "another-key"}})), "0.8");
}

TEST_F(AnAttribute, FollowsTheStoreInAllInstances)
{
    CTreePtr<CObject> other;
    ASSERT_OK(application->initRootObject(other, CString()));
    CSharedAttribute& first = shared(*ui);
    CSharedAttribute& second = shared(make<CStdEventBridge>(*other, "ui:ui-event-bridge", "ui"));
    CObject& reader = make(*ui, "core:object", "reader");
    ASSERT_OK(reader.setAttr("drag", "{*/ui.drag-precision precision}", true));
    EXPECT_EQ(reader.getAttrString("drag"), "0.8");
    // From any thread: the attributes change on their own.
    std::thread([&] { first.setValue("0.5"); }).join();
    EXPECT_EQ(valueOf(first), "0.8");
    CMessageQueue::dispatchPending();
    EXPECT_EQ(valueOf(first), "0.5");
    EXPECT_EQ(valueOf(second), "0.5");
    EXPECT_EQ(reader.getAttrString("drag"), "0.5");
    store.removeData("drag-precision", nullptr);
    CMessageQueue::dispatchPending();
    EXPECT_EQ(valueOf(second), "0.8");
}

TEST_F(AnAttribute, MayGoWhileItsUpdateIsOnTheWay)
{
    CSharedAttribute& gone = shared(*ui);
    gone.setValue("0.5");
    gone.destroyTree();
    EXPECT_EQ(valueOf(shared(*ui)), "0.5");
    CMessageQueue::dispatchPending();
}

TEST_F(AnAttribute, NeedsAStoreAndAName)
{
    CSharedAttribute* made = nullptr;
    EXPECT_FAILS_WITH(create(made, *ui, "core:shared-attribute", "a",
                             {{"storage-type", "Global"}, {"attribute", "x"}}),
                      "Invalid storage type \"Global\" specified.");
    EXPECT_FAILS_WITH(create(made, *ui, "core:shared-attribute", "a", {{"storage-type", "group"}}),
                      "No attached attribute name specified.");
}

TEST_F(AnAttribute, IsDoubledInOtherObjects)
{
    CObject& source = make(*ui, "core:object", "source");
    CObject& a = make(*ui, "core:object", "a");
    CObject& b = make(*ui, "core:object", "b");
    ASSERT_OK(source.setAttr("height", "7", true));
    CAttrDoubler* doubler = nullptr;
    ASSERT_OK(create(doubler, source, "core:attr-doubler", "doubler",
                     {{"target", "^^a  ui.b"}, {"attr", "scroller"}, {"value", "{*/^ height}"}}));
    EXPECT_EQ(a.getAttrInt("scroller"), 7);
    ASSERT_OK(source.setAttr("height", "9", true));
    EXPECT_EQ(a.getAttrInt("scroller"), 9);
    EXPECT_EQ(b.getAttrInt("scroller"), 9);
    b.destroyTree();
    ASSERT_OK(source.setAttr("height", "11", true));
    EXPECT_EQ(a.getAttrInt("scroller"), 11);

    EXPECT_FAILS_WITH(create(doubler, source, "core:attr-doubler", "d", {{"target", " "}}),
                      "No target objects specified.");
    EXPECT_FAILS_WITH(create(doubler, source, "core:attr-doubler", "d", {{"target", "ui.b"}}),
                      "Target object 'ui.b' not found.");
    // One that is its own target ends.
    ASSERT_OK(create(doubler, *ui, "core:attr-doubler", "self",
                     {{"target", "."}, {"attr", "value"}, {"value", "1"}}));
    ASSERT_OK(doubler->setAttr("value", "2", true));
    EXPECT_EQ(doubler->getAttrInt("value"), 2);
}

} // namespace
} // namespace tsm
