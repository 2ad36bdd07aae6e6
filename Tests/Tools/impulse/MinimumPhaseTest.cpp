#include "Tools/impulse/MinimumPhase.h"

#include <cmath>
#include <complex>
#include <numbers>

#include <gtest/gtest.h>

namespace tsm {
namespace {

constexpr std::size_t kBinCount = 4097;

/// Magnitudes of a filter given by its transfer function of z^-1.
template <class Transfer>
std::vector<double> magnitudesOf(const Transfer& transfer)
{
    std::vector<double> magnitudes(kBinCount);
    for (std::size_t bin = 0; bin < kBinCount; ++bin)
        magnitudes[bin] = std::abs(transfer(
            std::polar(1.0, -std::numbers::pi * static_cast<double>(bin) / (kBinCount - 1))));
    return magnitudes;
}

TEST(TheMinimumPhase, OfAPoleIsItsDecay)
{
    const std::vector<double> impulse =
        minimumPhase(magnitudesOf([](std::complex<double> z) { return 1.0 / (1.0 - 0.9 * z); }));
    for (std::size_t i = 0; i < 200; ++i)
        EXPECT_NEAR(impulse[i], std::pow(0.9, static_cast<double>(i)), 1e-10);
}

TEST(TheMinimumPhase, OfAFilterWithLateEnergyIsTheMirroredOne)
{
    // A zero outside of the unit circle, at 2, has the magnitude of one inside, at 1/2.
    const std::vector<double> impulse =
        minimumPhase(magnitudesOf([](std::complex<double> z) { return 1.0 - 2.0 * z; }));
    EXPECT_NEAR(impulse[0], 2.0, 1e-10);
    EXPECT_NEAR(impulse[1], -1.0, 1e-10);
    for (std::size_t i = 2; i < 100; ++i)
        EXPECT_NEAR(impulse[i], 0.0, 1e-10);
}

TEST(TheMinimumPhase, TakesAFrequencyThatIsMissing)
{
    const std::vector<double> impulse =
        minimumPhase(magnitudesOf([](std::complex<double> z) { return 1.0 - z; }));
    // The zero on the unit circle makes the cepstrum fold over itself a little.
    EXPECT_NEAR(impulse[0], 1.0, 0.01);
    EXPECT_NEAR(impulse[1], -1.0, 0.01);
}

} // namespace
} // namespace tsm
