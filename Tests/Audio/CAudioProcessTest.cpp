#include "Tests/Support/CGraphTree.h"
#include "Tests/Support/SystemAllocations.h"

#include <cmath>

namespace tsm::test {

namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

/// As many gains side by side as there are factors, all into one gain.
CTestNode parallel(const std::vector<std::string>& factors, const char* mode)
{
    CTestNode def = wired({gain("sum", "1", {{"input-combo-mode", mode}}), link("sum", "*")});
    for (std::size_t i = 0; i < factors.size(); ++i) {
        const std::string name = "g" + std::to_string(i);
        def.children.push_back(gain(name.c_str(), factors[i].c_str()));
        def.children.push_back(link("*", name.c_str()));
        def.children.push_back(link(name.c_str(), "sum"));
    }
    return def;
}

} // namespace

TEST_F(AGraph, ChainsItsChildrenInDocumentOrder)
{
    startGraph(chain({gain("b", "2"), gain("a", "3"), gain("c", "5")}));
    EXPECT_EQ(run(ramp(100)), scaled(ramp(100), 30.0));
    EXPECT_THAT(sequence(), ElementsAre("b", "a", "c"));
}

TEST_F(AGraph, WithoutChildrenPassesItsInputThrough)
{
    startGraph(chain({}));
    EXPECT_EQ(run(ramp(700)), ramp(700));
}

TEST_F(AGraph, SumsItsSourcesFromLeftToRight)
{
    // Sums of these depend on their order.
    const std::vector<std::string> factors = {"0.1", "1000.7", "-1000.3", "0.003", "77.7", "-0.9"};
    for (std::size_t count = 2; count <= factors.size(); ++count) {
        SCOPED_TRACE(count);
        startGraph(parallel({factors.begin(), factors.begin() + static_cast<int>(count)}, ""));
        const CSignal in = ramp(50, 0.3);
        CSignal expected;
        for (const double sample : in) {
            double sum = std::stod(factors[0]) * sample;
            for (std::size_t i = 1; i < count; ++i)
                sum += std::stod(factors[i]) * sample;
            expected.push_back(sum);
        }
        EXPECT_EQ(run(in), expected);
        endGraph();
    }
}

TEST_F(AGraph, TakesMeanOrMaximumWhereTheDefinitionSaysSo)
{
    startGraph(parallel({"3", "-1", "4", "7", "2"}, "avg"));
    EXPECT_EQ(run(constant(9)), constant(9, 3.0));
    endGraph();
    startGraph(parallel({"3", "-1", "4", "7", "2"}, "max"));
    EXPECT_EQ(run(constant(9)), constant(9, 7.0));
    EXPECT_EQ(run(constant(9, -1.0)), constant(9, 1.0));
}

TEST_F(AGraph, CombinesInItsOwnModeWhatComesInOnly)
{
    const CTestNode inner = node("audio:process-def", "inner", {{"input-combo-mode", "max"}},
                                 {gain("x", "1"), gain("y", "10"), link("*", "x"), link("*", "y"),
                                  link("x", "*"), link("y", "*")});
    startGraph(wired({gain("a", "2"), gain("b", "3"), inner, link("*", "a"), link("*", "b"),
                      link("a", "inner"), link("b", "inner"), link("inner", "*")}));
    EXPECT_EQ(run(constant(5)), constant(5, 33.0));
}

TEST_F(AGraph, HandsBlocksOnWithoutCopies)
{
    startGraph(chain({gain("a", "1"), gain("b", "1"), node("audio:modNode", "n"), gain("c", "1")}));
    run(ramp(64));
    const int count = pool.getAllocationCount();
    EXPECT_EQ(count, 1) << "the test's own block goes through all of it";
}

