#pragma once

#include <algorithm>
#include <cmath>
#include <numbers>

namespace tsm {

constexpr double kTwoPi = 2.0 * std::numbers::pi;

/// Frequency in Hz of a MIDI note number, equal temperament at 440 Hz.
inline double noteHz(int note)
{
    return 440.0 * std::exp2((note - 69) / 12.0);
}

/// Raised-cosine step: 0.0 up to `position` 0.0, 1.0 from 1.0 on.
inline double smoothStep(double position)
{
    return 0.5 - 0.5 * std::cos(std::numbers::pi * std::clamp(position, 0.0, 1.0));
}

/// Envelope of a note that is held for `heldSeconds`: raised-cosine rise and release, so that it
/// begins and ends without a click.
inline double gate(double time, double riseSeconds, double heldSeconds, double releaseSeconds)
{
    return smoothStep(time / riseSeconds) *
           (1.0 - smoothStep((time - heldSeconds) / releaseSeconds));
}

/// Constant-power gains of a position between -1.0, left, and 1.0, right.
struct CPan {
    explicit CPan(double position)
        : left(std::cos((position + 1.0) * kTwoPi / 8.0)),
          right(std::sin((position + 1.0) * kTwoPi / 8.0))
    {
    }
    double left;
    double right;
};

} // namespace tsm
