#include "Tools/analyze/CSoundMeasure.h"

#include "Tests/Tools/analyze/TestSounds.h"

#include <gtest/gtest.h>

namespace tsm {

TEST(SoundMeasure, GivesTheTextbookLevelsOfASine)
{
    const CSoundBuffer sound =
        soundOf(48000, 1.0, [](double time) { return sineAt(time, 1000.0, 0.5); });
    const CSoundMeasure measure = CSoundMeasure::of(sound);
    EXPECT_NEAR(decibels(measure.peak), -6.0206, 1e-4);
    EXPECT_NEAR(decibels(measure.rms), -9.0309, 1e-4);
    EXPECT_NEAR(measure.crestDb(), 3.0103, 1e-4);
}

TEST(SoundMeasure, TakesTheNegativePeakAndTheMeanOverChannels)
{
    CSoundBuffer sound(44100, 2, 4);
    sound.channels[0] = {0.25, -0.75, 0.25, -0.25};
    const CSoundMeasure measure = CSoundMeasure::of(sound);
    EXPECT_DOUBLE_EQ(measure.peak, 0.75);
    EXPECT_DOUBLE_EQ(measure.rms, std::sqrt((3 * 0.0625 + 0.5625) / 8.0));
}

TEST(SoundMeasure, CallsSilenceMinusInfinityWithoutACrest)
{
    const CSoundMeasure measure = CSoundMeasure::of(CSoundBuffer(44100, 2, 100));
    EXPECT_EQ(decibels(measure.rms), -HUGE_VAL);
    EXPECT_EQ(measure.crestDb(), 0.0);
}

} // namespace tsm
