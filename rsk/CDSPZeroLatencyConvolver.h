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

    /// Takes an impulse and keeps it. On a convolver in use the stages go on with their history
    /// and turn to the new taps at their next block's end; the former impulse is let go of by the
    /// load after that. [setup] Allocates where the new impulse is longer.
    void load(const CDSPImpulseRef& newImpulse);
    /// Forgets all input and keeps the impulse. [audio] No allocation.
    void reset() noexcept;
    /// Writes `count` samples; `out` may be `in`. Without an impulse they are zero. `work` has the
    /// impulse's getWorkCount() doubles, of any content. [audio] No allocation, no lock.
    void process(const double* in, double* out, int count, double* work) noexcept;

private:
    void fitLine(int headLength);
    void loadStages();
    void processBlock(const double* in, double* out, int count, double* work) noexcept;

    const CDSPKernels& kernels = dspKernels();
    const int phase;
    CDSPImpulseRef impulse;
    CAlignedArray<double> line; // the head's past, then the block
    COwnedArray<CDSPPartitionStage> stages;
};

} // namespace tsm::rsk
