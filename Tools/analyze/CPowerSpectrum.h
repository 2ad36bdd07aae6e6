#pragma once

#include "Tools/Support/CSoundBuffer.h"

#include <vector>

namespace tsm {

enum class ESpectrumWindow {
    Hann,          // for averages of music
    BlackmanHarris // four terms, side lobes at -92 dB, for tones (Harris, Proc. IEEE 66, 1978)
};

/// One-sided power spectrum of a sound: the mean over half-overlapping windowed segments (Welch,
/// IEEE Trans. Audio Electroacoustics 15, 1967) and over the channels. The powers of all bins add
/// up to the sound's mean square, so a full-scale sine has 0.5, spread over its main lobe.
class CPowerSpectrum {
public:
    /// `size` is the length of a segment, even and 4 at least; a sound that is shorter is filled up
    /// with silence.
    CPowerSpectrum(const CSoundBuffer& sound, std::size_t size, ESpectrumWindow window);

    [[nodiscard]] double getBinHz() const { return binHz; }

    /// Power between two frequencies in Hz. A bin reaches half its width to either side, and counts
    /// by the share of it that lies inside. 0 beyond half the rate.
    [[nodiscard]] double powerBetween(double lowHz, double highHz) const;

    /// The greatest power of two up to `wanted`, 4 at least.
    [[nodiscard]] static std::size_t sizeUpTo(double wanted);

private:
    std::vector<double> bins;
    double binHz;
};

} // namespace tsm