TEST_F(AGraph, NeverWritesABlockThatOthersHold)
{
    // The delayed branch and the plain one share the input's block.
    startGraph(wired({delay("wet", "10"), gain("dry", "1"), gain("mix", "1"), link("*", "wet"),
                      link("*", "dry"), link("wet", "mix"), link("dry", "mix"), link("mix", "*"),
                      node("audio:testSink", "tap"), link("dry", "tap")}));
    run(ramp(2000), 128);
    EXPECT_EQ(child<CTestSink>("tap")->heard[0][0], ramp(2000));
}

TEST_F(AGraph, WorksInBlocksOfAnyLength)
{
    CSignal expected;
    for (const int length : {512, 1, 7, 100, 511}) {
        SCOPED_TRACE(length);
        startGraph(
            wired({delay("wet", "77"), gain("dry", "0.5"), gain("mix", "3"), link("*", "wet"),
                   link("*", "dry"), link("wet", "mix"), link("dry", "mix"), link("mix", "*")}));
        const CSignal heard = run(ramp(1500), length);
        if (expected.empty())
            expected = heard;
        EXPECT_EQ(heard, expected);
        endGraph();
    }
}

// Wiring

TEST_F(AGraph, LinksThroughWiringNodes)
{
    startGraph(chain({node("audio:modNode", "first"), gain("a", "2"), node("audio:modNode", "mid"),
                      node("audio:modNode", "behind"), gain("b", "3"),
                      node("audio:testSink", "tap", {{"is-outoforder", "true"}}),
                      link("first", "tap"), link("behind", "tap/1")}));
    EXPECT_EQ(run(constant(10)), constant(10, 6.0));
    const CTestSink& tap = *child<CTestSink>("tap");
    EXPECT_THAT(sequence(), ElementsAre("a", "b", "tap"));
    EXPECT_EQ(tap.heard.at(0).at(0), constant(10, 1.0));
    EXPECT_EQ(tap.heard.at(1).at(0), constant(10, 2.0));
}

TEST_F(AGraph, CollectsAllSourcesOfAWiringNodeWhateverTheOrderOfLinks)
{
    startGraph(wired({gain("a", "2"), gain("b", "3"), node("audio:modNode", "n"), gain("out", "1"),
                      link("n", "out"), link("out", "*"), link("*", "a"), link("*", "b"),
                      link("a", "n"), link("b", "n"), link("a", "n")}));
    EXPECT_EQ(run(constant(5)), constant(5, 5.0)) << "a repeated link is one";
}

TEST_F(AGraph, SurvivesRingsAndLatticesOfWiringNodes)
{
    CNodes children = {node("audio:modNode", "r1"),
                       node("audio:modNode", "r2"),
                       link("r1", "r2"),
                       link("r2", "r1"),
                       link("*", "r1"),
                       link("r2", "n0a"),
                       gain("end", "1")};
    // Forty layers of two: the ways through are more than could be walked.
    for (int i = 0; i < 40; ++i) {
        const std::string here = "n" + std::to_string(i);
        const std::string next = "n" + std::to_string(i + 1);
        for (const char* from : {"a", "b"}) {
            children.push_back(node("audio:modNode", (here + from).c_str()));
            for (const char* to : {"a", "b"})
                children.push_back(link((here + from).c_str(), (next + to).c_str()));
        }
    }
    children.push_back(node("audio:modNode", "n40a"));
    children.push_back(link("n40a", "end"));
    children.push_back(link("end", "*"));
    startGraph(wired(children));
    EXPECT_EQ(run(ramp(20)), ramp(20));
}

TEST_F(AGraph, LeavesOutWhatNoPort0PathReaches)
{
    startGraph(
        wired({gain("ok", "1"), gain("orphan", "5"), gain("second", "5"), gain("behind", "7"),
               link("*", "ok"), link("ok", "*"), link("orphan", "ok"), link("orphan", "*"),
               link("*", "second/1"), link("second", "behind"), link("behind", "*")}));
    EXPECT_EQ(run(ramp(10)), ramp(10));
    EXPECT_THAT(sequence(), ElementsAre("ok"));
}

