#pragma once

#include "Core/COwnedArray.h"
#include "rsk/CAlignedArray.h"
#include "rsk/CDSPPartitionStage.h"
#include "rsk/CStdClassAllocator.h"
#include "rsk/DSPKernels.h"

namespace tsm::rsk {

/// Convolves one channel with a long impulse, without latency (Gardner, "Efficient convolution
/// without input-output delay", 1995): a direct filter for the first taps and stages of growing
/// block size for the rest, as `CDSPPartitionPlan` cuts it.
class CDSPZeroLatencyConvolver : public CStdClassAllocator {
public:
    /// The longest block that is convolved at once; `process` cuts what is longer.
    static constexpr int kMaxBlock = 512;

    /// `phase` (0 to 7) says at which moments the stages transform, and doesn't change the sound;
    /// a `CDSPConvolverPhase` gives it. [any]
    explicit CDSPZeroLatencyConvolver(int phase);

    /// Takes the impulse of `length` taps (1 at least) times `gain`. On a convolver in use the
    /// stages go on with their history and turn to the new taps at their next block's end.
    /// [setup] Allocates.
    void load(const double* impulse, int length, double gain);
    /// Forgets all input and keeps the impulse. [audio] No allocation.
    void reset() noexcept;
    /// Writes `count` samples; `out` may be `in`. Without an impulse they are zero.
    /// [audio] No allocation, no lock.
    void process(const double* in, double* out, int count) noexcept;

private:
    void loadHead(const double* impulse, int length, double gain);
    void processBlock(const double* in, double* out, int count) noexcept;

    const CDSPKernels& kernels = dspKernels();
    const int phase;
    CAlignedArray<double> head;
    CAlignedArray<double> line; // the head's past, then the block
    COwnedArray<CDSPPartitionStage> stages;
    CAlignedArray<double> work;
};

} // namespace tsm::rsk
