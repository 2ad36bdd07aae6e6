#pragma once

#include "Core/CArray.h"
#include "Core/COwnedArray.h"
#include "rsk/CAlignedArray.h"
#include "rsk/CDSPRealFFT.h"

namespace tsm::rsk {

/// One block size of a convolution without latency: uniformly partitioned overlap-save
/// (Wefers, "Partitioned convolution algorithms for real-time auralization", 2015) whose work is
/// spread over the samples of a block. Input is transformed at a block's end; during the next
/// block the products are summed bin by bin as samples pass; half a block later the sum is
/// transformed back. So the output is late by 2.5 blocks.
///
/// Past input spectra are kept, instead of sums for the blocks to come: one store a bin, whatever
/// the count of partitions.
class CDSPPartitionStage {
public:
    /// Blocks of 2^order samples (order 4 to 15); the first one is taken as `startOffset` samples
    /// old already (less than half a block), so that stages elsewhere transform at other moments.
    /// The output is `delay` samples later still.
    CDSPPartitionStage(int blockOrder, int startOffset, int delay);

    [[nodiscard]] int getOrder() const noexcept { return order; }
    /// Doubles of work space for `process`.
    [[nodiscard]] int getWorkCount() const noexcept { return transform.getWorkCount(); }

    /// Takes `count` taps times `gain`, in as many partitions as they fill; in use from the next
    /// block's end on, or from the start after `reset`. [setup] Allocates.
    void load(const double* taps, int count, double gain, double* work);
    /// Forgets all input. [audio] No allocation.
    void reset() noexcept;
    /// Adds the convolution of `in` to `out`, `count` samples each. [audio] No allocation, no lock.
    void process(const double* in, double* out, int count, double* work) noexcept;

private:
    using CSpectrum = CAlignedArray<double>;

    void takeInput(const double* in, int count) noexcept;
    void addOutput(double* out, int count) noexcept;
    void sumBins(int end) noexcept;
    void endBlock(double* work) noexcept;
    void takePending() noexcept;

    const CDSPKernels& kernels = dspKernels();
    const CDSPRealFFT& transform;
    const int order;
    const int block;
    const int startOffset;
    const int delay;
    int toBoundary = 0;
    int toOutput = 0;
    int delayPosition = 0;
    int binsDone = 0;
    bool hasPending = false;
    COwnedArray<CSpectrum> filter;  // partitions, the one with the latest taps first,
    COwnedArray<CSpectrum> pending; // as they meet `inputs`; later the former ones
    COwnedArray<CSpectrum> history;
    CArray<const double*> filters;
    CArray<double*> inputs;      // spectra of past input, oldest first; the last ones are in use
    CAlignedArray<double> frame; // the block being filled, then the one before
    CAlignedArray<double> sum;
    CAlignedArray<double> finished; // the sum of the block before
    CAlignedArray<double> output;
    CAlignedArray<double> delayLine;
};

} // namespace tsm::rsk
