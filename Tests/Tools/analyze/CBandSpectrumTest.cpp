#include "Tools/analyze/CBandSpectrum.h"

#include "Tests/Tools/analyze/TestSounds.h"
#include "Tools/analyze/CSoundMeasure.h"
#include "Tools/music/CNoise.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace tsm {

TEST(PowerSpectrum, AddsUpToTheMeanSquare)
{
    CNoise noise(7);
    const CSoundBuffer sound = soundOf(44100, 20.0, [&](double) { return 0.5 * noise.next(); });
    const double rms = CSoundMeasure::of(sound).rms;
    for (const ESpectrumWindow window : {ESpectrumWindow::Hann, ESpectrumWindow::BlackmanHarris}) {
        const CPowerSpectrum spectrum(sound, 8192, window);
        // 200 half-overlapping segments of noise: a hundredth is several deviations.
        EXPECT_NEAR(spectrum.powerBetween(0.0, 22050.0) / (rms * rms), 1.0, 0.01);
    }
}

TEST(PowerSpectrum, CutsBandsWithoutGapOrOverlap)
{
    const CSoundBuffer sound = soundOf(
        48000, 1.0, [](double time) { return sineAt(time, 440.0, 0.5) + sineAt(time, 7e3, 0.2); });
    const CPowerSpectrum spectrum(sound, 4096, ESpectrumWindow::Hann);
    double sum = 0.0;
    for (double low = 0.0; low < 24000.0; low += 77.7)
        sum += spectrum.powerBetween(low, low + 77.7);
    EXPECT_NEAR(sum, spectrum.powerBetween(0.0, 24100.0), 1e-12);
    EXPECT_EQ(spectrum.powerBetween(30000.0, 31000.0), 0.0);
}

TEST(BandSpectrum, ShowsASineAtItsLevelAndItsFrequency)
{
    for (const double hz : {50.0, 1000.0, 12000.0}) {
        SCOPED_TRACE(hz);
        const std::vector<double> levels = CBandSpectrum::levels(
            soundOf(44100, 5.0, [hz](double time) { return sineAt(time, hz, 1.0); }));
        const auto highest = std::ranges::max_element(levels);
        EXPECT_NEAR(*highest, -3.01, 0.05);
        const double center =
            CBandSpectrum::centers()[static_cast<std::size_t>(highest - levels.begin())];
        EXPECT_NEAR(std::log2(center / hz), 0.0, 1.0 / 6.0);
    }
}

TEST(BandSpectrum, RisesByThreeDecibelsAnOctaveInWhiteNoise)
{
    CNoise noise(99);
    const std::vector<double> levels =
        CBandSpectrum::levels(soundOf(44100, 30.0, [&](double) { return noise.next(); }));
    const std::vector<double>& centers = CBandSpectrum::centers();
    const auto levelAt = [&](double hz) {
        return levels[static_cast<std::size_t>(std::ranges::lower_bound(centers, hz) -
                                               centers.begin())];
    };
    EXPECT_NEAR(levelAt(8000.0) - levelAt(1000.0), 9.03, 0.4);
}

} // namespace tsm
