#include "Audio/CAudioProcessStack.h"
#include "Tests/Support/CGraphTree.h"

namespace tsm::test {

namespace {

class AStack : public AGraph {
protected:
    CAudioProcessStack& stack() { return *child<CAudioProcessStack>("s"); }
};

const CAttrs kStacked = {{"is-stacked", "true"}};

} // namespace

TEST_F(AStack, RunsOneElementForEachGroupWithItsOwnValues)
{
    startGraph(chain({gain("s", "2", kStacked)}));
    setFormat({0, 2, 0, 2});
    const std::vector<CSignal> in = {constant(50, 1), constant(50, 10), constant(50, 100),
                                     constant(50, 1000)};
    run(in);
    EXPECT_EQ(stack().getElementCount(), 2);
    EXPECT_EQ(stack().findElement(1), nullptr);
    EXPECT_EQ(moduleCounts.alive, 4) << "a module for each channel";
    set("s.gain", 5.0, 2);
    run(in);
    EXPECT_EQ(sink->heard[0][0], constant(50, 2));
    EXPECT_EQ(sink->heard[0][1], constant(50, 50));
    EXPECT_EQ(sink->heard[0][2], constant(50, 200));
    EXPECT_EQ(sink->heard[0][3], constant(50, 5000));
}

TEST_F(AStack, WakesOnlyTheElementWhoseGroupChanges)
{
    startGraph(chain({gain("s", "2", kStacked)}));
    setFormat({0, 1});
    prime({constant(10), constant(10)});
    set("s.gain", 3.0, 1);
    EXPECT_EQ(run({constant(10), constant(10)}, 512, 1), constant(10, 3.0));
    EXPECT_EQ(moduleCounts.updates, 1);
}

TEST_F(AStack, FollowsTheGroupsOfItsInputs)
{
    startGraph(chain({gain("s", "2", kStacked)}));
    setFormat({0, 1});
    run({constant(10), constant(10)});
    const CAudioProcessBase* first = stack().findElement(0);
    setFormat({0, 3});
    EXPECT_EQ(run({constant(10), constant(10)}, 512, 1), constant(10, 2.0));
    EXPECT_EQ(stack().findElement(0), first) << "what stays isn't made anew";
    EXPECT_EQ(stack().findElement(1), nullptr);
    EXPECT_NE(stack().findElement(3), nullptr);
    setFormat({});
    steps.run(*main);
    EXPECT_EQ(stack().getElementCount(), 0);
}

TEST_F(AStack, AlignsElementsOfDifferentLatency)
{
    startGraph(chain({delay("s", "20", kStacked)}));
    setFormat({0, 1});
    prime({ramp(10), ramp(10)});
    set("s.samples", 50.0, 1);
    run({ramp(2000), ramp(2000)}, 100); // the change of the other element's delay is over
    run({ramp(500, 2001), ramp(500, 2001)}, 100);
    EXPECT_EQ(sink->heard[0][0], ramp(500, 1951));
    EXPECT_EQ(sink->heard[0][1], ramp(500, 1951));
    EXPECT_EQ(sink->getInputLatency(), 50);
}

TEST_F(AStack, RunsWholeGraphsAsElements)
{
    CTestNode inner = node("audio:process-def", "s", {{"is-stacked", "true"}},
                           {param("level", "3", {{"is-storable", "true"}}),
                            node("audio:param-remap", "", {{"orig", "g.gain"}, {"new", "level"}}),
                            gain("g", "1"), link("*", "g"), link("g", "*")});
    startGraph(chain({inner}));
    setFormat({0, 1});
    const std::vector<CSignal> in = {constant(10), constant(10)};
    EXPECT_EQ(run(in), constant(10, 3.0)) << "the remap stands at the stack's path";
    set("s.level", 7.0, 1);
    EXPECT_EQ(run(in, 512, 1), constant(10, 7.0));
    EXPECT_EQ(sink->heard[0][0], constant(10, 3.0));
    EXPECT_EQ(collector->find("plugin.modMain.s.g.gain"), nullptr) << "the name is sent on";
}

TEST_F(AStack, LeadsEachPortToTheSamePortOfItsElements)
{
    const CTestNode inner = node("audio:process-def", "s", {{"is-stacked", "true"}},
                                 {gain("g", "2"), node("audio:testSink", "tap"), link("*", "g"),
                                  link("g", "*"), link("*", "tap"), link("*/1", "tap/1")});
    startGraph(chain(
        {inner, gain("a", "10", {{"is-outoforder", "true"}}), link("*", "a"), link("a", "s/1")}));
    setFormat({0, 1});
    run({constant(10), constant(10, 2.0)});
    auto& second = dynamic_cast<CAudioProcess&>(*stack().findElement(1));
    auto& tap = dynamic_cast<CTestSink&>(*second.findChild("tap"));
    EXPECT_EQ(tap.heard[0][1], constant(10, 2.0));
    EXPECT_EQ(tap.heard[1][1], constant(10, 20.0));
    EXPECT_EQ(tap.heard[1].count(0), 0u) << "the other group's";
}

TEST_F(AStack, RunsAsManyInARowAsItsParameterSays)
{
    startGraph(chain({gain("s", "2", {{"is-stacked", "true"}, {"stack-param", "^count"}}),
                      param("count", "3", {{"is-global", "true"}})}));
    EXPECT_EQ(run(constant(10)), constant(10, 8.0));
    set("count", 5.0);
    EXPECT_EQ(run(constant(10)), constant(10, 32.0));
    set("count", 1.0);
    EXPECT_EQ(run(constant(10)), constant(10, 2.0));
    EXPECT_EQ(moduleCounts.alive, 1);
}

TEST_F(AStack, CountsItsElementsFromTheDefinitionsShift)
{
    startGraph(chain(
        {gain("s", "2",
              {{"is-stacked", "true"}, {"stack-param", "^count"}, {"stack-index-shift", "4"}}),
         param("count", "2", {{"is-global", "true"}})}));
    run(constant(10));
    EXPECT_EQ(stack().findElement(0)->getElementIndex(), 4);
}

} // namespace tsm::test
