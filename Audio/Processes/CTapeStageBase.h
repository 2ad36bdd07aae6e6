#pragma once

#include "Audio/Processes/CEqualMark.h"
#include "Audio/Processes/TapeTwins.h"

namespace tsm {

/// What both stages of the tape have in common: one channel's coefficients and state, and the way
/// in which the channels of a process are worked together. A `Stage` adds `update` with settings of
/// its own, and `work(coefficients, lanes, laneCount, count)`, the kernel.
template <class Stage, class Coefficients>
class CTapeStageBase {
public:
    /// One channel of a call; `in` and `out` hold the block and don't overlap.
    struct CLane {
        const double* in;
        double* out;
        Stage* stage;
    };

    /// The doubles that the delay needs after `update`.
    [[nodiscard]] int getHistoryCount() const noexcept
    {
        return tapeHistoryCount(coefficients.flutter.center);
    }
    /// Gives the delay its memory, `getHistoryCount()` doubles that stay the caller's, and clears
    /// it. To be called after each `update`, before the first block.
    void setHistory(double* memory) noexcept
    {
        state.history = memory;
        reset();
    }
    /// Back to silence; the noise goes on.
    void reset() noexcept { resetTapeState(state, coefficients.flutter); }

    /// Samples by which the stage is late.
    [[nodiscard]] int getLatency() const noexcept { return coefficients.flutter.center + 1; }
    [[nodiscard]] const Coefficients& getCoefficients() const noexcept { return coefficients; }
    [[nodiscard]] CTapeState& getState() noexcept { return state; }
    /// Whether both will have the same flutter at the same settings.
    [[nodiscard]] bool isTwinOf(const CTapeStageBase& other) noexcept
    {
        return state.flutter == other.state.flutter &&
               mark.isEqual(coefficients, other.mark, other.coefficients);
    }

    /// Works `count` samples of all channels of one process; at most kMaxTapeLanes lanes, each with
    /// a stage of its own. The lanes may differ in their settings. [audio] No allocation, no lock.
    static void process(const CLane* lanes, int laneCount, int count) noexcept
    {
        forEachTwins(lanes, laneCount,
                     [&](const CTapeStageBase& first, const CTapeLane* twins, int twinCount) {
                         Stage::work(first.coefficients, twins, twinCount, count);
                     });
    }

protected:
    /// Starts again from silence with these coefficients, the noise at that value.
    void start(const Coefficients& fresh, std::uint32_t noise) noexcept
    {
        coefficients = fresh;
        mark.renew();
        state = {};
        state.flutter.noise = noise;
        state.flutter.position = coefficients.flutter.length - 1;
    }

private:
    Coefficients coefficients;
    CEqualMark mark; // of the coefficients
    CTapeState state;
};

} // namespace tsm
