#include "Tools/analyze/CToneMeasure.h"

#include "Tests/Tools/analyze/TestSounds.h"

#include <gtest/gtest.h>

namespace tsm {

namespace {

constexpr double kHz = 1000.0;
constexpr double kSeconds = 2.4;

CSoundBuffer sineWithHarmonics(int rate, double second, double third, double eleventh)
{
    return soundOf(rate, kSeconds, [=](double time) {
        return sineAt(time, kHz, 0.5) + sineAt(time, 2 * kHz, 0.5 * second) +
               sineAt(time, 3 * kHz, 0.5 * third) + sineAt(time, 11 * kHz, 0.5 * eleventh);
    });
}

} // namespace

TEST(ToneMeasure, FindsKnownHarmonicsAtEveryRate)
{
    for (const int rate : {44100, 48000, 96000, 192000}) {
        SCOPED_TRACE(rate);
        const CToneMeasure tone = CToneMeasure::of(sineWithHarmonics(rate, 0.03, 0.04, 0.0), kHz);
        // The side lobes of the fundamental, at -92 dB, are all that can add to them.
        EXPECT_NEAR(tone.harmonicDistortion(), 0.05, 1e-6);
        EXPECT_NEAR(tone.amplitude(), 0.5, 1e-6);
    }
}

TEST(ToneMeasure, LeavesOutWhatLiesAboveTheTenthHarmonic)
{
    const CToneMeasure tone = CToneMeasure::of(sineWithHarmonics(48000, 0.01, 0.0, 0.2), kHz);
    EXPECT_NEAR(tone.harmonicDistortion(), 0.01, 1e-6);
}

TEST(ToneMeasure, FindsNoDistortionInAPureSine)
{
    const CToneMeasure tone = CToneMeasure::of(sineWithHarmonics(44100, 0.0, 0.0, 0.0), kHz);
    EXPECT_LT(tone.harmonicDistortion(), 1e-6); // -120 dB; the window's far lobes lie lower
}

TEST(ToneMeasure, AgreesWithTheSeriesOfACubicCurve)
{
    // x - x^3 / 3 of an amplitude a: a - a^3 / 4 at the fundamental, a^3 / 12 at the third.
    constexpr double kAmplitude = 0.8;
    const CSoundBuffer sound = soundOf(44100, kSeconds, [](double time) {
        const double x = sineAt(time, kHz, kAmplitude);
        return x - x * x * x / 3.0;
    });
    constexpr double kCube = kAmplitude * kAmplitude * kAmplitude;
    EXPECT_NEAR(CToneMeasure::of(sound, kHz).harmonicDistortion(),
                kCube / 12.0 / (kAmplitude - kCube / 4.0), 1e-6);
}

TEST(ToneMeasure, KeepsItsFigureWhenThePitchWavers)
{
    // 0.5 % of flutter at 6 Hz, applied to the time, so that the harmonics waver with the first.
    const CSoundBuffer sound = soundOf(44100, kSeconds, [](double time) {
        const double bent = time + sineAt(time, 6.0, 0.005 / (2.0 * std::numbers::pi * 6.0));
        return sineAt(bent, kHz, 0.5) + sineAt(bent, 3 * kHz, 0.005);
    });
    EXPECT_NEAR(CToneMeasure::of(sound, kHz).harmonicDistortion(), 0.01, 1e-4);
}

} // namespace tsm
