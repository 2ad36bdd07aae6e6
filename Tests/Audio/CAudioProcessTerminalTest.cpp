#include "Tests/Support/CGraphTree.h"
#include "Tests/Support/CTestModules.h"

#include <cmath>
#include <numbers>

namespace tsm::test {

namespace {

using ::testing::Contains;
using ::testing::ElementsAre;

constexpr int kFade = 662; // 15 ms at 44100 Hz

const CAttrs kSmooth = {{"is-smooth-update", "true"}};

/// The old signal's share at a step of a fade.
double share(int step, int length = kFade)
{
    if (step < 0)
        return 1.0;
    return step < length ? 0.5 + 0.5 * std::cos(std::numbers::pi * step / length) : 0.0;
}

class ATerminal : public AGraph {
protected:
    int activeCount(const char* name = "g")
    {
        return child<CAudioProcessTerminalBase>(name)->getActiveCount();
    }
};

/// From one level to another from sample `first` on.
void expectFade(const CSignal& heard, int first, double from, double to, int count = kFade)
{
    for (int i = 0; i < count; ++i) {
        const double old = share(i);
        ASSERT_NEAR(heard[static_cast<std::size_t>(first + i)], old * from + (1.0 - old) * to,
                    1e-10)
            << "step " << i;
    }
}

} // namespace

TEST_F(ATerminal, GivesEachChannelAModuleAndWorksThemInOneCall)
{
    startGraph(chain({delay("g", "5")}));
    setFormat({0, 0, 0});
    run({ramp(100), ramp(100, 50), ramp(100, 90)});
    EXPECT_EQ(sink->heard[0][1], delayed(ramp(100, 50), 5));
    EXPECT_EQ(moduleCounts.mostInOneCall, 3);
    EXPECT_EQ(activeCount(), 3);
}

TEST_F(ATerminal, GivesAllChannelsToOneModuleWhereItIsWhole)
{
    startGraph(chain({node("audio:testWhole", "g", {{"is-terminal-whole", "true"}})}));
    setFormat({0, 0, 1});
    run({constant(10, 1.0), constant(10, 2.0), constant(10, 3.0)});
    EXPECT_EQ(activeCount(), 1);
    EXPECT_EQ(sink->heard[0][0], constant(10, 3.0));
    EXPECT_EQ(sink->heard[0][2], constant(10, 1.0));
    setFormat({0, 0});
    EXPECT_EQ(run({constant(10, 1.0), constant(10, 2.0)}), constant(10, 2.0));
}

TEST_F(ATerminal, ChangesARunningModuleAtOnceWithoutSmoothUpdate)
{
    startGraph(chain({gain("g", "2")}));
    run(constant(10));
    set("g.gain", 3.0);
    EXPECT_EQ(run(constant(10)), constant(10, 3.0));
    EXPECT_EQ(moduleCounts.made, 1);
}

TEST_F(ATerminal, CrossfadesToAFreshModuleByARaisedCosine)
{
    for (const int length : {512, 1, 13, 100, 331}) {
        SCOPED_TRACE(length);
        startGraph(chain({gain("g", "2", kSmooth)}));
        run(constant(100));
        set("g.gain", -5.0);
        const CSignal heard = run(constant(2000), length);
        expectFade(heard, 0, 2.0, -5.0);
        for (int i = kFade; i < 2000; ++i)
            ASSERT_EQ(heard[static_cast<std::size_t>(i)], -5.0) << i;
        EXPECT_EQ(activeCount(), 1);
        endGraph();
    }
}

TEST_F(ATerminal, FadesWhereOneChangedSlotAsksForIt)
{
    CTestNode g = node("audio:testGain", "g", {},
                       {param("gain", "2"), param("other", "0"), alloc("0", "gain"),
                        alloc("1", "other", {{"is-smooth-update", "true"}})});
    startGraph(chain({g}));
    prime({constant(1000)});
    set("g.gain", 3.0);
    EXPECT_EQ(run(constant(10)), constant(10, 3.0)) << "the plain slot alone doesn't fade";
    set("g.gain", 1.0);
    set("g.other", 1.0);
    expectFade(run(constant(1000)), 0, 3.0, 1.0);
}

TEST_F(ATerminal, TakesChangesDuringAFadeUpByASecondOne)
{
    startGraph(chain({gain("g", "0", kSmooth)}));
    run(constant(100));
    set("g.gain", 1.0);
    CSignal heard = run(constant(331), 331);
    set("g.gain", 9.0);
    set("g.gain", 4.0);
    for (int i = 0; i < 3; ++i) {
        const CSignal part = run(constant(331), 331);
        heard.insert(heard.end(), part.begin(), part.end());
        EXPECT_LE(activeCount(), 2);
    }
    const CSignal rest = run(constant(331), 331);
    heard.insert(heard.end(), rest.begin(), rest.end());
    expectFade(heard, 0, 0.0, 1.0); // not cut short
    expectFade(heard, kFade, 1.0, 4.0);
    EXPECT_EQ(heard.back(), 4.0);
}

TEST_F(ATerminal, DoesNotCutAFadeWhenLongBlocksFollowAShortOne)
{
    startGraph(chain({gain("g", "0", kSmooth)}));
    run(constant(512));
    set("g.gain", 1.0);
    CSignal heard;
    for (const int length : {1, 512, 512, 512}) {
        const CSignal part = run(constant(length), length);
        heard.insert(heard.end(), part.begin(), part.end());
    }
    expectFade(heard, 0, 0.0, 1.0);
    EXPECT_EQ(heard.back(), 1.0);
}

TEST_F(ATerminal, WaitsForTheNewModulesSignalBeforeItFades)
{
    for (const int length : {512, 1, 64, 300}) {
        SCOPED_TRACE(length);
        startGraph(chain({delay("g", "10", kSmooth)}));
        const CSignal in = ramp(4000);
        run(CSignal(in.begin(), in.begin() + 1000));
        set("g.samples", 700.0);
        const CSignal heard = run(CSignal(in.begin() + 1000, in.end()), length);
        for (int i = 0; i < 3000; ++i) {
            const double old = share(i - 700);
            const double expected = old * (1001 + i - 10) + (1.0 - old) * (1001 + i - 700);
            ASSERT_NEAR(heard[static_cast<std::size_t>(i)], expected, 1e-7) << i;
        }
        EXPECT_EQ(sink->getInputLatency(), 700);
        endGraph();
    }
}

TEST_F(ATerminal, EndsFadesWhenItsInputsChange)
{
    startGraph(chain({gain("g", "0", kSmooth)}));
    run(constant(100));
    set("g.gain", 1.0);
    run(constant(100));
    EXPECT_EQ(activeCount(), 2);
    set("g.gain", 3.0); // waits for the end of the fade
    run(constant(10));
    setFormat({0}, 48000.0);
    EXPECT_EQ(run(constant(50)), constant(50, 3.0));
    EXPECT_EQ(activeCount(), 1);
}

TEST_F(ATerminal, LosesNoChangeThatWaitsWhenItIsReset)
{
    startGraph(chain({gain("g", "0", kSmooth)}));
    run(constant(100));
    set("g.gain", 1.0);
    run(constant(100));
    set("g.gain", 3.0);
    run(constant(100));
    resetMain();
    EXPECT_EQ(run(constant(50)), constant(50, 3.0));
    EXPECT_EQ(activeCount(), 1);
}

TEST_F(ATerminal, LosesNoChangeThatComesWithInputsThatStayTheSame)
{
    startGraph(chain({param("off", "0", {{"is-global", "true"}}), state("1", "off"),
                      gain("a", "1", {{"bypass-state-id", "1"}}), gain("g", "2")}));
    run(constant(10));
    set("off", 1.0); // another source in front of the gain, of the same format
    set("g.gain", 3.0);
    EXPECT_EQ(run(constant(10)), constant(10, 3.0));
}

TEST_F(ATerminal, FadesOverATenthOfAMillisecondAtLeast)
{
    for (const char* length : {"0", "-1", "nonsense"}) {
        SCOPED_TRACE(length);
        startGraph(
            chain({gain("g", "0", {{"is-smooth-update", "true"}, {"xfade-length", length}})}));
        setFormat({0}, 100000.0);
        run(constant(10));
        set("g.gain", 1.0);
        const CSignal heard = run(constant(2000));
        const int samples = std::string(length) == "nonsense" ? 1500 : 10;
        for (int i = 0; i < 2000; ++i)
            ASSERT_NEAR(heard[static_cast<std::size_t>(i)], 1.0 - share(i, samples), 1e-9) << i;
        endGraph();
    }
}

TEST_F(ATerminal, WakesTheModulesOfTheGroupThatChanges)
{
    startGraph(chain({gain("g", "2")}));
    setFormat({0, 1, 1});
    const std::vector<CSignal> in = {constant(10), constant(10), constant(10)};
    prime(in);
    set("g.gain", 5.0, 1);
    run(in);
    EXPECT_EQ(moduleCounts.updates, 2);
    EXPECT_EQ(sink->heard[0][0], constant(10, 2.0));
    EXPECT_EQ(sink->heard[0][2], constant(10, 5.0));
}

TEST_F(ATerminal, ShowsAllGroupsToModulesThatUseThem)
{
    CTestNode g = node("audio:testGain", "g", {},
                       {param("gain", "2"), alloc("0", "gain", {{"use-all-groups", "true"}})});
    startGraph(chain({g}));
    prime({constant(10)});
    set("g.gain", 7.0, 2);
    EXPECT_EQ(run(constant(10)), constant(10, 2.0));
    EXPECT_EQ(moduleCounts.updates, 1);
    EXPECT_THAT(moduleCounts.lastValues, ElementsAre(2.0, 2.0, 7.0));
}

TEST_F(ATerminal, LogsASlotThatTheDocumentDoesNotHaveAndRunsWithoutIt)
{
    load(chain({node("audio:testGreedy", "g", {}, {param("p", "1"), alloc("0", "p")})}));
    CLogCollector log;
    build();
    EXPECT_EQ(run(constant(10)), constant(10, 0.25));
    EXPECT_THAT(log.lines, ElementsAre("regModuleParam error 3 // plugin.modMain.g"));
}

TEST_F(ATerminal, UsesItsModulesAgain)
{
    startGraph(chain({gain("g", "2", kSmooth)}));
    setFormat({0, 0});
    const std::vector<CSignal> in = {constant(800), constant(800)};
    prime(in);
    for (int i = 0; i < 20; ++i) {
        set("g.gain", i);
        run(in);
    }
    EXPECT_EQ(moduleCounts.made, 4) << "two a channel";
    EXPECT_GE(moduleCounts.resets, 38) << "none brings its signal along";
}

TEST_F(ATerminal, KeepsAChannelsModuleWhenOthersCome)
{
    startGraph(chain({delay("g", "50")}));
    run(ramp(100));
    setFormat({0, 0});
    const CSignal heard = run({ramp(100, 101), ramp(100)});
    EXPECT_EQ(heard, ramp(100, 51)) << "the signal goes on";
    setFormat({0});
    EXPECT_EQ(run(ramp(100, 201)), ramp(100, 151));
}

} // namespace tsm::test