TEST_F(AGraph, PassesOverWhatItDoesNotKnow)
{
    load(chain({gain("a", "2"), node("audio:modUnknown", "meter"), gain("b", "2"),
                gain("p", "9", {{"is-prototype", "true"}}), link("a", "meter"), link("meter", "*"),
                link("nobody", "b"), link("a", "nobody"), link("p", "b")}));
    CLogCollector log;
    build();
    EXPECT_EQ(run(constant(4)), constant(4, 4.0));
    EXPECT_THAT(log.lines, IsEmpty());
}

TEST_F(AGraph, LogsACycleOnceAndGoesOn)
{
    startGraph(
        wired({gain("in", "2"), gain("a", "1"), gain("b", "1"), link("*", "in"), link("in", "*"),
               link("in", "a"), link("a", "b"), link("b", "a"), link("b", "*")}));
    CLogCollector log;
    EXPECT_EQ(run(ramp(2000)), scaled(ramp(2000), 2.0));
    EXPECT_THAT(log.lines, ElementsAre("process seq err // plugin.modMain"));
}

TEST_F(AGraph, LogsAChildThatCannotBeMadeAndGoesOn)
{
    startGraph(wired({gain("a", "2"), node("audio:testFailing", "bad"), link("*", "a"),
                      link("a", "*"), link("a", "bad"), link("bad", "*")}));
    CLogCollector log;
    EXPECT_EQ(run(constant(3000)), constant(3000, 2.0));
    ASSERT_FALSE(log.lines.empty());
    EXPECT_EQ(log.lines[0], "This process can't start.");
    const auto lines = log.lines.size();
    run(constant(3000));
    EXPECT_EQ(log.lines.size(), lines) << "not in each block";
}

// Bypass states

TEST_F(AGraph, TakesProcessesOutWhileTheirStateIsActive)
{
    startGraph(chain({param("off", "0", {{"is-global", "true"}}), state("33", "off"),
                      state("34", "off", {{"is-inverted", "true"}}), gain("a", "2"),
                      gain("b", "3", {{"bypass-state-id", "33"}}), gain("c", "5"),
                      gain("d", "7", {{"bypass-state-id", "34"}}),
                      gain("e", "1", {{"bypass-state-id", "77"}})}));
    EXPECT_EQ(run(constant(600)), constant(600, 30.0));
    set("off", 1.0);
    EXPECT_EQ(run(constant(600)), constant(600, 70.0));
    EXPECT_EQ(child("b"), nullptr);
    EXPECT_NE(child("d"), nullptr);
    set("off", 0.0);
    EXPECT_EQ(run(constant(600)), constant(600, 30.0));
    EXPECT_EQ(moduleCounts.alive, 4);
}

TEST_F(AGraph, SkipsLinksWhileTheirStateIsActive)
{
    startGraph(chain({param("watch", "0", {{"is-global", "true"}}),
                      state("0", "watch", {{"value", "1.0"}, {"is-inverted", "true"}}),
                      gain("a", "2"), node("audio:testSink", "meter", {{"is-outoforder", "true"}}),
                      link("a", "meter", "9 0")}));
    run(constant(100));
    EXPECT_EQ(child("meter"), nullptr) << "what nobody watches isn't there";
    set("watch", 1.0);
    run(constant(100));
    ASSERT_NE(child("meter"), nullptr);
    EXPECT_EQ(child<CTestSink>("meter")->heard[0][0], constant(100, 2.0));
}

