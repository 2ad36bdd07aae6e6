#pragma once

#include "Audio/Processes/CTapeCoefficients.h"

#include <cstdint>

namespace tsm {

/// Where the noise and the flutter filters of a stage stand. All channels of a stage start alike
/// and so stay alike: their image doesn't wander.
struct CFlutterState {
    std::uint32_t noise = 0;
    double s0 = 0.0;
    double s1 = 0.0;
    double s2 = 0.0;
    double s3 = 0.0;
    int position = 0; // counts down from length - 1

    bool operator==(const CFlutterState&) const = default;
};

/// The signal state of one channel of the tape stage or of the post stage.
struct CTapeState {
    CFlutterState flutter;
    double rollOff = 0.0;
    double w1 = 0.0;
    double w2 = 0.0;
    double envelope = 1.0;     // feedback gain; the post stage has none and leaves it
    double* history = nullptr; // the last samples of the delay, oldest first; borrowed
};

/// Back to silence; the noise goes on where it stands.
void resetTapeState(CTapeState& state, const CFlutterCoefficients& flutter) noexcept;

} // namespace tsm
