#include "Tools/analyze/CAliasMeasure.h"

#include <gtest/gtest.h>

#include <cmath>
#include <numbers>

namespace tsm {
namespace {

/// A sine of 5 kHz and another tone, at 44.1 kHz.
std::vector<double> makeTones(double hz, double level)
{
    std::vector<double> sound(65536);
    for (std::size_t i = 0; i < sound.size(); ++i) {
        const double time = 2.0 * std::numbers::pi * static_cast<double>(i) / 44100.0;
        sound[i] = 0.5 * std::sin(5000.0 * time) + 0.5 * level * std::sin(hz * time);
    }
    return sound;
}

TEST(AnAliasMeasure, FindsHarmonicsWhereTheyAreFoldedTo)
{
    // Harmonic 7 of 5 kHz, 35 kHz, is heard at 9.1 kHz: close to harmonic 2, so it is left out;
    // harmonic 8 at 4.1 kHz stands next to the tone; harmonic 12 at 44.1 - 60 + 2 * 14.1 = 15.9 kHz
    // next to harmonic 3; harmonic 11 at 10.9 kHz next to harmonic 2; harmonic 14 at 18.2 kHz and
    // harmonic 16 at 8.2 kHz stand alone.
    for (const double hz : {18200.0, 8200.0})
        EXPECT_NEAR(CAliasMeasure::aliasDb(makeTones(hz, 1e-3), 44100.0, 5000.0), -60.0, 0.1) << hz;
    for (const double hz : {10000.0, 15000.0, 8000.0})
        EXPECT_LT(CAliasMeasure::aliasDb(makeTones(hz, 1e-3), 44100.0, 5000.0), -120.0) << hz;
    EXPECT_LT(CAliasMeasure::aliasDb(makeTones(8200.0, 0.0), 44100.0, 5000.0), -120.0);
}

} // namespace
} // namespace tsm
