#pragma once

#include "Tools/Support/CSoundBuffer.h"

namespace tsm {

/// Levels of a sound over all its channels, linear, full scale 1.0.
struct CSoundMeasure {
    double peak = 0.0;
    double rms = 0.0; // a full-scale sine has 0.7071

    [[nodiscard]] static CSoundMeasure of(const CSoundBuffer& sound);

    /// Peak over RMS in dB; 0 for silence.
    [[nodiscard]] double crestDb() const;
};

/// Decibels of an amplitude; minus infinity for 0.
[[nodiscard]] double decibels(double amplitude);

} // namespace tsm
