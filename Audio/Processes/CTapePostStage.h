#pragma once

#include "Audio/Processes/CEqualMark.h"
#include "Audio/Processes/TapeKernels.h"

namespace tsm {

/// The playback side of the tape for one channel: a delay moved by a flutter of its own, a roll-off
/// of lows, and the emphasis undone.
class CTapePostStage {
public:
    /// One channel of a call; `in` and `out` hold the block and don't overlap.
    struct CLane {
        const double* in;
        double* out;
        CTapePostStage* stage;
    };

    /// Computes all coefficients and starts again from silence and the stage's first noise value.
    void update(const CTapePostSettings& settings) noexcept;
    /// The doubles that the delay needs after `update`.
    [[nodiscard]] int getHistoryCount() const noexcept
    {
        return tapeHistoryCount(coefficients.flutter.center);
    }
    /// Gives the delay its memory, `getHistoryCount()` doubles that stay the caller's, and clears
    /// it. To be called after each `update`, before the first block.
    void setHistory(double* memory) noexcept;
    /// Back to silence; the noise goes on.
    void reset() noexcept;

    /// Samples by which the stage is late.
    [[nodiscard]] int getLatency() const noexcept { return coefficients.flutter.center + 1; }
    [[nodiscard]] const CTapePostCoefficients& getCoefficients() const noexcept
    {
        return coefficients;
    }
    [[nodiscard]] CTapeState& getState() noexcept { return state; }
    /// Whether both will have the same flutter at the same settings.
    [[nodiscard]] bool isTwinOf(const CTapePostStage& other) noexcept;

    /// Works `count` samples of all channels of one process; at most kMaxTapeLanes lanes, each with
    /// a stage of its own. The lanes may differ in their settings. [audio] No allocation, no lock.
    static void process(const CLane* lanes, int laneCount, int count) noexcept;

private:
    CTapePostCoefficients coefficients;
    CEqualMark mark; // of the coefficients
    CTapeState state;
};

} // namespace tsm
