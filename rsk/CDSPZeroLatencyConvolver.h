#pragma once

#include "Core/COwnedArray.h"
#include "rsk/CAlignedArray.h"
#include "rsk/CDSPInputLine.h"
#include "rsk/CDSPPartitionStage.h"
#include "rsk/CStdClassAllocator.h"
#include "rsk/DSPKernels.h"

namespace tsm::rsk {

/// Convolves one channel with a long impulse, without latency (Gardner, "Efficient convolution
/// without input-output delay", 1995): a direct filter for the first taps and stages of growing
/// block size for the rest, as `CDSPPartitionPlan` cuts it.
///
/// Where a block is long enough, a longer direct filter, or one transform of the block and its
/// past, does the work of the first stages for less. Those then rest; when shorter blocks come,
/// they are brought up to date from the past.
class CDSPZeroLatencyConvolver : public CStdClassAllocator {
public:
    /// `phase` (0 to 7) says at which moments the stages transform, and doesn't change the sound;
    /// a `CDSPConvolverPhase` gives it. [any]
    explicit CDSPZeroLatencyConvolver(int phase);

    /// Takes an impulse and keeps it. On a convolver in use the stages go on with their history
    /// and turn to the new taps at their next block's end; the former impulse is let go of by the
    /// load after that. [setup] Allocates where the new impulse is longer.
    void load(const CDSPImpulseRef& newImpulse);
    /// Forgets all input and keeps the impulse. [audio] No allocation.
    void reset() noexcept;
    /// Doubles of work space for blocks of up to `count` samples with the present impulse.
    [[nodiscard]] int getWorkCount(int count) const noexcept
    {
        return impulse ? impulse->getWorkCount(count) : 0;
    }
    /// Writes `count` samples, which don't overlap the input. Without an impulse they are zero.
    /// `work` has getWorkCount(count) doubles, of any content. [audio] No allocation,
    /// no lock.
    void process(const double* in, double* out, int count, double* work) noexcept;

private:
    void loadStages();
    void wakeStages(int first, double* work) noexcept;
    void convolveDirectly(const CDSPDirectFilter& filter, const double* in, double* out,
                          int count) noexcept;
    void transformPieces(const CDSPConvolverImpulse::CPrefix& prefix, const double* in, double* out,
                         int count, double* work) noexcept;

    const CDSPKernels& kernels = dspKernels();
    const int phase;
    CDSPImpulseRef impulse;
    CDSPInputLine line;
    COwnedArray<CDSPPartitionStage> stages;
    int restingCount = 0; // stages, from the first on, that haven't been fed
};

} // namespace tsm::rsk
