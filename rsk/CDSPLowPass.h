#pragma once

#include "rsk/CAlignedArray.h"
#include "rsk/CDSPDesignCache.h"
#include "rsk/CDSPRealFFT.h"
#include "rsk/CStdClassAllocator.h"

namespace tsm::rsk {

enum class EDSPPhase { Linear };

/// A low-pass of linear phase, windowed after Kaiser, as the spectrum of its taps.
class CDSPLowPass : public CStdClassAllocator {
public:
    struct CKey {
        double frequency;     // where the stop band begins, 1.0 is half the rate
        double transitionPct; // the transition band's width in percent of `frequency`
        double attenuationDb; // of the stop band; the pass band's ripple is as small
        EDSPPhase phase;
        double gain;

        bool operator==(const CKey&) const = default;
    };

    explicit CDSPLowPass(const CKey& design);

    /// Taps on each side of the center one, which is also the delay in samples.
    [[nodiscard]] int getHalfLength() const noexcept { return halfLength; }
    /// The transform that convolves with it; at least half of a frame is new samples.
    [[nodiscard]] const CDSPRealFFT& getTransform() const noexcept { return *transform; }
    /// The packed spectrum of the taps, over the transform's scale.
    [[nodiscard]] const double* getSpectrum() const noexcept { return spectrum.data(); }

    const CKey key;

private:
    int halfLength;
    const CDSPRealFFT* transform;
    CAlignedArray<double> spectrum;
};

/// The low-passes of the whole process. [any]
using CDSPLowPassCache = CDSPDesignCache<CDSPLowPass, 96>;
[[nodiscard]] CDSPLowPassCache& lowPassCache();

} // namespace tsm::rsk
