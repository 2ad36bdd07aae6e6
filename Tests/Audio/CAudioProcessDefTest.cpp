#include "Audio/CParamRange.h"
#include "Tests/Support/CGraphTree.h"

namespace tsm::test {

namespace {

/// Definitions made one by one, without a graph.
class ADefinition : public ATree {
protected:
    void SetUp() override
    {
        start({creatorRow<CAudioProcessLinkDef>("link"),
               creatorRow<CAudioProcessBypassStateDef>("state"),
               creatorRow<CAudioParamAllocDef>("alloc"), creatorRow<CTestGainDef>("gain")});
    }
    template <class T>
    CError* makeFrom(const char* tag, const CAttrs& attrs, T*& made)
    {
        CAttrMap map;
        for (const auto& [name, value] : attrs)
            map.setText(name.c_str(), value.c_str());
        return root->createChild(made, tag, "", false, nullptr, &map);
    }
};

} // namespace

TEST_F(ADefinition, OfALinkReadsBothEnds)
{
    struct CRow {
        const char* src;
        const char* name;
        int port;
    };
    for (const CRow& row : {CRow{"modMeter/1", "modMeter", 1}, CRow{"modMeter/01", "modMeter", 1},
                            CRow{"a/0x10", "a", 16}, CRow{"*", "*", 0}, CRow{"a", "a", 0}}) {
        SCOPED_TRACE(row.src);
        CAudioProcessLinkDef* made = nullptr;
        ASSERT_OK(makeFrom("link", {{"src", row.src}, {"dst", "b"}}, made));
        EXPECT_EQ(made->getSource().name, row.name);
        EXPECT_EQ(made->getSource().port, row.port);
        EXPECT_EQ(made->getStateId(), -1);
    }
}

TEST_F(ADefinition, OfALinkTellsWhatIsWrong)
{
    struct CRow {
        CAttrs attrs;
        const char* message;
    };
    const CRow rows[] = {
        {{{"dst", "b"}}, "No 'src' attribute defined."},
        {{{"src", "a"}}, "No 'dst' attribute defined."},
        {{{"src", "a/"}, {"dst", "b"}},
         "Invalid port in the 'src' attribute value 'a/' specified."},
        {{{"src", "a/-1"}, {"dst", "b"}},
         "Invalid port in the 'src' attribute value 'a/-1' specified."},
        {{{"src", "a/1/2"}, {"dst", "b"}},
         "Invalid port in the 'src' attribute value 'a/1/2' specified."},
        {{{"src", "/1"}, {"dst", "b"}},
         "Invalid process in the 'src' attribute value '/1' specified."},
        {{{"src", "a"}, {"dst", "b/x"}},
         "Invalid port in the 'dst' attribute value 'b/x' specified."},
        {{{"src", "a"}, {"dst", "/0"}},
         "Invalid process in the 'dst' attribute value '/0' specified."},
        {{{"src", "a"}, {"dst", "b"}, {"state-id", "-2"}},
         "Invalid state identifier '-2' specified."},
    };
    for (const CRow& row : rows) {
        CAudioProcessLinkDef* made = nullptr;
        EXPECT_FAILS_WITH(makeFrom("link", row.attrs, made), row.message);
    }
}

TEST_F(ADefinition, OfALinkKeepsTheStateIdsThatAreOnes)
{
    CAudioProcessLinkDef* made = nullptr;
    ASSERT_OK(makeFrom(
        "link",
        {{"src", "a"}, {"dst", "b"}, {"bypass-state-id", "0 1 x -2"}, {"state-id", "no number"}},
        made));
    ASSERT_EQ(made->getBypassStateIds().getCount(), 2);
    EXPECT_EQ(made->getBypassStateIds()[0], 0);
    EXPECT_EQ(made->getBypassStateIds()[1], 1);
    EXPECT_EQ(made->getStateId(), -1);
}

TEST_F(ADefinition, OfASlotOrAProcessTellsWhatIsWrong)
{
    CAudioParamAllocDef* slot = nullptr;
    EXPECT_FAILS_WITH(makeFrom("alloc", {{"index", "0"}}, slot),
                      "Invalid parameter name specified.");
    EXPECT_FAILS_WITH(makeFrom("alloc", {{"index", "-3"}, {"param-name", "gain"}}, slot),
                      "Invalid parameter's 'gain' index '-3' specified.");
    CTestGainDef* process = nullptr;
    EXPECT_FAILS_WITH(makeFrom("gain", {{"stack-index-shift", "-1"}}, process),
                      "Invalid stack index shift value '-1' specified.");
}

TEST_F(ADefinition, OfABypassStateTellsWhatIsWrong)
{
    CAudioProcessBypassStateDef* made = nullptr;
    EXPECT_FAILS_WITH(makeFrom("state", {{"id", "1"}}, made), "Invalid parameter name specified.");
    EXPECT_FAILS_WITH(makeFrom("state", {{"param", "p"}, {"range", "[1;2"}}, made),
                      "Invalid 'range' attribute value '[1;2' specified.");
    EXPECT_FAILS_WITH(makeFrom("state", {{"param", "p"}, {"and-range", "[2;1]"}}, made),
                      "Invalid 'and-range' attribute value '[2;1]' specified.");
}

TEST_F(ADefinition, OfABypassStateMatchesByValueOrRange)
{
    struct CRow {
        CAttrs attrs;
        double value;
        double andValue;
        bool isActive;
    };
    const CAttrs both = {{"value", "2.0"}, {"and-param", "q"}, {"and-value", "1"}};
    const CAttrs ranges = {
        {"range", "[1;3;1]"}, {"and-param", "q"}, {"and-range", "(0;*;1]"}, {"value", "99"}};
    const CAttrs half = {{"range", "[5;6]"}, {"and-param", "q"}, {"value", "2"}};
    const CRow rows[] = {
        {{}, 1.05, 0.0, true}, // an enumeration that is a little off
        {{}, 1.2, 0.0, false},
        {{}, 0.95, 0.0, true},
        {{{"value", "0"}}, 0.0, 0.0, true},
        {{{"value", "1.0"}, {"is-inverted", "true"}}, 1.0, 0.0, false},
        {{{"value", "1.0"}, {"is-inverted", "true"}}, 0.0, 0.0, true},
        {{{"range", "[2;4;1]"}}, 1.5, 0.0, true}, // 1.5 steps are 2
        {{{"range", "[2;4;1]"}}, 1.4, 0.0, false},
        {both, 2.0, 1.0, true},
        {both, 2.0, 0.0, false},
        {both, 1.0, 1.0, false},
        {ranges, 2.0, 1.0, true},
        {ranges, 2.0, 0.0, false},
        {ranges, 4.0, 1.0, false},
        {half, 2.0, 1.0, true}, // one range alone doesn't count
        {half, 5.5, 1.0, false},
    };
    int number = 0;
    for (const CRow& row : rows) {
        SCOPED_TRACE(number++);
        CAttrs attrs = row.attrs;
        attrs.insert(attrs.end(), {{"id", "0"}, {"param", "p"}});
        CAudioProcessBypassStateDef* made = nullptr;
        ASSERT_OK(makeFrom("state", attrs, made));
        EXPECT_EQ(made->isActive(row.value, row.andValue), row.isActive);
    }
}

TEST(AParamRange, IsReadInItsTwoForms)
{
    struct CRow {
        const char* text;
        bool isRange;
        double inside;
        double outside;
    };
    constexpr double kNone =
        1e300; // nothing lies outside of an open range, nor inside of a bad one
    const CRow rows[] = {
        {"(0;1)", true, 0.005, 0.0}, // half a step of 0.01 is one
        {"(0;1)", true, 0.99, 1.0},         {"[0;1]", true, 1.0, 1.01},
        {"[0;1)", true, 0.0, 1.0},          {"[*;*]", true, -1e9, kNone},
        {"[*;3]", true, -1e9, 3.01},        {"(3;*)", true, 3.01, 3.0},
        {"[-2;-1;0.5]", true, -1.75, -0.7}, // -3.5 steps are -4, -1.4 are -1
        {"[2;2]", true, 2.0, 2.01},         {"[1;2", false, kNone, kNone},
        {"[1]", false, kNone, kNone},       {"1;2;3", false, kNone, kNone},
        {"[1;2;3;4]", false, kNone, kNone}, {"[a;2]", false, kNone, kNone},
        {"[1;2;x]", false, kNone, kNone},   {"[1;2;*]", false, kNone, kNone},
        {"[2;1]", false, kNone, kNone},     {"[1 2]", false, kNone, kNone},
        {"[1; ]", false, kNone, kNone},     {"[1;2;0]", false, kNone, kNone},
    };
    for (const CRow& row : rows) {
        SCOPED_TRACE(row.text);
        CParamRange range;
        ASSERT_EQ(range.parse(row.text), row.isRange);
        EXPECT_EQ(range.present, row.isRange);
        if (!row.isRange)
            continue;
        EXPECT_TRUE(range.contains(row.inside));
        if (row.outside != kNone) {
            EXPECT_FALSE(range.contains(row.outside));
        }
    }
}

} // namespace tsm::test