TEST_F(AGraph, LeavesWhatStaysUndisturbedByARebuild)
{
    startGraph(
        chain({param("off", "0", {{"is-global", "true"}}), state("1", "off"), delay("late", "100"),
               gain("b", "2", {{"bypass-state-id", "1"}}), delay("later", "50")}));
    const CAudioProcessBase* late = nullptr;
    CSignal heard;
    const CSignal in = ramp(4096);
    for (int block = 0; block < 8; ++block) {
        set("off", block % 2);
        const auto part = run(CSignal(in.begin() + block * 512, in.begin() + (block + 1) * 512));
        heard.insert(heard.end(), part.begin(), part.end());
        ASSERT_TRUE(!late || late == child("late"));
        late = child("late");
    }
    // No sample is lost or comes twice; only the factor changes, in the middle of the chain.
    const CSignal expected = delayed(in, 150);
    for (std::size_t i = 0; i < heard.size(); ++i) {
        const bool isDoubled = i >= 50 && ((i - 50) / 512) % 2 == 0;
        ASSERT_EQ(heard[i], expected[i] * (isDoubled ? 2.0 : 1.0)) << i;
    }
}

TEST_F(AGraph, ReadsStatesInItsOwnGroupAndTwoParameters)
{
    startGraph(chain(
        {param("p", "0", {{"is-global", "true"}}), param("q", "0", {{"is-global", "true"}}),
         state("1", "p", {{"value", "2"}, {"and-param", "q"}, {"and-value", "1"}}),
         state("2", "not-there", {{"value", "0"}}), gain("a", "2", {{"bypass-state-id", "1"}}),
         gain("b", "9", {{"bypass-state-id", "2"}})}));
    EXPECT_EQ(run(constant(5)), constant(5, 2.0)) << "a parameter that isn't there reads 0";
    set("p", 2.0);
    EXPECT_EQ(run(constant(5)), constant(5, 2.0));
    set("q", 1.0, 1);
    EXPECT_EQ(run(constant(5)), constant(5, 2.0)) << "another group";
    set("q", 1.0, 0);
    EXPECT_EQ(run(constant(5)), constant(5, 1.0));
}

// Chains that change

TEST_F(AGraph, GrowsAndShrinksAChainAtItsFront)
{
    const CTestNode seq =
        node("audio:testSeq", "seq", {}, {param("length", "0"), gain("unit", "2")});
    startGraph(chain({gain("a", "1"), seq, gain("b", "1")}));
    setFormat({0, 0});
    const std::vector<CSignal> in = {constant(600), constant(600, -1.0)};
    for (const int length : {0, 1, 3, 6, 2, 0, 1}) {
        SCOPED_TRACE(length);
        run({constant(1), constant(1)}); // makes the parameter
        set("seq.length", length);
        const double factor = std::exp2(length);
        EXPECT_EQ(run(in), constant(600, factor));
        EXPECT_EQ(sink->heard[0][1], constant(600, -factor));
        EXPECT_EQ(moduleCounts.alive, 4 + 2 * length);
    }
}

// Formats

TEST_F(AGraph, FollowsChannelsThatComeAndGo)
{
    startGraph(chain({gain("a", "2"), node("audio:process-def", "inner", {},
                                           {gain("x", "3"), link("*", "x"), link("x", "*")})}));
    run(constant(100));
    EXPECT_EQ(sink->formats, 1);
    setFormat({0});
    run(constant(100));
    EXPECT_EQ(sink->formats, 1) << "the same format once more";
    setFormat({0, 0, 0});
    run({constant(100), constant(100, 2.0), constant(100, 3.0)});
    EXPECT_EQ(sink->heard[0].size(), 3u);
    EXPECT_EQ(sink->heard[0][2], constant(100, 18.0));
    setFormat({});
    steps.run(*main);
    output->process();
    EXPECT_EQ(sink->lastLength, 0) << "no channels, no samples";
    setFormat({0, 0});
    EXPECT_EQ(run({constant(100), constant(100, 2.0)}, 512, 1), constant(100, 12.0));
}

