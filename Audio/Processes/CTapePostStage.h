#pragma once

#include "Audio/Processes/CTapeStageBase.h"

namespace tsm {

/// The playback side of the tape for one channel: a delay moved by a flutter of its own, a roll-off
/// of lows, and the emphasis undone.
class CTapePostStage : public CTapeStageBase<CTapePostStage, CTapePostCoefficients> {
public:
    /// Computes all coefficients and starts again from silence and the stage's first noise value.
    void update(const CTapePostSettings& settings) noexcept;
    static void work(const CTapePostCoefficients& coefficients, const CTapeLane* lanes,
                     int laneCount, int count) noexcept;
};

} // namespace tsm
