#pragma once

#include "Audio/Processes/TapeKernels.h"

#include <cassert>
#include <cstdint>

namespace tsm {

/// Most channels of one call: sixteen, each with a module that fades in and one that fades out.
constexpr int kMaxTapeLanes = 32;

/// Calls `work(stage, lanes, laneCount)` for each set of twins among the lanes: stages that are
/// equal in coefficients and flutter state, and therefore will have the same flutter over the
/// block. All channels of one module group are twins, as a rule; equality decides, so that it's
/// right during a crossfade, too.
template <class Lane, class Work>
void forEachTwins(const Lane* lanes, int laneCount, const Work& work)
{
    assert(laneCount <= kMaxTapeLanes);
    std::uint32_t done = 0; // a bit for each lane
    for (int first = 0; first < laneCount; ++first) {
        if (done >> first & 1u)
            continue;
        CTapeLane twins[kMaxTapeLanes];
        int twinCount = 0;
        for (int i = first; i < laneCount; ++i) {
            const bool isDone = done >> i & 1u;
            if (isDone || (i != first && !lanes[i].stage->isTwinOf(*lanes[first].stage)))
                continue;
            done |= 1u << i;
            twins[twinCount++] = {lanes[i].in, lanes[i].out, &lanes[i].stage->getState()};
        }
        work(*lanes[first].stage, twins, twinCount);
    }
}

} // namespace tsm
