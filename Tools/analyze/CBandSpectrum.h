#pragma once

#include "Tools/analyze/CPowerSpectrum.h"

#include <vector>

namespace tsm {

/// The level of a sound in bands of a sixth of an octave, overlapping, four centres a band, from
/// 20 Hz to 20 kHz. Bands of constant relative width show pink noise as a level line, which is
/// nearer to what is heard than a level per hertz.
class CBandSpectrum {
public:
    /// Centres of all bands in Hz, ascending.
    [[nodiscard]] static const std::vector<double>& centers();

    /// Mean square in each band in dB, where a full-scale sine has -3.01; kFloorDb at least.
    /// Bands that reach beyond half the rate hold what is below it.
    [[nodiscard]] static std::vector<double> levels(const CSoundBuffer& sound);

    static constexpr double kFloorDb = -150.0;
};

} // namespace tsm
