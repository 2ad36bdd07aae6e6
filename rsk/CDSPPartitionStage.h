#pragma once

#include "Core/CArray.h"
#include "rsk/CAlignedArray.h"
#include "rsk/CDSPConvolverImpulse.h"
#include "rsk/CDSPRealFFT.h"

#include <memory>

namespace tsm::rsk {

/// A share in an impulse, which goes with the last one.
using CDSPImpulseRef = std::shared_ptr<const CDSPConvolverImpulse>;

/// One block size of a convolution without latency: uniformly partitioned overlap-save
/// (Wefers, "Partitioned convolution algorithms for real-time auralization", 2015). A block is
/// transformed at its end. A lag later, which may be none, its product with the first partition
/// completes a sum, and this is transformed back: so the output is late by a block and the lag.
/// What earlier blocks add to a sum is known long before, and is summed bin by bin as samples pass.
///
/// Every second block makes that part for two sums at once, since reading the spectra is what takes
/// the time; the second of them then lacks one product more.
class CDSPPartitionStage {
public:
    /// Blocks of 2^order samples (order 5 to 15); the first one is taken as `startOffset` samples
    /// old already, so that stages elsewhere transform at other moments. Lag and offset are less
    /// than a block.
    CDSPPartitionStage(int blockOrder, int outputLag, int startOffset);

    /// Takes the stage at `index` of an impulse, whose order and lag are this one's; in use from
    /// the next output block on, or from the start after `reset`. [setup] Allocates.
    void load(const CDSPImpulseRef& impulse, int index);
    /// Forgets all input. [audio] No allocation.
    void reset() noexcept;
    /// Adds the convolution of `in` to `out`, `count` samples each; `work` has what the transform
    /// needs. Not before an impulse was loaded and taken by `reset`.
    /// [audio] No allocation, no lock.
    void process(const double* in, double* out, int count, double* work) noexcept;

private:
    /// The partitions in use, and what they are part of.
    struct CFilter {
        CDSPImpulseRef impulse;
        const CArray<const double*>* partitions = nullptr;

        [[nodiscard]] int getCount() const noexcept
        {
            return partitions ? partitions->getCount() : 0;
        }
    };

    void fitHistory(int partitions);
    void transformInput(double* work) noexcept;
    void makeOutput(double* work) noexcept;
    [[nodiscard]] int getPastCount() const noexcept;
    [[nodiscard]] int getDueBins() const noexcept;
    void sumPast() noexcept;
    void takePending() noexcept;

    const CDSPKernels& kernels = dspKernels();
    const CDSPRealFFT& transform;
    const int order;
    const int block;
    const int lag;
    const int startOffset;
    int toBoundary = 0;
    int toOutput = 0;
    int binsDone = 0;       // of the past's part of the sum
    bool isSecond = false;  // sum of two, which has all but the last of them from the start
    bool hasNewest = false; // the last spectrum is the one that completes the sum
    bool hasPending = false;
    CFilter filter;
    CFilter pending;               // later the former one
    CAlignedArray<double> history; // nothing is written before its time comes: loading is short
    CArray<double*> inputs;        // spectra in `history`, oldest first
    int known = 0;                 // of the last ones, that hold something
    CAlignedArray<double> frame;   // the block being filled, then the one before
    CAlignedArray<double> sum;
    CAlignedArray<double> next; // the second sum
    CAlignedArray<double> output;
};

} // namespace tsm::rsk
