#pragma once

#include "Core/COwnedArray.h"
#include "rsk/CDSPInputLine.h"
#include "rsk/CDSPPartitionStage.h"
#include "rsk/CStdClassAllocator.h"

namespace tsm::rsk {

/// Convolves one channel with a long impulse, without latency: a direct filter for the first taps
/// and stages of growing block size for the rest, as `CDSPPartitionPlan` cuts it.
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
    /// Doubles of work space with the present impulse.
    [[nodiscard]] int getWorkCount() const noexcept { return workCount; }
    /// Writes `count` samples, which don't overlap the input. Without an impulse they are zero.
    /// `work` has getWorkCount() doubles, of any content. [audio] No allocation,
    /// no lock.
    void process(const double* in, double* out, int count, double* work) noexcept;

private:
    void loadStages();
    void convolveHead(const double* in, double* out, int count) noexcept;

    const int phase;
    CDSPImpulseRef impulse;
    int workCount = 0;
    CDSPInputLine line;
    COwnedArray<CDSPPartitionStage> stages;
};

} // namespace tsm::rsk
