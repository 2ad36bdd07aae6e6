#pragma once

#include "Core/COwnedArray.h"
#include "rsk/CAlignedArray.h"
#include "rsk/CDSPFIRStage.h"
#include "rsk/CStdClassAllocator.h"

namespace tsm::rsk {

/// Convolves one channel with a filter at the cost of a block's latency, in the stages of a
/// `CDSPFIRPlan`. It starts warm: as if its first sample had stood there for ever, so that a
/// filter of linear phase makes no step from silence. Behind an interpolator that sample stands
/// between zeros.
class CDSPFIRConvolver : public CStdClassAllocator {
public:
    /// `blockSize` is brought to a power of 2 from 16 to 16384, the next larger one.
    /// [setup] Allocates.
    CDSPFIRConvolver(int blockSize, const double* taps, int tapCount);

    /// Samples by which the output is late, the filter's own delay left out.
    [[nodiscard]] int getLatency() const noexcept { return latency; }
    /// The next sample is the first one again. [audio]
    void reset() noexcept { isStarted = false; }
    /// `in` and `out` hold `count` samples and don't overlap. `isSparse` counts at the first call:
    /// every second sample, the second one first, is zero. [audio] No allocation, no lock.
    void process(const double* in, double* out, int count, bool isSparse = false) noexcept;

private:
    int latency;
    bool isStarted = false;
    COwnedArray<CDSPFIRStage> stages;
    CAlignedArray<double> work;
};

} // namespace tsm::rsk
