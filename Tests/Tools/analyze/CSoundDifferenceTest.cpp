#include "Tools/analyze/CSoundDifference.h"

#include "Tests/Tools/analyze/TestSounds.h"

#include <gtest/gtest.h>

namespace tsm {

namespace {

CSoundBuffer tone(double seconds, double lateSeconds = 0.0)
{
    return soundOf(44100, seconds,
                   [=](double time) { return sineAt(time - lateSeconds, 997.0, 0.5); });
}

} // namespace

TEST(SoundDifference, IsNothingBetweenEqualSounds)
{
    CSoundDifference difference;
    std::string error;
    ASSERT_TRUE(CSoundDifference::of(tone(1.0), tone(1.5), 0, difference, error)) << error;
    EXPECT_EQ(difference.rest.peak, 0.0);
    EXPECT_EQ(difference.frames, 44100U);
    EXPECT_EQ(difference.unpaired, 22050U);
}

TEST(SoundDifference, UndoesADelayOfEitherSide)
{
    const CSoundBuffer late = tone(1.0, 300.0 / 44100.0);
    CSoundDifference difference;
    std::string error;
    ASSERT_TRUE(CSoundDifference::of(tone(1.0), late, 300, difference, error));
    EXPECT_LT(difference.rest.peak, 1e-10);
    ASSERT_TRUE(CSoundDifference::of(late, tone(1.0), -300, difference, error));
    EXPECT_LT(difference.rest.peak, 1e-10);
    ASSERT_TRUE(CSoundDifference::of(tone(1.0), late, 0, difference, error));
    EXPECT_GT(difference.rest.peak, 0.1);
}

TEST(SoundDifference, MeasuresWhatWasAdded)
{
    CSoundBuffer louder = tone(1.0);
    for (double& sample : louder.channels[0])
        sample += 0.001;
    CSoundDifference difference;
    std::string error;
    ASSERT_TRUE(CSoundDifference::of(tone(1.0), louder, 0, difference, error));
    EXPECT_NEAR(decibels(difference.rest.rms), -60.0, 1e-6);
    EXPECT_NEAR(decibels(difference.first.rms), -9.03, 0.01);
}

TEST(SoundDifference, RefusesSoundsThatCannotBeCompared)
{
    CSoundDifference difference;
    std::string error;
    EXPECT_FALSE(CSoundDifference::of(tone(1.0), CSoundBuffer(44100, 2, 10), 0, difference, error));
    EXPECT_FALSE(CSoundDifference::of(tone(1.0), CSoundBuffer(48000, 1, 10), 0, difference, error));
    EXPECT_FALSE(CSoundDifference::of(tone(1.0), tone(1.0), 44100, difference, error));
    EXPECT_FALSE(CSoundDifference::of(tone(1.0), tone(1.0), -50000, difference, error));
}

} // namespace tsm
