#include "Tests/Support/TapeReference.h"
#include "Tests/Support/TapeRig.h"

#include <gtest/gtest.h>

#include <limits>
#include <memory>

namespace tsm::test {

namespace {

/// The largest difference of a stage from its reference in T.
template <class Reference>
double largestDifference(Reference reference, const CSignal& in, const CSignal& out)
{
    double largest = 0.0;
    for (std::size_t i = 0; i < in.size(); ++i)
        largest = std::max(largest, std::abs(static_cast<double>(reference.step(in[i]) - out[i])));
    return largest;
}

/// What rounding may do to a signal of 1.0: the one-pole's coefficient at its lowest corner is the
/// difference of numbers near 1 that are w^2 apart; the rest is a few hundred roundings.
double tolerance(double sampleRate, double cornerHz)
{
    const double w = 2.0 * std::numbers::pi * cornerHz / std::max(sampleRate, kTapeMinRate);
    return 1e-11 + 0x1p-53 / (w * w);
}

std::vector<CTapeSettings> tapeSettings()
{
    std::vector<CTapeSettings> all;
    for (const double rate : {3000.0, 8000.0, 44100.0, 96000.0, 352800.0, 1536000.0})
        for (const double hardness : {0.0, 0.5, 1.0})
            for (int mode = 0; mode <= 4; ++mode)
                all.push_back({rate, 1.0 + mode, mode % 2 ? 1.0 : 0.7, 0.25 * mode, hardness,
                               8.0 - 4.0 * mode, mode, mode % 3});
    return all;
}

class ATapeKernel : public testing::TestWithParam<EKernelBuild> {
protected:
    void SetUp() override
    {
        if (!selectTapeKernels(GetParam()))
            GTEST_SKIP() << "not for this processor";
    }
    void TearDown() override
    {
        selectTapeKernels(tapeKernels(EKernelBuild::Fma) ? EKernelBuild::Fma
                                                         : EKernelBuild::Generic);
    }
    bool isExact() const { return GetParam() == EKernelBuild::Generic; }
};

TEST_P(ATapeKernel, FollowsTheRecurrenceOfTheTapeStage)
{
    // The second half stays below the knee of the harder settings.
    CSignal in = noise(3000, 1.5);
    std::for_each(in.begin() + 1500, in.end(), [](double& x) { x *= 0.05; });
    for (const CTapeSettings& settings : tapeSettings()) {
        SCOPED_TRACE(testing::Message() << settings.sampleRate << " Hz, hardness "
                                        << settings.hardness << ", mode " << settings.feedbackMode);
        const CSignal out = CTapeStageRig(settings).process(in, 509);
        const double difference = largestDifference(CTapeStageReference<double>(settings), in, out);
        if (isExact()) {
            EXPECT_EQ(difference, 0.0);
        }
        EXPECT_LT(difference, tolerance(settings.sampleRate, 5.0));
        EXPECT_LT(largestDifference(CTapeStageReference<long double>(settings), in, out),
                  tolerance(settings.sampleRate, 5.0));
    }
}

TEST_P(ATapeKernel, FollowsTheRecurrenceOfThePostStage)
{
    const CSignal in = noise(3000, 1.5);
    for (const double rate : {3000.0, 8000.0, 44100.0, 352800.0, 1536000.0}) {
        SCOPED_TRACE(rate);
        for (int mode = 0; mode < 2; ++mode) {
            const CTapePostSettings settings{rate, 0.5 + 0.5 * mode, 10.0, 6.0 * mode, mode};
            const CSignal out = CTapePostRig(settings).process(in, 509);
            const double difference =
                largestDifference(CTapePostReference<double>(settings), in, out);
            if (isExact()) {
                EXPECT_EQ(difference, 0.0);
            }
            EXPECT_LT(difference, tolerance(rate, 20.0));
            EXPECT_LT(largestDifference(CTapePostReference<long double>(settings), in, out),
                      tolerance(settings.sampleRate, 20.0));
        }
    }
}

TEST_P(ATapeKernel, DoesNotDependOnTheBlockLength)
{
    const CSignal in = noise(2500, 1.5);
    for (const int mode : {0, 2}) {
        const CTapeSettings settings{352800.0, 2.0, 0.8, 0.9, 0.4, 10.0, mode, 1};
        const CSignal whole = CTapeStageRig(settings).process(in, 2500);
        for (const int blockLength : {1, 2, 3, 7, 64, 127, 128, 129, 255, 257, 512}) {
            SCOPED_TRACE(testing::Message() << blockLength << " samples, mode " << mode);
            // Runs of the feedback loop fall differently, the sums in them don't.
            EXPECT_EQ(CTapeStageRig(settings).process(in, blockLength), whole);
        }
    }
}

TEST_P(ATapeKernel, GivesEachLaneWhatItWouldGetAlone)
{
    CTapeSettings other;
    other.hardness = 0.1;
    other.flutter = 1.0;
    for (const int mode : {0, 1}) {
        CTapeSettings settings;
        settings.feedbackMode = mode;
        // Twins with a stranger and a late starter between them.
        const CTapeSettings rows[] = {settings, other, settings, settings, settings, other};
        std::vector<std::unique_ptr<CTapeStageRig>> rigs;
        std::vector<CSignal> in;
        std::vector<CSignal> out(std::size(rows), CSignal(600));
        std::vector<CTapeStage::CLane> lanes;
        for (std::size_t i = 0; i < std::size(rows); ++i) {
            rigs.push_back(std::make_unique<CTapeStageRig>(rows[i]));
            in.push_back(noise(600, 1.5, static_cast<unsigned>(i)));
            if (i == 3)
                rigs[i]->process(CSignal(100, 0.3));
            lanes.push_back({in[i].data(), out[i].data(), &rigs[i]->stage});
        }
        CTapeStage::process(lanes.data(), static_cast<int>(lanes.size()), 600);
        for (std::size_t i = 0; i < std::size(rows); ++i) {
            SCOPED_TRACE(i);
            CTapeStageRig alone(rows[i]);
            if (i == 3)
                alone.process(CSignal(100, 0.3));
            EXPECT_EQ(alone.process(in[i]), out[i]);
        }
    }
}

TEST_P(ATapeKernel, TellsTwinsApartOnceOneIsSetAnew)
{
    const CTapeSettings settings;
    CTapeSettings other = settings;
    other.hardness = 0.1; // the flutter stays the same
    const CSignal in = noise(300, 1.5);
    for (const int changed : {0, 1}) {
        CTapeStageRig rigs[] = {CTapeStageRig(settings), CTapeStageRig(settings)};
        CSignal out[] = {CSignal(in.size()), CSignal(in.size())};
        const CTapeStage::CLane lanes[] = {{in.data(), out[0].data(), &rigs[0].stage},
                                           {in.data(), out[1].data(), &rigs[1].stage}};
        CTapeStage::process(lanes, 2, 0); // finds them equal and moves no flutter
        rigs[changed].update(other);
        CTapeStage::process(lanes, 2, static_cast<int>(in.size()));
        EXPECT_EQ(CTapeStageRig(other).process(in), out[changed]);
        EXPECT_EQ(CTapeStageRig(settings).process(in), out[1 - changed]);
    }
}

TEST_P(ATapeKernel, StaysInsideItsMemoryAtAnyRateAndSignal)
{
    constexpr double kNan = std::numeric_limits<double>::quiet_NaN();
    constexpr double kInf = std::numeric_limits<double>::infinity();
    CSignal broken = noise(700, 1.5);
    broken[100] = kNan;
    broken[300] = kInf;
    broken[301] = -kInf;
    broken[302] = 1e308;
    for (const double rate :
         {kNan,     -kInf,    -1.0,           0.0,     1.0,     20.0,    4000.0,
          7999.9,   8000.0,   11025.0,        22050.0, 22051.0, 44100.0, 48000.0,
          192000.0, 768000.0, 8.0 * 768000.0, 1e9,     1e300,   kInf}) {
        SCOPED_TRACE(rate);
        for (const double flutter : {0.0, 1.0, 50.0, kNan}) {
            for (const int mode : {0, 4}) {
                CTapeStageRig tape(CTapeSettings{rate, 30.0, 0.5, flutter, 1.0, 18.0, mode, 1});
                CTapePostRig post(CTapePostSettings{rate, flutter, 18.0, -12.0, 1});
                EXPECT_GE(tape.stage.getLatency(), 2);
                EXPECT_LE(tape.stage.getLatency(), kTapeMaxCenter + 1);
                tape.process(broken);
                post.process(broken);
                if (!(flutter <= 1.0))
                    continue;
                tape.stage.reset();
                const CSignal out = tape.process(noise(700, 1.5));
                EXPECT_TRUE(std::ranges::all_of(out, [](double x) { return std::isfinite(x); }));
            }
        }
    }
}

TEST_P(ATapeKernel, HasTheCurvesKnownPoints)
{
    const CTapeKernels& kernels = *tapeKernels(GetParam());
    // The sigmoid alone: hardness 0.
    EXPECT_NEAR(kernels.saturate(5.0, 0.0), 1.00039, 5e-6);
    EXPECT_NEAR(kernels.saturate(10.0, 0.0), 0.99926, 5e-6);
    EXPECT_NEAR(kernels.saturate(1e9, 0.0), 1.0022, 5e-5);
    for (double u = 0.0; u < 4.0; u += 0.01)
        EXPECT_NEAR(kernels.saturate(u, 0.0), std::tanh(u), 1.5e-3);
    // The hard knee: linear to full scale, then flat but for the sigmoid's own 0.0022.
    EXPECT_EQ(kernels.saturate(0.999, 1.0), 0.999);
    EXPECT_NEAR(kernels.saturate(3.0, 1.0), 1.0, 1e-6);
    EXPECT_NEAR(kernels.saturate(-3.0, 1.0), -0.98, 1e-6);
    // Above the knee the negative half is the positive one, stretched by 1 / 0.98 and scaled.
    for (const double x : {0.51, 0.6, 0.9, 2.0, 20.0})
        EXPECT_NEAR(kernels.saturate(-0.98 * x, 0.5), -0.98 * kernels.saturate(x, 0.5), 1e-15);
    for (const double x : {0.0, 0.1, 0.4999})
        EXPECT_NEAR(kernels.saturate(-0.98 * x, 0.5), -0.98 * x, 1e-16);
}

TEST_P(ATapeKernel, ComputesThePublishedFigures)
{
    CTapeSettings settings;
    EXPECT_NEAR(tapeKernels().updateTape(settings).makeup, 1.0303, 5e-5);
    settings.flutter = 0.0;
    EXPECT_NEAR(tapeKernels().updateTape(settings).flutter.depth, 0.27694, 5e-6);
    struct CRow {
        double rate;
        int length;
        int center;
    };
    for (const CRow& row : {CRow{44100.0, 44, 2}, CRow{48000.0, 48, 3}, CRow{96000.0, 96, 5},
                            CRow{192000.0, 192, 9}}) {
        settings.sampleRate = row.rate;
        const CFlutterCoefficients flutter = tapeKernels().updateTape(settings).flutter;
        EXPECT_EQ(flutter.length, row.length);
        EXPECT_EQ(flutter.center, row.center);
    }
}

TEST_P(ATapeKernel, KnowsTwoKindsOfFlutter)
{
    CTapeSettings settings;
    const CFlutterCoefficients cns = tapeKernels().updateTape(settings).flutter;
    settings.flutterMode = 1;
    const CFlutterCoefficients pro = tapeKernels().updateTape(settings).flutter;
    EXPECT_EQ(pro.depth, 2.5 * cns.depth);
    EXPECT_NE(pro.c0, cns.c0);
    for (settings.flutterMode = 2; settings.flutterMode <= 4; ++settings.flutterMode)
        EXPECT_EQ(tapeKernels().updateTape(settings).flutter, pro);
}

INSTANTIATE_TEST_SUITE_P(Builds, ATapeKernel,
                         testing::Values(EKernelBuild::Generic, EKernelBuild::Fma),
                         [](const auto& build) {
                             return build.param == EKernelBuild::Fma ? "Fma" : "Generic";
                         });

} // namespace

} // namespace tsm::test
