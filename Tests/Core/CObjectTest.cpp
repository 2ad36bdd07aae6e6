#include "Core/CObject.h"

#include "Core/CText.h"
#include "Tests/Support/CTestTree.h"

namespace tsm {
namespace {

/// Notes in which order its attributes are applied.
class CRecorder : public CObject {
public:
    static void declareClass(CObjectClassInfo& info)
    {
        CObject::declareClass(info);
        info.addAttr("first", &CRecorder::attrFirst);
        info.addAttr("second", &CRecorder::attrSecond);
        info.addAttr("broken", &CRecorder::attrBroken);
    }
    std::vector<std::string> applied;

private:
    CError* attrFirst(CAttrValue& value) { return note("first", value); }
    CError* attrSecond(CAttrValue& value) { return note("second", value); }
    CError* attrBroken(CAttrValue&) { TSM_FAIL("@tsmstr_CRecorder Broken '%1'.", "x"); }
    CError* note(const char* name, const CAttrValue& value)
    {
        applied.push_back(name + ("=" + value.asString().toUtf8()));
        return nullptr;
    }
};

class AnObject : public ATree {
protected:
    void SetUp() override { start({creatorRow<CRecorder>("test:recorder")}); }

    CObject& plain(CObject& parent, const char* name) { return make(parent, "core:object", name); }
    static std::string attr(const CObject& object, const char* name)
    {
        return object.getAttrString(name).toUtf8();
    }
    std::string expanded(CObject& object, const char* name, const char* text)
    {
        EXPECT_OK(object.setAttr(name, CString(text), false));
        return attr(object, name);
    }
};

TEST_F(AnObject, GetsTheNextIndexForANameThatExists)
{
    CObject& parent = plain(*root, "x");
    EXPECT_EQ(plain(parent, "param").getFullName(), "x.param");
    EXPECT_EQ(plain(parent, "param").getFullName(), "x.param#1");
    EXPECT_EQ(plain(parent, "param#7").getFullName(), "x.param#2");
    EXPECT_EQ(plain(parent, "other#7").getFullName(), "x.other#7");
    EXPECT_EQ(plain(parent, "odd#z").getFullName(), "x.odd");
    EXPECT_EQ(plain(parent, "ten#010").getFullName(), "x.ten#10");
}

TEST_F(AnObject, IsFoundByPath)
{
    CObject& a = plain(*root, "a");
    CObject& b = plain(a, "b");
    CObject& b1 = plain(a, "b");
    CObject& b9 = plain(a, "c#9");
    struct CRow {
        const char* path;
        CObject* expected;
    };
    for (const CRow& row : {CRow{"a.b", &b},
                            CRow{"a.b#", &b1},
                            CRow{"a.b#1", &b1},
                            CRow{"a.b#+1", &b1},
                            CRow{"a.b#-1", &b},
                            CRow{"a.b#+2", nullptr},
                            CRow{"a.b#2", nullptr},
                            CRow{"a.c", &b9},
                            CRow{"a.c#0", nullptr},
                            CRow{"a.c#9", &b9},
                            CRow{".", &b},
                            CRow{"^", &a},
                            CRow{"^b#1", &b1},
                            CRow{"^^", root.get()},
                            CRow{"^^^", nullptr},
                            CRow{"", nullptr},
                            CRow{"^c", &b9},
                            CRow{"/", &b},
                            CRow{"a", &a},
                            CRow{"a..b", &b},
                            CRow{".nothing", nullptr},
                            CRow{"shared::", application->getSharedRoot()}}) {
        SCOPED_TRACE(row.path);
        // "/" begins no path: the root is reached behind the first scanned character.
        CObject* expected = CString(row.path) == "/" ? root.get() : row.expected;
        EXPECT_EQ(b.findObject(row.path), expected);
    }
    EXPECT_EQ(root->findObject("^"), nullptr);
}

TEST_F(AnObject, IsReachedThroughTenShortcutsAtMost)
{
    CObject& goal = plain(*root, "goal");
    CObject& child = plain(goal, "child");
    CObject& shortcuts = make(*root, "core:shortcut", "s");
    CObject& near = plain(shortcuts, "near");
    ASSERT_OK(near.setAttr("target", CString("/goal"), true));
    EXPECT_EQ(root->findObject("s.near"), &goal);
    EXPECT_EQ(root->findObject("s.near.child"), &child);

    for (int i = 0; i < 12; ++i) {
        CObject& link = plain(shortcuts, ("l" + std::to_string(i)).c_str());
        const std::string target = i == 0 ? "/goal" : "/s.l" + std::to_string(i - 1);
        ASSERT_OK(link.setAttr("target", CString(target.c_str()), true));
    }
    EXPECT_EQ(root->findObject("s.l9"), &goal);
    EXPECT_EQ(root->findObject("s.l10"), nullptr);
}

TEST_F(AnObject, NamesWhatItCannotFind)
{
    CObject& object = plain(*root, "a");
    CRecorder* recorder = nullptr;
    EXPECT_FAILS_WITH(object.findObjectChecked(recorder, ".b"),
                      "Unable to find object '.b' ('a.b')");
    EXPECT_FAILS_WITH(object.findObjectChecked(recorder, "a"),
                      "Incompatible type of object 'a' ('a')");
    CTarget<CRecorder*> target;
    EXPECT_FAILS_WITH(object.findObjectByAttr(target, "who"),
                      "Object name attribute 'who' cannot be empty.");
    ASSERT_OK(object.setAttr("who", CString("^z"), false));
    EXPECT_FAILS_WITH(object.findObjectByAttr(target, "who"),
                      "Name attribute 'who' refers to a non-existent object '^z' ('a^z')");
    ASSERT_OK(object.setAttr("who", CString("a"), false));
    EXPECT_FAILS_WITH(object.findObjectByAttr(target, "who"),
                      "Name attribute 'who' refers to object 'a' ('a') of incompatible type.");
}

TEST_F(AnObject, RunsPendingHandlersLastWrittenFirst)
{
    CObject* child = nullptr;
    ASSERT_OK(root->addChild(child, "test:recorder", "r", false));
    auto& recorder = dynamic_cast<CRecorder&>(*child);
    ASSERT_OK(recorder.setAttr("first", CString("1"), false));
    ASSERT_OK(recorder.setAttr("second", CString("2"), false));
    ASSERT_OK(recorder.setAttr("first", CString("3"), false)); // keeps its place, gets the value
    EXPECT_THAT(recorder.applied, testing::IsEmpty());
    ASSERT_OK(recorder.initAttrs());
    EXPECT_THAT(recorder.applied, testing::ElementsAre("second=2", "first=3"));
    ASSERT_OK(recorder.setAttr("second", CString("5"), true));
    EXPECT_EQ(recorder.applied.back(), "second=5");
    ASSERT_OK(recorder.setAttr("", CString("5"), true));
    EXPECT_EQ(recorder.getAttr(""), nullptr);
}

TEST_F(AnObject, GivesAFailedHandlerItsPlaceInTheTrail)
{
    auto& recorder = make<CRecorder>(*root, "test:recorder", "r");
    const auto lines = takeLines(recorder.setAttr("broken", CString("1"), true));
    ASSERT_GE(lines.size(), 3u);
    EXPECT_EQ(lines[0], "Broken 'x'.");
    EXPECT_THAT(lines[1], testing::MatchesRegex(".*CObjectTest.cpp\\( [0-9]+ \\) // r"));
    EXPECT_THAT(lines[2], testing::MatchesRegex(".*Core/CObject.cpp\\( [0-9]+ \\) // r"));
}

TEST_F(AnObject, SpreadsNoChangeWithoutEnd)
{
    const char* const kMessage = "spreads over too many links.";
    // Each of three objects follows both others, layer by layer: the ways double with each layer.
    constexpr int kLayers = 40;
    const char* const names[] = {"a", "b", "c"};
    CObject* objects[] = {&plain(*root, "a"), &plain(*root, "b"), &plain(*root, "c")};
    for (int layer = 0; layer < kLayers; ++layer)
        for (int i = 0; i < 3; ++i) {
            CString text;
            for (int k = 1; k < 3; ++k)
                text += CString("{*/") + names[(i + k) % 3] + " x" + toString(layer) + "}";
            ASSERT_OK(objects[i]->setAttr("x" + toString(layer + 1), text, false));
        }
    EXPECT_THAT(takeMessage(objects[0]->setAttr("x0", CString("1"), true)),
                testing::EndsWith(kMessage));

    // A line in which each follows the one before; one that isn't too long works as ever.
    CObject* last = &plain(*root, "n0");
    for (int i = 1; i <= 5000; ++i) {
        const CString name = "n" + toString(i);
        CObject& next = plain(*root, name.toUtf8().c_str());
        ASSERT_OK(next.setAttr("x", "{*/n" + toString(i - 1) + " x}", false));
        last = &next;
    }
    EXPECT_THAT(takeMessage(root->findObject("n0")->setAttr("x", CString("1"), true)),
                testing::EndsWith(kMessage));
    ASSERT_OK(root->findObject("n4950")->setAttr("x", CString("7"), true));
    EXPECT_EQ(last->getAttrInt("x"), 7);
}

TEST_F(AnObject, EndsExpandingBeforeATextGrowsOutOfProportion)
{
    ASSERT_OK(root->setAttr("a0", CString("a few words"), false));
    for (int i = 0; i < 40; ++i) {
        const CString last = "{a" + toString(i) + "}";
        const std::string next = "a" + std::to_string(i + 1);
        ASSERT_OK(root->setAttr(next.c_str(), last + last, false));
        EXPECT_LE(root->getAttrString(next.c_str()).getLength(), 10000);
    }
    EXPECT_EQ(root->getAttrString("a2"), "a few wordsa few wordsa few wordsa few words");
    // A long text may hold references like any other.
    const std::string longText(100000, 'x');
    ASSERT_OK(root->setAttr("text", CString::fromUtf8(longText + "{a1}{none}"), false));
    EXPECT_EQ(root->getAttrString("text").toUtf8(), longText + "a few wordsa few words");
}

TEST_F(AnObject, ExpandsReferences)
{
    CObject& panel = plain(*root, "panel");
    CObject& inner = plain(panel, "inner");
    ASSERT_OK(root->setAttr("color", CString("red"), false));
    ASSERT_OK(panel.setAttr("tone", CString("warm"), false));
    ASSERT_OK(panel.setAttr("which", CString("tone"), false));
    ASSERT_OK(inner.setAttr("own", CString("mine"), false));
    EXPECT_EQ(expanded(inner, "a", "{color}"), "red");
    EXPECT_EQ(expanded(inner, "a", "<{color}, {tone}>"), "<red, warm>");
    EXPECT_EQ(expanded(inner, "a", "{@color?none}"), "none");
    EXPECT_EQ(expanded(inner, "a", "{@own}"), "mine");
    EXPECT_EQ(expanded(inner, "tone", "{/^?Panel}"), "warm");
    EXPECT_EQ(expanded(inner, "missing", "{/^?Panel}"), "Panel");
    EXPECT_EQ(expanded(inner, "a", "{/panel which}"), "tone");
    EXPECT_EQ(expanded(inner, "a", "{/nowhere which?-}"), "-");
    EXPECT_EQ(expanded(inner, "a", "{{which}}"), "warm"); // the inner one first
    EXPECT_EQ(expanded(inner, "z", "{?}"), "");
    EXPECT_EQ(expanded(inner, "y", "{?false}"), "false");
    EXPECT_EQ(expanded(inner, "z", "open { only"), "open { only");
    EXPECT_EQ(expanded(inner, "z", "open {"), "open {");
    EXPECT_EQ(expanded(inner, "a", "{full-name}"), "panel.inner");
}

TEST_F(AnObject, FollowsALinkedAttribute)
{
    CObject& source = plain(*root, "source");
    CObject& reader = plain(*root, "reader");
    CObject& second = plain(*root, "second");
    ASSERT_OK(source.setAttr("rate", CString("30"), false));
    EXPECT_EQ(expanded(reader, "fps", "{*/source rate}"), "30");
    EXPECT_EQ(expanded(second, "speed", "{*reader fps}"), "30"); // a child of an ancestor, by name
    ASSERT_OK(source.setAttr("rate", CString("60"), true));
    EXPECT_EQ(reader.getAttrInt("fps"), 60);
    EXPECT_EQ(second.getAttr("speed")->getType(), EAttrType::Integer);
    EXPECT_EQ(second.getAttrInt("speed"), 60);

    reader.destroyTree();
    ASSERT_OK(source.setAttr("rate", CString("15"), true));
    EXPECT_EQ(second.getAttrInt("speed"), 60);
    EXPECT_EQ(expanded(source, "self", "{*/source rate}"), "");
    EXPECT_EQ(expanded(source, "self", "{*rate}"), "");
    EXPECT_EQ(expanded(source, "self", "{*/gone rate}"), "");
}

TEST_F(AnObject, EndsARingOfLinks)
{
    CObject& a = plain(*root, "a");
    CObject& b = plain(*root, "b");
    EXPECT_EQ(expanded(a, "x", "{*/b x}"), "");
    EXPECT_EQ(expanded(b, "x", "{*/a x}"), "");
    ASSERT_OK(a.setAttr("x", CString("5"), true));
    EXPECT_EQ(b.getAttrInt("x"), 5);
    ASSERT_OK(b.setAttr("x", CString("6"), true));
    EXPECT_EQ(a.getAttrInt("x"), 6);
}

TEST_F(AnObject, RefusesAnUnfitChildAndLeavesNothingBehind)
{
    CRecorder* recorder = nullptr;
    EXPECT_FAILS_WITH(root->createChild(recorder, "core:object", "o", false),
                      "Object of invalid class created (child tag 'core:object', child name 'o').");
    EXPECT_FAILS_WITH(root->createChild(recorder, "nobody", "o", true),
                      "Run-time template 'nobody' does not exist.");
    EXPECT_EQ(recorder, nullptr);
    EXPECT_TRUE(root->getChildren().isEmpty());

    CAttrMap broken;
    broken.setText("broken", "1");
    EXPECT_FAILS_WITH(root->createChild(recorder, "test:recorder", "r", false, &broken),
                      "Broken 'x'.");
    EXPECT_TRUE(root->getChildren().isEmpty());
}

TEST(ErrorText, ReplacesItsPlaceholders)
{
    struct CRow {
        const char* message;
        const char* expected;
    };
    for (const CRow& row :
         {CRow{"@tsmstr_A_b Value '%1' of '%2'.", "Value 'one' of 'two'."}, CRow{"100%%", "100%"},
          CRow{"%0 and %a vanish", " and  vanish"}, CRow{"@no-blank", "@no-blank"},
          CRow{"%6%7 none", " none"}, CRow{"end%", "end"}, CRow{"%2%1", "twoone"}}) {
        SCOPED_TRACE(row.message);
        EXPECT_EQ(takeMessage(addError(nullptr, "File.cpp", 7, "", row.message, "one", "two")),
                  row.expected);
    }
    EXPECT_THAT(takeLines(addError(addError(nullptr, "A.cpp", 7, "x.y", "Cause."), "B.cpp", 8, "")),
                testing::ElementsAre("Cause.", "A.cpp( 7 ) // x.y", "B.cpp( 8 )"));
}

} // namespace
} // namespace tsm
