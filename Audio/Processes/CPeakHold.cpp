#include "Audio/Processes/CPeakHold.h"

#include <algorithm>

namespace tsm {

void CPeakHold::restart(int frames, double level, bool useSmallest)
{
    ring.clear();
    ring.resize(std::clamp(frames, 1, kMaxFrames), level);
    newest = 0;
    held = level;
    holdFrames = 0;
    isMinimum = useSmallest;
}

void CPeakHold::addFrame(double peak) noexcept
{
    newest = (newest > 0 ? newest : ring.getCount()) - 1;
    ring[newest] = peak;
    if (isAhead(peak, held)) {
        held = peak;
        holdFrames = ring.getCount();
        return;
    }
    if (holdFrames > 0)
        --holdFrames;
    if (holdFrames == 0)
        scan();
}

void CPeakHold::scan() noexcept
{
    const int count = ring.getCount();
    int bestAge = 0;
    held = ring[newest];
    for (int age = 1; age < count; ++age) {
        const double value = ring[(newest + age) % count];
        // Of equal values the youngest stays longest.
        if (isAhead(held, value))
            continue;
        held = value;
        bestAge = age;
    }
    holdFrames = count - bestAge;
}

} // namespace tsm
