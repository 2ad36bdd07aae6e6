#include "Tests/Support/TapeRig.h"

#include <gtest/gtest.h>

namespace tsm::test {

namespace {

constexpr double kRate = 44100.0;

TEST(APostStage, UndoesTheEmphasisOfTheTapeStage)
{
    CTapeSettings tapeSettings{kRate, 1.0, 1.0, 0.0, 1.0, 10.0, 0, 0};
    CTapePostSettings postSettings{kRate, 0.0, 10.0, 0.0, 0};
    for (const double hz : {300.0, 1000.0, 3000.0, 8000.0}) {
        SCOPED_TRACE(hz);
        CTapeStageRig tape(tapeSettings);
        CTapePostRig post(postSettings);
        const CSignal in = sine(2 * 44100, hz, kRate, 0.05);
        const CSignal out = post.process(tape.process(in));
        const double gain = std::abs(responseAt(in, out, hz, kRate, 44100));
        // Two interpolations of 0.5 % at the top, the roll-offs 0.2 % at the bottom.
        EXPECT_NEAR(gain / tape.stage.getCoefficients().makeup, 1.0, 0.01);
    }
}

TEST(APostStage, TiltsByTheHighGainAbove1000Hz)
{
    const CTapePostSettings settings{kRate, 0.0, 4.0, 10.0, 0};
    for (const double hz : {100.0, 1000.0, 9000.0}) {
        SCOPED_TRACE(hz);
        CTapePostRig post(settings);
        const CSignal in = sine(2 * 44100, hz, kRate, 0.5);
        const double gainDb =
            20.0 * std::log10(std::abs(responseAt(in, post.process(in), hz, kRate, 44100)));
        // A shelf of 6 dB: half of it at the corner, and nearly none or all far from it.
        const double expectedDb = hz < 500.0 ? 0.0 : hz < 2000.0 ? 3.0 : 6.0;
        EXPECT_NEAR(gainDb, expectedDb, 0.6);
        if (hz == 1000.0) {
            EXPECT_NEAR(gainDb, 3.0, 0.02);
        }
    }
}

TEST(APostStage, LetsDirectCurrentFadeWithTheRollOffs20Hz)
{
    CTapePostRig post(CTapePostSettings{kRate, 0.5, 6.0, 6.0, 0});
    const CSignal out = post.process(CSignal(8000, 1.0));
    // One time constant behind the step (351 samples of the analog model), then a long way on.
    const auto at = static_cast<std::size_t>(post.stage.getLatency()) + 351;
    EXPECT_NEAR(out[at], std::exp(-1.0), 0.002);
    EXPECT_LT(std::abs(out.back()), 1e-8);
}

TEST(APostStage, FluttersUnlikeTheTapeStage)
{
    // At equal shelves a fast sine shows where each stage reads: they must not agree.
    CTapeStageRig tape(CTapeSettings{kRate, 1.0, 1.0, 1.0, 1.0, 0.0, 0, 0});
    CTapePostRig post(CTapePostSettings{kRate, 1.0, 0.0, 0.0, 0});
    const CSignal in = sine(20000, 4000.0, kRate, 0.5);
    const CSignal first = tape.process(in);
    const CSignal second = post.process(in);
    double apart = 0.0;
    double level = 0.0;
    for (std::size_t i = 1000; i < in.size(); ++i) {
        apart += std::pow(first[i] - second[i], 2);
        level += std::pow(second[i], 2);
    }
    // Two unrelated movements of 0.2 samples each, at 0.57 radians a sample.
    EXPECT_GT(std::sqrt(apart / level), 0.05);
    EXPECT_LT(std::sqrt(apart / level), 0.5);
}

TEST(APostStage, ReportsTheNominalDelayAndOne)
{
    CTapePostRig post(CTapePostSettings{kRate, 0.0, 0.0, 0.0, 0});
    EXPECT_EQ(post.stage.getLatency(), 3);
    const CSignal out = post.process({1.0, 0.0, 0.0, 0.0, 0.0, 0.0, 0.0});
    EXPECT_EQ(std::ranges::max_element(out) - out.begin(), 3);
}

} // namespace

} // namespace tsm::test
