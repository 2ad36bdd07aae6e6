#include "Tests/Support/CProcessTree.h"

namespace tsm::test {

namespace {

class ABypassSwitch : public AProcess {
protected:
    /// Two channels, of groups 0 and 1.
    void startBypass(double enable)
    {
        startProcess("audio:modBypass", {{"enable", enable}, {"group-solo", 0.0, true}});
        setFormat({0, 1});
    }
    /// Lets a fade to a fresh module pass, then gives one block's output.
    const CAudioPort& settle()
    {
        const std::vector<double> block(512, 0.5);
        const std::vector<double> dry(512, 0.125);
        for (int i = 0; i < 4; ++i)
            run({block, block}, {dry, dry});
        return run({block, block}, {dry, dry});
    }
    static bool isMuteNoise(const CAudioPort& port, int channel)
    {
        const std::vector<double> samples = samplesOf(port, channel, 512);
        return std::ranges::all_of(samples, [](double x) { return x == 1e-11 || x == -1e-11; });
    }
};

TEST_F(ABypassSwitch, HandsOnTheProcessedSignal)
{
    startBypass(0.0);
    addDryInput();
    const CAudioPort& out = settle();
    EXPECT_EQ(out.getChannel(0).buffer, sent[0]);
    EXPECT_EQ(out.getChannel(1).buffer, sent[1]);
}

TEST_F(ABypassSwitch, HandsOnTheDrySignalWhenOn)
{
    startBypass(0.0);
    addDryInput();
    settle();
    set("enable", 1.0, kAllParamGroups);
    const CAudioPort& out = settle();
    EXPECT_EQ(out.getChannel(0).buffer, sent[2]);
    EXPECT_EQ(out.getChannel(1).buffer, sent[3]);
}

TEST_F(ABypassSwitch, IsSilentWhenOnWithoutADrySignal)
{
    startBypass(1.0);
    const CAudioPort& out = settle();
    EXPECT_TRUE(isMuteNoise(out, 0));
    EXPECT_TRUE(isMuteNoise(out, 1));
}

TEST_F(ABypassSwitch, FadesBetweenWetAndDry)
{
    startBypass(0.0);
    addDryInput();
    settle();
    set("enable", 1.0, kAllParamGroups);
    const std::vector<double> wet(331, 0.5);
    const std::vector<double> dry(331, 0.125);
    run({wet, wet}, {dry, dry});
    // Half of 662 samples on, the cosine stands in its middle.
    const CAudioPort& out = run({wet, wet}, {dry, dry});
    EXPECT_NEAR(samplesOf(out, 0, 1)[0], 0.3125, 1e-12);
}

TEST_F(ABypassSwitch, SilencesAllGroupsButTheSoloedOne)
{
    startBypass(0.0);
    settle();
    set("group-solo", 1.0, 1);
    const CAudioPort& out = settle();
    EXPECT_TRUE(isMuteNoise(out, 0));
    EXPECT_EQ(out.getChannel(1).buffer, sent[1]);

    set("group-solo", 1.0, 0); // both: nobody is silenced
    EXPECT_EQ(settle().getChannel(0).buffer, sent[0]);
    set("group-solo", 0.0, kAllParamGroups);
    EXPECT_EQ(settle().getChannel(1).buffer, sent[1]);
}

TEST_F(ABypassSwitch, SilencesTheDrySignalOfAGroupThatIsNotSoloed)
{
    startBypass(1.0);
    addDryInput();
    settle();
    set("group-solo", 1.0, 1);
    const CAudioPort& out = settle();
    EXPECT_TRUE(isMuteNoise(out, 0));
    EXPECT_EQ(out.getChannel(1).buffer, sent[3]);
}

} // namespace

} // namespace tsm::test
