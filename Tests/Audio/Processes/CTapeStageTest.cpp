#include "Tests/Support/TapeReference.h"
#include "Tests/Support/TapeRig.h"

#include <gtest/gtest.h>

namespace tsm::test {

namespace {

constexpr double kPi = std::numbers::pi;

/// Linear up to full scale, no emphasis, least flutter.
CTapeSettings plainSettings(double sampleRate)
{
    return {sampleRate, 1.0, 1.0, 0.0, 1.0, 0.0, 0, 0};
}

double rms(const CSignal& signal, std::size_t skip)
{
    double sum = 0.0;
    for (std::size_t i = skip; i < signal.size(); ++i)
        sum += signal[i] * signal[i];
    return std::sqrt(sum / double(signal.size() - skip));
}

TEST(ATapeStage, IsLateByTheLatencyItReports)
{
    for (const double rate : {8000.0, 44100.0, 48000.0, 96000.0, 352800.0}) {
        SCOPED_TRACE(rate);
        CTapeStageRig rig(plainSettings(rate));
        const int count = static_cast<int>(rate);
        const CSignal in = sine(count, 100.0, rate, 0.5);
        // The last half second: the roll-off has settled.
        const auto response = responseAt(in, rig.process(in), 100.0, rate, in.size() / 2);
        const double lead = std::atan(5.0 / 100.0); // the first-order roll-off's at 100 Hz
        const double late = -(std::arg(response) - lead) / (2.0 * kPi * 100.0) * rate;
        // Over half a second the flutter of 0.02 samples (44100 Hz) has nearly averaged out; the
        // roll-off's half sample at 8 kHz is its distance from its analog model.
        EXPECT_NEAR(late, rig.stage.getLatency(), 0.05 * std::max(1.0, rate / 44100.0));
    }
}

TEST(ATapeStage, IsSilentForItsLatencyAndBeginsThere)
{
    CTapeSettings settings = plainSettings(44100.0);
    CTapeStageRig rig(settings);
    const CSignal out = rig.process({0.5, 0.0, 0.0, 0.0, 0.0, 0.0, 0.0, 0.0});
    const auto peak = std::ranges::max_element(out);
    EXPECT_EQ(peak - out.begin(), rig.stage.getLatency());
    EXPECT_NEAR(*peak, 0.5, 0.01);
}

TEST(ATapeStage, EmphasisesAsTheCookbooksAnalogShelfDoes)
{
    constexpr double kRate = 44100.0;
    for (const double gainDb : {-18.0, 10.0, 18.0}) {
        CTapeSettings settings = plainSettings(kRate);
        settings.emphasisDb = gainDb;
        for (const double hz : {200.0, 1000.0, 3000.0, 9000.0}) {
            SCOPED_TRACE(testing::Message() << gainDb << " dB at " << hz);
            CTapeStageRig rig(settings);
            const CSignal in = sine(2 * 44100, hz, kRate, 0.05);
            const double measured = std::abs(responseAt(in, rig.process(in), hz, kRate, 44100)) /
                                    rig.stage.getCoefficients().makeup;
            // The prototype H(s) = A (A s^2 + s sqrt(A) / Q + 1) / (s^2 + s sqrt(A) / Q + A) at the
            // bilinear transform's s, with the bandwidth form of Q.
            const double w0 = 2.0 * kPi * 1000.0 / kRate;
            const std::complex<double> s(0.0, std::tan(kPi * hz / kRate) / std::tan(w0 / 2.0));
            const double a = std::pow(10.0, gainDb / 40.0);
            const double perQ = 2.0 * std::sinh(std::numbers::ln2 / 2.0 * 4.0 * w0 / std::sin(w0));
            const std::complex<double> middle = s * std::sqrt(a) * perQ;
            const double expected = std::abs(a * (a * s * s + middle + 1.0) / (s * s + middle + a));
            // 0.5 %: interpolation at 9 kHz between samples; the roll-off at 200 Hz takes 0.03 %.
            EXPECT_NEAR(measured / expected, 1.0, 0.005);
        }
    }
}

TEST(ATapeStage, KeepsTheFeedbackGainAtOneWithoutFeedbackAndInSilence)
{
    CTapeSettings settings;
    CTapeStageRig off(settings);
    off.process(noise(5000, 4.0));
    EXPECT_EQ(off.stage.getState().envelope, 1.0);
    settings.feedbackMode = 1;
    CTapeStageRig silent(settings);
    silent.process(CSignal(5000, 0.0));
    EXPECT_EQ(silent.stage.getState().envelope, 1.0);
}

TEST(ATapeStage, TurnsDownWhatSaturatesAndRecoversWithTheModesCorner)
{
    constexpr double kCornerHz[] = {0.0, 20.0, 10.0, 5.0, 1.0 / 0.3};
    const CSignal loud = sine(44100, 441.0, 44100.0, 3.0);
    CTapeSettings settings;
    settings.emphasisDb = 0.0;
    const double levelOff = rms(CTapeStageRig(settings).process(loud), 22050);
    for (int mode = 1; mode <= 4; ++mode) {
        SCOPED_TRACE(mode);
        settings.feedbackMode = mode;
        CTapeStageRig rig(settings);
        const double level = rms(rig.process(loud), 22050);
        EXPECT_LT(level, 0.97 * levelOff);
        const double settled = rig.stage.getState().envelope;
        EXPECT_LT(settled, 0.9);
        // The delay's last loud samples pass, then the gap to 1.0 closes as exp(-2 pi f t).
        rig.process(CSignal(100, 0.0));
        const double gap = 1.0 - rig.stage.getState().envelope;
        rig.process(CSignal(441, 0.0));
        const double closed = (1.0 - rig.stage.getState().envelope) / gap;
        const double expected = std::exp(-2.0 * kPi * kCornerHz[mode] * 0.01);
        EXPECT_NEAR(closed, expected, 0.005 * expected);
    }
}

TEST(ATapeStage, KeepsTheNoiseOverAResetAndRestartsItAtAnUpdate)
{
    const CTapeSettings settings;
    const CSignal in = noise(1000, 0.5);
    CTapeStageRig rig(settings);
    CTapeStageReference<double> reference(settings);
    const CSignal first = rig.process(in);
    for (const double x : in)
        reference.step(x);

    rig.stage.reset();
    reference.clear(); // the noise goes on
    const CSignal second = rig.process(in);
    for (std::size_t i = 0; i < in.size(); ++i)
        ASSERT_NEAR(second[i], reference.step(in[i]), 1e-10);
    EXPECT_NE(second, first);

    rig.update(settings);
    EXPECT_EQ(rig.process(in), first);
}

TEST(ATapeStage, NeverMovesItsDelayBeyondTheNominalOne)
{
    // The deepest flutter of both kinds for some minutes: the reference throws.
    for (const int mode : {0, 1}) {
        for (const double rate : {8000.0, 44100.0, 48000.0}) {
            CTapeSettings settings = plainSettings(rate);
            settings.flutter = 1.0;
            settings.flutterMode = mode;
            CTapeStageReference<double> reference(settings);
            EXPECT_NO_THROW(for (int i = 0; i < 3'000'000; ++i)
                                reference.stepDelay(0.0, reference.stepFlutter()));
        }
    }
}

} // namespace

} // namespace tsm::test
