#include "Tools/impulse/TapeLosses.h"

#include "Tools/impulse/CTapeResponse.h"

#include <cmath>
#include <numbers>

#include <gtest/gtest.h>

namespace tsm {
namespace {

constexpr double kTwoPi = 2.0 * std::numbers::pi;

double toDb(double ratio)
{
    return 20.0 * std::log10(ratio);
}

TEST(TapeLosses, HaveTheFiguresOfTheTextbooks)
{
    const double wavenumber = kTwoPi / 20e-6; // 20 um
    EXPECT_NEAR(toDb(spacingLoss(wavenumber, 20e-6)), -54.6, 0.03);
    // A layer as deep as the wavelength reads as 1 / (2 pi), but for the 0.2 percent below it.
    EXPECT_NEAR(thicknessLoss(wavenumber, 20e-6), (1.0 - 0.00187) / kTwoPi, 1e-5);
    EXPECT_NEAR(gapLoss(wavenumber, 20e-6 / 1.136), 0.0, 1e-12);
    // Half an effective gap: 2 / pi.
    EXPECT_NEAR(toDb(gapLoss(wavenumber, 10e-6 / 1.136)), -3.92, 0.01);
    // A track of 1 mm at 20 um is extinct at the angle whose tangent is 0.02: 68.7 minutes.
    EXPECT_NEAR(azimuthLoss(wavenumber, 1e-3, kTwoPi * 68.75 / 21600.0), 0.0, 1e-3);
    for (const double none : {spacingLoss(0.0, 1.0), thicknessLoss(0.0, 1.0), gapLoss(0.0, 1.0),
                              azimuthLoss(0.0, 1.0, 0.1)})
        EXPECT_EQ(none, 1.0);
}

TEST(TheBesselIntegral, HasItsTabulatedValues)
{
    // Abramowitz and Stegun, "Handbook of Mathematical Functions", table 11.1.
    CBesselIntegral integral;
    EXPECT_EQ(integral.advanceTo(0.0), 0.0);
    EXPECT_NEAR(integral.advanceTo(1.0), 0.9197304101, 1e-7);
    EXPECT_NEAR(integral.advanceTo(2.4048), 1.4703, 1e-4);
    EXPECT_NEAR(integral.advanceTo(5.0), 0.7153119178, 1e-7);
    EXPECT_NEAR(integral.advanceTo(10.0), 1.0670113040, 1e-7);
}

TEST(AHeadOfFiniteLength, RaisesTheWavelengthsNearItsOwn)
{
    // No lift: the edges read as sharply as the gap, and infinite wavelengths not at all.
    EXPECT_EQ(contourEffect(0.0, 0.0, 0.0), 0.0);
    EXPECT_NEAR(toDb(contourEffect(1.0, 0.0, 1.4703)), 3.35, 0.01);
    EXPECT_NEAR(contourEffect(1e6, 1e-3, 0.9), 1.0, 1e-12);
}

CTapeMachine machineOf(double speedIps)
{
    return {speedIps, 4.0, 0.4,  0.8,     13.0,    2.0,     1.0,
            6.0,      0.9, 16.0, 32000.0, 30000.0, 10000.0, 0.5};
}

TEST(ATapeMachine, IsAsLoudWhereItIsAlignedAsItShallBe)
{
    CTapeResponse response;
    ASSERT_TRUE(response.make(machineOf(15.0), 44100.0, 16385));
    EXPECT_NEAR(toDb(response.at(1000.0)), 0.0, 1e-9);
    EXPECT_NEAR(toDb(response.at(10000.0)), 0.5, 1e-6);
}

TEST(ATapeMachine, MovesItsHeadBumpWithItsSpeed)
{
    const auto bumpHz = [](double speedIps) {
        CTapeResponse response;
        EXPECT_TRUE(response.make(machineOf(speedIps), 44100.0, 65537));
        double best = 40.0;
        for (int hz = 40; hz < 300; ++hz)
            if (response.at(hz) > response.at(best))
                best = hz;
        return best;
    };
    // The amplifiers' low cut is far below.
    EXPECT_NEAR(bumpHz(60.0) / bumpHz(30.0), 2.0, 0.1);
}

TEST(ATapeMachine, CannotBeAlignedBeyondItsLeadNetwork)
{
    CTapeMachine machine = machineOf(1.875);
    CTapeResponse response;
    EXPECT_FALSE(response.make(machine, 44100.0, 16385));
}

} // namespace
} // namespace tsm