TEST_F(AGraph, BearsAnySampleRate)
{
    for (const double rate : {1.0, 0.0, 1e-300, 44100.0, 768000.0, 1e300}) {
        SCOPED_TRACE(rate);
        startGraph(
            wired({delay("wet", "3", {{"is-smooth-update", "true"}}), gain("mix", "1"),
                   link("*", "wet"), link("wet", "mix"), link("*", "mix"), link("mix", "*")}));
        setFormat({0}, rate);
        const CSignal heard = run(ramp(100), 10);
        EXPECT_EQ(heard, scaled(delayed(ramp(100), 3), 2.0));
        set("wet.samples", 5.0);
        run(ramp(100), 10);
        endGraph();
    }
}

TEST_F(AGraph, ReplacesBlocksOfAnotherLengthBySilence)
{
    startGraph(wired({gain("a", "2"), link("*", "a"), link("a", "*"), link("*/1", "a")}));
    CAudioLink& other = CAudioProcessBase::connect(nullptr, 0, *main, 1);
    CAudioFormat format;
    format.sampleRate = 44100.0;
    format.add({0, 0, 0});
    other.publish(format);
    other.put(0, pool.takeFilled(32, 1.0), 32);
    EXPECT_EQ(run(constant(64)), constant(64, 2.0));
    other.put(0, pool.takeFilled(64, 1.0), 64);
    EXPECT_EQ(run(constant(64)), constant(64, 4.0));
}

// Life

TEST_F(AGraph, AllocatesNoBlocksInTheSteadyState)
{
    startGraph(wired({delay("wet", "3000"), gain("dry", "0.5"), gain("mix", "3"), link("*", "wet"),
                      link("*", "dry"), link("wet", "mix"), link("dry", "mix"), link("mix", "*")}));
    setFormat({0, 0});
    const std::vector<CSignal> in = {ramp(20000), ramp(20000)};
    run(in, 500);
    run(in, 333);
    const int count = pool.getAllocationCount();
    for (int i = 0; i < 10; ++i) {
        run(in, 500);
        run(in, 333);
    }
    EXPECT_EQ(pool.getAllocationCount(), count);
}

TEST_F(AGraph, AsksTheSystemForNoMemoryWhileItRuns)
{
    if (countSystemAllocations() < 0)
        GTEST_SKIP() << "allocations aren't counted in this build";
    startGraph(chain({param("off", "0", {{"is-global", "true"}}), state("1", "off"),
                      gain("a", "2", {{"bypass-state-id", "1"}}),
                      gain("g", "1", {{"is-smooth-update", "true"}}),
                      gain("s", "2", {{"is-stacked", "true"}})}));
    setFormat({0, 1});
    const std::vector<CSignal> in = {constant(512), constant(512)};
    prime(in);
    sink->isDeaf = true;
    int count = 0;
    for (int i = 0; i < 40; ++i) {
        set("g.gain", i); // a fade goes on all the time
        if (i % 5 == 0)
            set("off", i % 2); // and now and then the graph is another one
        const int before = countSystemAllocations();
        runBlock(in, 0, 512);
        count += countSystemAllocations() - before;
    }
    EXPECT_EQ(count, 0);
}

TEST_F(AGraph, StartsAnewAfterAReset)
{
    startGraph(wired({delay("wet", "200"), gain("mix", "1"), link("*", "wet"), link("wet", "mix"),
                      link("*", "mix"), link("mix", "*")}));
    const CSignal first = run(ramp(1000));
    resetMain();
    EXPECT_EQ(run(ramp(1000)), first);
}

TEST_F(AGraph, MayEndBeforeItsReaders)
{
    startGraph(chain({gain("a", "2")}));
    run(constant(10));
    steps.forget();
    output.reset();
    input->put(0, pool.takeFilled(10, 1.0), 10);
    steps.run(*main);
    ASSERT_OK(create(output, "shared::audio.sink"));
    sink = static_cast<CTestSink*>(output.get());
    CAudioProcessBase::connect(main.get(), 0, *output, 0);
    EXPECT_EQ(run(constant(10)), constant(10, 2.0)) << "a reader that comes later";
}

} // namespace tsm::test
