#include "Tests/Support/CGraphTree.h"

#include <cmath>
#include <numbers>

namespace tsm::test {

namespace {

constexpr int kFade = 662; // 15 ms at 44100 Hz: 661.5

/// A wet path of some latency and a dry one, which a tap hears on two ports.
CTestNode wetAndDry(const char* samples, CAttrs tapAttrs = {})
{
    return wired({delay("wet", samples), node("audio:testSink", "tap", std::move(tapAttrs)),
                  link("*", "wet"), link("wet", "tap"), link("*", "tap/1"), link("wet", "*")});
}

class ALatency : public AGraph {
protected:
    const CSignal& wet() { return child<CTestSink>("tap")->heard[0][0]; }
    const CSignal& dry() { return child<CTestSink>("tap")->heard[1][0]; }
    void forget()
    {
        if (auto* tap = child<CTestSink>("tap")) // made by the first block
            tap->heard.clear();
    }
};

double fadeShare(int step)
{
    return 0.5 + 0.5 * std::cos(std::numbers::pi * step / kFade);
}

} // namespace

TEST_F(ALatency, OfOnePathIsMadeUpForInTheOther)
{
    for (const char* samples : {"0", "1", "100", "584", "1024", "5000"}) {
        SCOPED_TRACE(samples);
        startGraph(wetAndDry(samples));
        run(ramp(8000), 300);
        EXPECT_EQ(wet(), delayed(ramp(8000), std::stoi(samples)));
        EXPECT_EQ(dry(), wet());
        EXPECT_EQ(sink->getInputLatency(), std::stoi(samples));
        endGraph();
    }
}

TEST_F(ALatency, IsPaddedWherePathsMeetAndAddsUp)
{
    startGraph(wired({delay("a", "30"), delay("b", "100"), delay("c", "7"), gain("mix", "1"),
                      link("*", "a"), link("*", "b"), link("a", "mix"), link("b", "mix"),
                      link("*", "mix"), link("mix", "c"), link("c", "*")}));
    EXPECT_EQ(run(ramp(1000), 64), scaled(delayed(ramp(1000), 107), 3.0));
    EXPECT_EQ(sink->getInputLatency(), 107);
}

TEST_F(ALatency, OfChildrenIsPaddedAtTheEnclosingOutput)
{
    startGraph(wired({delay("a", "30"), gain("b", "1"), link("*", "a"), link("*", "b"),
                      link("a", "*"), link("b", "*")}));
    EXPECT_EQ(run(ramp(500), 64), scaled(delayed(ramp(500), 30), 2.0));
}

TEST_F(ALatency, StartsWithTheFirstSampleWhereTheDefinitionSaysSo)
{
    startGraph(wetAndDry("50", {{"is-comp-input", "true"}}));
    run(ramp(200, 5.0));
    EXPECT_EQ(dry(), delayed(ramp(200, 5.0), 50, 5.0));
}

TEST_F(ALatency, ThatChangesIsCrossfadedToInTheDryPath)
{
    startGraph(wetAndDry("100"));
    const CSignal in = ramp(6000);
    run(CSignal(in.begin(), in.begin() + 2000), 250);
    set("wet.samples", 300);
    run(CSignal(in.begin() + 2000, in.end()), 250);
    const CSignal& heard = dry();
    for (int i = 100; i < 6000; ++i) {
        const double before = i - 100 + 1;
        const double after = i - 300 + 1;
        const double share = i < 2000 ? 1.0 : i < 2000 + kFade ? fadeShare(i - 2000) : 0.0;
        // The values are below 6000: 2^-53 * 6000 a step, 662 steps.
        ASSERT_NEAR(heard[static_cast<std::size_t>(i)], share * before + (1.0 - share) * after,
                    1e-7)
            << i;
    }
}

TEST_F(ALatency, ThatAppearsOrGoesNeverMakesTheDryPathJump)
{
    startGraph(wetAndDry("0"));
    const auto runOn = [&](int first, int count) {
        forget();
        run(ramp(count, first), 100);
        return dry();
    };
    EXPECT_EQ(runOn(1, 1000), ramp(1000));
    set("wet.samples", 400);
    CSignal heard = runOn(1001, 3000);
    for (int i = 0; i < 3000; ++i) {
        // The line fills up first: only then is there something to fade to.
        const double share = i < 400 ? 1.0 : i < 400 + kFade ? fadeShare(i - 400) : 0.0;
        ASSERT_NEAR(heard[static_cast<std::size_t>(i)], 1001.0 + i - 400.0 * (1.0 - share), 1e-7)
            << i;
    }
    set("wet.samples", 0);
    heard = runOn(4001, 3000);
    for (int i = 0; i < 3000; ++i) {
        const double share = i < kFade ? fadeShare(i) : 0.0;
        ASSERT_NEAR(heard[static_cast<std::size_t>(i)], 4001.0 + i - 400.0 * share, 1e-7) << i;
    }
    EXPECT_EQ(child("tap")->findPort(1)->getLinks()[0].getDelay(0), nullptr)
        << "a delay of nothing";
}

TEST_F(ALatency, ThatChangesDuringAFadeIsTakenUpAtItsEnd)
{
    startGraph(wetAndDry("100"));
    run(ramp(1000), 100);
    set("wet.samples", 200);
    forget();
    run(ramp(100, 1001.0), 100);
    set("wet.samples", 50);
    run(ramp(100, 1101.0), 100);
    set("wet.samples", 150);
    run(ramp(3800, 1201.0), 100);
    const auto ideal = [](int i, int samples) { return 1001.0 + i - samples; };
    for (int i = 0; i < 4000; ++i) {
        double expected = ideal(i, 150);
        if (i < kFade)
            expected = fadeShare(i) * ideal(i, 100) + (1.0 - fadeShare(i)) * ideal(i, 200);
        else if (i < 2 * kFade)
            expected =
                fadeShare(i - kFade) * ideal(i, 200) + (1.0 - fadeShare(i - kFade)) * ideal(i, 150);
        ASSERT_NEAR(dry()[static_cast<std::size_t>(i)], expected, 1e-7) << i;
    }
}

TEST_F(ALatency, StartsAnewAtAnotherSampleRate)
{
    startGraph(wetAndDry("100"));
    run(ramp(1000), 100);
    setFormat({0}, 96000.0);
    forget();
    run(ramp(1000), 100);
    EXPECT_EQ(dry(), delayed(ramp(1000), 100)) << "what was held is of the old rate";
}

} // namespace tsm::test
