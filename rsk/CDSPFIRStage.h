#pragma once

#include "Core/CArray.h"
#include "Core/COwnedArray.h"
#include "rsk/CAlignedArray.h"
#include "rsk/CDSPRealFFT.h"

namespace tsm::rsk {

/// One block size of a partitioned convolution that does all its work at its blocks' ends; its
/// output is one block late. Uniformly partitioned overlap-save, as in `CDSPPartitionStage`.
class CDSPFIRStage {
public:
    /// Takes `count` taps (1 at least) in blocks of 2^order. [setup] Allocates.
    CDSPFIRStage(int order, const double* taps, int count);

    /// Doubles of work space for `process`.
    [[nodiscard]] int getWorkCount() const noexcept { return transform.getWorkCount(); }
    /// Begins anew, as if all input before had been `value`, or with `isSparse` zero and `value` by
    /// turns, zero last. [audio] No allocation.
    void start(double value, bool isSparse) noexcept;
    /// Writes `count` samples to `out`, or adds them to it; `in` and `out` don't overlap.
    /// [audio] No allocation, no lock.
    void process(const double* in, double* out, int count, bool adds, double* work) noexcept;

private:
    using CSpectrum = CAlignedArray<double>;

    void endBlock(double* work) noexcept;

    const CDSPKernels& kernels = dspKernels();
    const CDSPRealFFT& transform;
    const int block;
    int position = 0;
    double gain = 0.0;            // at zero frequency
    double alternatingGain = 0.0; // at half the rate
    COwnedArray<CSpectrum> spectra;
    CArray<const double*> filters; // the partition with the latest taps first, as they meet
    CArray<double*> inputs;        // the spectra of past input, oldest first
    CAlignedArray<double> frame;   // the block being filled, then the one before
    CAlignedArray<double> output;
};

} // namespace tsm::rsk
