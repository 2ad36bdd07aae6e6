#pragma once

#include "rsk/CAlignedArray.h"
#include "rsk/DSPKernels.h"

namespace tsm::rsk {

/// A filter of a few taps, convolved directly.
///
/// Reading the past one sample apart would make vectors straddle cache lines. So the taps stand in
/// shifted copies, a vector for each distance between a run of outputs and one sample of input, and
/// it is single samples that are read at any place.
class CDSPDirectFilter {
public:
    explicit CDSPDirectFilter(const CDSPKernels& build = dspKernels()) : kernels(build) {}

    /// Takes `count` taps (1 at least) times `gain`. [setup] Allocates.
    void load(const double* taps, int count, double gain);
    [[nodiscard]] int getTapCount() const noexcept { return tapCount; }
    /// Samples in front of the input that are read; the taps beyond their count are zero.
    [[nodiscard]] int getPastCount() const noexcept { return rows.getCount() / kernels.lanes; }
    /// Writes `count` samples. `in` has the past in front and may be read up to kKernelPad samples,
    /// which must be numbers, beyond its end. [audio] No allocation.
    void process(const double* in, double* out, int count) const noexcept
    {
        kernels.convolveDirect(in, out, count, rows.data(), tapCount);
    }
    [[nodiscard]] int getDoubleCount() const noexcept { return rows.getCount(); }

private:
    const CDSPKernels& kernels;
    int tapCount = 0;
    CAlignedArray<double> rows; // as the kernel wants them
};

} // namespace tsm::rsk
