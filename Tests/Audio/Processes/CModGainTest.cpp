#include "Tests/Support/CProcessTree.h"

#include <cmath>
#include <numbers>

namespace tsm::test {

namespace {

class AGainStage : public AProcess {
protected:
    void startGain(double gain, double mute, double phaseInvert)
    {
        startProcess("audio:modGain",
                     {{"gain", gain}, {"mute", mute}, {"phase-invert", phaseInvert}});
        setFormat({0, 0});
    }
};

TEST_F(AGainStage, HandsOnTheInputBlocksAtUnity)
{
    startGain(1.0, 0.0, 0.0);
    const CAudioPort& out = run({{0.25, -0.5}, {1.0, 0.0}});
    ASSERT_EQ(out.getChannelCount(), 2);
    EXPECT_EQ(out.getChannel(0).buffer, sent[0]);
    EXPECT_EQ(out.getChannel(1).buffer, sent[1]);
}

TEST_F(AGainStage, MultipliesAndLeavesTheInputAlone)
{
    startGain(2.5, 0.0, 1.0);
    const CAudioPort& out = run({{0.25, -0.5}, {1.0, 0.0}});
    EXPECT_EQ(samplesOf(out, 0, 2), (std::vector<double>{-0.625, 1.25}));
    EXPECT_EQ(samplesOf(out, 1, 2), (std::vector<double>{-2.5, 0.0}));
    EXPECT_EQ(sent[0].read()[0], 0.25);
}

TEST_F(AGainStage, InvertsAtUnityGain)
{
    startGain(1.0, 0.0, 1.0);
    EXPECT_EQ(samplesOf(run({{0.25, -0.5}, {1.0, 0.0}}), 0, 2), (std::vector<double>{-0.25, 0.5}));
}

TEST_F(AGainStage, EmitsTinyNoiseWhenMutedAnotherOnEachChannel)
{
    startGain(2.0, 1.0, 0.0);
    const std::vector<double> loud(512, 0.5);
    const CAudioPort& out = run({loud, loud});
    for (const double sample : samplesOf(out, 0, 512))
        ASSERT_TRUE(sample == 1e-11 || sample == -1e-11) << sample;
    EXPECT_NE(samplesOf(out, 0, 512), samplesOf(out, 1, 512));
}

TEST_F(AGainStage, FadesToANewGainByARaisedCosineOf15Milliseconds)
{
    startGain(1.0, 0.0, 0.0);
    const std::vector<double> ones(1000, 1.0);
    EXPECT_EQ(runAll({ones, ones}, 100)[0], ones);
    set("gain", 0.25);
    const CChannels out = runAll({ones, ones}, 100);
    constexpr int kFade = 662; // 44100 * 0.015, half away from zero
    for (int i = 0; i < 1000; ++i) {
        const double old = 0.5 + 0.5 * std::cos(std::numbers::pi * std::min(i, kFade) / kFade);
        // The gain is a recursion of 662 steps whose error grows with the square of their number.
        ASSERT_NEAR(out[0][static_cast<std::size_t>(i)], 0.25 + 0.75 * old, 1e-10) << i;
        ASSERT_EQ(out[1][static_cast<std::size_t>(i)], out[0][static_cast<std::size_t>(i)]);
    }
    EXPECT_EQ(out[0][kFade], 0.25);
}

TEST_F(AGainStage, PassesTheSignalWhereTheDocumentGivesItNoParameters)
{
    const CLogCollector log;
    startProcess("audio:modGain", {});
    setFormat({0});
    const CAudioPort& out = run({{0.25, -0.5}});
    EXPECT_EQ(out.getChannel(0).buffer, sent[0]);
    EXPECT_THAT(log.lines,
                testing::Contains(testing::HasSubstr("regModuleParam error 0 // plugin.modTest")));
}

} // namespace

} // namespace tsm::test
