#include "Tests/Support/CProcessTree.h"
#include "Tests/Support/TapeRig.h"

namespace tsm::test {

namespace {

/// The processes of the two stages against the stages alone, which have tests of their own.
class AReelpathProcess : public AProcess {
protected:
    void startTape()
    {
        startProcess("audio:modReelpath", {{"recgain", settings.recGain},
                                           {"saturation", settings.wet},
                                           {"flutter", settings.flutter},
                                           {"hardness", settings.hardness},
                                           {"emphasis", settings.emphasisDb},
                                           {"highgain", 3.0},
                                           {"mode", double(settings.feedbackMode)},
                                           {"fluttermode", double(settings.flutterMode)}});
    }

    CTapeSettings settings{44100.0, 1.5, 0.75, 0.25, 0.5, 6.0, 2, 1};
    const CSignal left = noise(3000, 0.5, 1);
    const CSignal right = noise(3000, 0.5, 2);
};

TEST_F(AReelpathProcess, GivesEachChannelTheStageWithItsParameters)
{
    startTape();
    setFormat({0, 0});
    const CChannels out = runAll({left, right}, 512);
    EXPECT_EQ(out[0], CTapeStageRig(settings).process(left));
    EXPECT_EQ(out[1], CTapeStageRig(settings).process(right));
    EXPECT_EQ(env->latency, 3);
}

TEST_F(AReelpathProcess, FollowsTheSampleRate)
{
    startTape();
    setFormat({0}, 44100.0);
    runAll({left}, 512);
    setFormat({0}, 96000.0);
    settings.sampleRate = 96000.0;
    EXPECT_EQ(runAll({left}, 512)[0], CTapeStageRig(settings).process(left));
    EXPECT_EQ(env->latency, 6);
}

TEST_F(AReelpathProcess, FadesToAFreshStageOnceThatOnesDelayHasPassed)
{
    startTape();
    setFormat({0, 0});
    runAll({left, right}, 100);
    set("hardness", 0.0);
    const CChannels out = runAll({left, right}, 100);

    CTapeStageRig formerStage(settings);
    formerStage.process(right);
    const CSignal former = formerStage.process(right);
    settings.hardness = 0.0;
    const CSignal fresh = CTapeStageRig(settings).process(right);
    for (std::size_t i = 0; i < right.size(); ++i) {
        const double at = std::clamp((double(i) - 3.0) / 662.0, 0.0, 1.0);
        const double old = 0.5 + 0.5 * std::cos(std::numbers::pi * at);
        ASSERT_NEAR(out[1][i], old * former[i] + (1.0 - old) * fresh[i], 1e-9) << i;
    }
}

TEST_F(AReelpathProcess, NeedsNoMoreMemoryHoweverOftenItChanges)
{
    startTape();
    setFormat({0, 0});
    const auto change = [&](double hardness) {
        set("hardness", hardness);
        runAll({left, right}, 512);
    };
    change(0.1);
    change(0.2);
    const int before = pool.getAllocationCount();
    for (int i = 0; i < 10; ++i)
        change(0.05 * i);
    EXPECT_EQ(pool.getAllocationCount(), before);
}

TEST_F(AReelpathProcess, IsSilentAfterAReset)
{
    startTape();
    setFormat({0});
    runAll({left}, 512);
    process->reset();
    const CSignal silence(512, 0.0);
    EXPECT_EQ(runAll({silence}, 512)[0], silence);
}

TEST_F(AReelpathProcess, HasAPostStageWithItsParameters)
{
    const CTapePostSettings post{44100.0, 0.75, 6.0, -3.0, 1};
    startProcess("audio:modReelpathPost", {{"flutter", post.flutter},
                                           {"emphasis", post.emphasisDb},
                                           {"highgain", post.highGainDb},
                                           {"fluttermode", double(post.flutterMode)}});
    setFormat({0, 0}, 44100.0, 10);
    const CChannels out = runAll({left, right}, 512);
    EXPECT_EQ(out[0], CTapePostRig(post).process(left));
    EXPECT_EQ(out[1], CTapePostRig(post).process(right));
    EXPECT_EQ(env->latency, 13);
}

} // namespace

} // namespace tsm::test
