#pragma once

#include "Audio/Processes/CTapeStageBase.h"

namespace tsm {

/// The recording side of the tape for one channel: feedback gain, emphasis, roll-off, a delay moved
/// by flutter, saturation with makeup.
class CTapeStage : public CTapeStageBase<CTapeStage, CTapeCoefficients> {
public:
    /// Computes all coefficients and starts again from silence and the first noise value.
    void update(const CTapeSettings& settings) noexcept;
    static void work(const CTapeCoefficients& coefficients, const CTapeLane* lanes, int laneCount,
                     int count) noexcept;
};

} // namespace tsm
