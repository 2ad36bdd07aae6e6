#include "Tools/music/CMusicMaker.h"

#include "Tools/Support/CMusicSections.h"
#include "Tools/analyze/CSoundMeasure.h"
#include "Tools/analyze/CToneMeasure.h"

#include <cmath>
#include <gtest/gtest.h>

namespace tsm {

namespace {

std::size_t frameAt(double seconds, int rate)
{
    return static_cast<std::size_t>(std::lround(seconds * rate));
}

CSoundBuffer sectionOf(const CSoundBuffer& music, const CMusicSection& section)
{
    const std::size_t first = frameAt(section.start, music.rate);
    return music.slice(first, frameAt(section.end, music.rate) - first);
}

/// Both music of the usual length and some whose sections end within a bar.
class Music : public ::testing::TestWithParam<double> {
protected:
    CSoundBuffer music = CMusicMaker::make(GetParam(), 44100);
};

} // namespace

TEST_P(Music, HasEverySectionAtItsLevel)
{
    EXPECT_EQ(music.getFrameCount(), frameAt(GetParam(), 44100));
    for (const CMusicSection& section : musicSections(GetParam())) {
        SCOPED_TRACE(section.name);
        const CSoundMeasure measure = CSoundMeasure::of(sectionOf(music, section));
        EXPECT_NEAR(decibels(measure.peak), section.peakDb, 0.01);
        EXPECT_GT(decibels(measure.rms), -35.0); // heard, not a lone click
    }
}

TEST_P(Music, IsSilentAtTheBordersOfItsSections)
{
    for (const CMusicSection& section : musicSections(GetParam())) {
        SCOPED_TRACE(section.name);
        const CSoundBuffer sound = sectionOf(music, section);
        for (const std::vector<double>& channel : sound.channels) {
            // -60 dB: a step of that size is masked by the attack behind it.
            EXPECT_LT(std::abs(channel.front()), 0.001);
            EXPECT_LT(std::abs(channel.back()), 0.001);
        }
    }
}

TEST_P(Music, HoldsAPureSineInItsSection)
{
    const CMusicSection section = musicSections(GetParam())[3];
    ASSERT_EQ(section.kind, EMusicSection::Sine);
    const double margin = 2.0 * kMusicFadeSeconds;
    const std::size_t first = frameAt(section.start + margin, music.rate);
    const CSoundBuffer sine = music.slice(first, frameAt(section.end - margin, music.rate) - first);
    const CToneMeasure tone = CToneMeasure::of(sine, kMusicSineHz);
    EXPECT_NEAR(decibels(tone.amplitude()), -12.0, 0.01);
    EXPECT_LT(tone.harmonicDistortion(), 1e-6);
}

INSTANTIATE_TEST_SUITE_P(OfLength, Music, ::testing::Values(20.0, 7.3));

TEST(MusicMaker, MakesTheSameSamplesAgain)
{
    EXPECT_EQ(CMusicMaker::make(5.0, 48000).channels, CMusicMaker::make(5.0, 48000).channels);
}

TEST(MusicMaker, IsStereo)
{
    const CSoundBuffer music = CMusicMaker::make(20.0, 44100);
    EXPECT_NE(sectionOf(music, musicSections(20.0)[0]).channels[0],
              sectionOf(music, musicSections(20.0)[0]).channels[1]);
}

} // namespace tsm
