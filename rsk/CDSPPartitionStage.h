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
    /// The output is `extraDelay` samples later still, a block at most.
    CDSPPartitionStage(int blockOrder, int startOffset, int extraDelay);

    [[nodiscard]] int getOrder() const noexcept { return order; }

    /// Takes the stage at `index` of an impulse, whose order and delay are this one's; in use from
    /// the next block's end on, or from the start after `reset`. [setup] Allocates.
    void load(const CDSPImpulseRef& impulse, int index);
    /// Forgets all input. [audio] No allocation.
    void reset() noexcept;
    /// Brings a stage that wasn't fed up to date: `past` holds the stage's getPastCount() samples
    /// before the next one (or fewer, where before them was silence). [audio] No allocation.
    void catchUp(const double* past, int count, double* work) noexcept;
    /// Adds the convolution of `in` to `out`, `count` samples each; `work` has what the transform
    /// needs. [audio] No allocation, no lock.
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
    void takeOutput(double* out, int count, double* work) noexcept;
    void addOutput(double* out, int count) const noexcept;
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
    int binsDone = 0;
    bool hasPending = false;
    CFilter filter;
    CFilter pending;               // later the former one
    CAlignedArray<double> history; // nothing is written before its time comes: loading is short
    CArray<double*> inputs;        // spectra in `history`, oldest first
    int known = 0;                 // of the last ones, that hold something
    CAlignedArray<double> frame;   // the block being filled, then the one before
    CAlignedArray<double> sum;
    CAlignedArray<double> finished; // the sum of the block before
    CAlignedArray<double> output;   // with the last `delay` samples before it in front
};

} // namespace tsm::rsk
