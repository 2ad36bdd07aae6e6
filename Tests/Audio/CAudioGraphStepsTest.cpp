#include "Audio/CAudioGraphSteps.h"
#include "Audio/CAudioProcessStack.h"
#include "Tests/Support/CGraphTree.h"

#include <random>

namespace tsm::test {

namespace {

class ASteadyGraph : public AGraph {
protected:
    /// Containers in containers beside a dry path that is kept in time, and all that can change.
    void start()
    {
        const CTestNode inner = node("audio:process-def", "inner", {{"is-auto-links", "true"}},
                                     {gain("a", "2"), delay("d", "30")});
        const CTestNode deep =
            node("audio:process-def", "deep", {{"is-stacked", "true"}, {"is-auto-links", "true"}},
                 {inner, gain("b", "3"), gain("s", "1", {{"is-stacked", "true"}})});
        startGraph(wired({param("off", "0", {{"is-global", "true"}}), state("1", "off"), deep,
                          gain("mix", "1"), link("*", "deep", "1"), link("deep", "mix", "1"),
                          link("*", "mix"), link("mix", "*")}));
    }

    /// A sub-block by another way: the whole graph, each time.
    void runWhole(const std::vector<CSignal>& in, int at, int length)
    {
        steps.forget();
        runBlock(in, at, length);
    }

    /// Changes and blocks as `seed` has them, mostly none of the former.
    std::vector<CSignal> play(bool isStepped, unsigned seed)
    {
        start();
        std::mt19937 random{seed};
        const std::vector<CSignal> in = {ramp(20000), scaled(ramp(20000), -0.5)};
        setFormat({0, 0});
        sink->heard.clear();
        for (int at = 0; at < 20000;) {
            const int length = std::min(static_cast<int>(random() % 100 + 1), 20000 - at);
            change(random() % 40, static_cast<double>(random() % 7));
            if (isStepped)
                runBlock(in, at, length);
            else
                runWhole(in, at, length);
            at += length;
        }
        std::vector<CSignal> out = {sink->heard[0][0], sink->heard[0][1]};
        endGraph();
        return out;
    }

private:
    void change(unsigned long kind, double value)
    {
        switch (kind) {
        case 0:
            return set("deep.inner.a.gain", value);
        case 1:
            return set("deep.inner.d.samples", 20.0 * value);
        case 2:
            return set("deep.s.gain", value);
        case 3:
            return set("off", value > 3.0 ? 1.0 : 0.0);
        case 4:
            return setFormat(value > 3.0 ? std::vector<std::uint32_t>{0, 0}
                                         : std::vector<std::uint32_t>{0, 1});
        case 5:
            return resetMain();
        default:
            return;
        }
    }
};

} // namespace

TEST_F(ASteadyGraph, SoundsLikeTheWholeGraphHoweverItChanges)
{
    for (const unsigned seed : {1u, 2u, 3u, 4u, 5u}) {
        SCOPED_TRACE(seed);
        const auto whole = play(false, seed);
        ASSERT_EQ(whole[0].size(), 20000u);
        EXPECT_EQ(play(true, seed), whole);
    }
}

TEST_F(ASteadyGraph, PassesOverContainersThatOnlyHandOn)
{
    start();
    const CSignal in = ramp(1200);
    run(ramp(6400), 64); // whatever changes at the start is over
    const auto* deep = child<CAudioProcessStack>("deep");
    const auto* element = dynamic_cast<CAudioProcess*>(deep->findElement(0));
    const CAudioProcessBase* gain = element->findChild("b");
    run(in, 50);
    EXPECT_EQ(gain->getBlockLength(), 50);
    EXPECT_EQ(deep->getBlockLength(), 64) << "worked, though it had nothing to do";
    EXPECT_EQ(element->getBlockLength(), 64);
    // A change far below: the whole graph once, then steps again.
    set("deep.inner.a.gain", 4.0);
    run(in, 40);
    EXPECT_EQ(gain->getBlockLength(), 40);
    EXPECT_EQ(deep->getBlockLength(), 40);
    run(in, 30);
    EXPECT_EQ(gain->getBlockLength(), 30);
    EXPECT_EQ(deep->getBlockLength(), 40);
}

} // namespace tsm::test
