#pragma once

#include "Core/CArray.h"

namespace tsm {

/// The greatest value of the last frames, or the smallest: what a display holds for a while.
/// [audio]
class CPeakHold : public CCheckedObject {
public:
    static constexpr int kMaxFrames = 4096;

    /// Begins a window of `frames` (1 to kMaxFrames) that all hold `level`. Allocates from the
    /// block allocator when the window grows.
    void restart(int frames, double level, bool useSmallest);
    /// Takes in the peak of the frame that ends. A value leaves as its own frame leaves the window.
    void addFrame(double peak) noexcept;

    [[nodiscard]] int getFrameCount() const noexcept { return ring.getCount(); }
    [[nodiscard]] double getHeld() const noexcept { return held; }
    /// The one of both that would be held.
    [[nodiscard]] double choose(double a, double b) const noexcept { return isAhead(a, b) ? a : b; }

private:
    [[nodiscard]] bool isAhead(double a, double b) const noexcept
    {
        return isMinimum ? a <= b : a >= b;
    }
    void scan() noexcept;

    CArray<double, 1> ring; // the next older frame stands one place higher, round the end
    int newest = 0;
    double held = 0.0;
    int holdFrames = 0; // that the held value may still stay
    bool isMinimum = false;
};

} // namespace tsm
