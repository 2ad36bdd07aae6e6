#pragma once

#include "Tools/Support/CSoundBuffer.h"

#include <array>

namespace tsm {

/// A steady tone and its harmonics.
struct CToneMeasure {
    static constexpr int kHarmonicCount = 10; // the fundamental is the first
    static constexpr double kSkirt = 0.02;

    std::array<double, kHarmonicCount> powers{}; // mean squares: a full-scale sine has 0.5

    /// Measures the tone of `hz` in `sound`, which holds nothing else and has no fades. The power
    /// of a harmonic is taken over the window's main lobe and kSkirt of its frequency to either
    /// side, so that a tone whose pitch wavers keeps its power and its distortion; harmonics beyond
    /// half the rate count as 0. Segments are 1.5 seconds long, or shorter for a shorter sound.
    [[nodiscard]] static CToneMeasure of(const CSoundBuffer& sound, double hz);

    /// Peak of the fundamental, full scale 1.0.
    [[nodiscard]] double amplitude() const;

    /// THD: the root of the power of harmonics 2 to 10 over the fundamental's; 0 for silence.
    [[nodiscard]] double harmonicDistortion() const;
};

} // namespace tsm
