#include "Audio/Filters/CDCDAWFilterWorkspace.h"

#include <algorithm>
#include <cassert>

namespace tsm {

CDCDAWFilterWorkspace::CDCDAWFilterWorkspace(const double* branches, int sectionCount) noexcept
    : sections(sectionCount)
{
    assert(sections >= 1 && sections <= kMaxHalfBandSections);
    for (int i = 0; i < kMaxHalfBandSections; ++i) {
        coefficients[i][0] = i < sections ? branches[i] : 0.0;
        coefficients[i][1] = i < sections ? branches[sections + i] : 0.0;
    }
}

void CDCDAWFilterWorkspace::process(const CLane* lanes, int laneCount, int count) noexcept
{
    int lane = 0;
    for (; lane + 1 < laneCount; ++lane)
        if (lanes[lane].filter->isTwin(*lanes[lane + 1].filter)) {
            runLanes(lanes + lane, 2, count);
            ++lane;
        } else {
            runLanes(lanes + lane, 1, count);
        }
    if (lane < laneCount)
        runLanes(lanes + lane, 1, count);
}

void CDCDAWFilterWorkspace::process(const double* in, double* out, int count) noexcept
{
    const CLane lane{in, out, this, false};
    runLanes(&lane, 1, count);
}

void CDCDAWFilterWorkspace::runLanes(const CLane* lanes, int laneCount, int count) noexcept
{
    CHalfBandLane kernelLanes[2];
    bool isSparse = true;
    for (int i = 0; i < laneCount; ++i) {
        kernelLanes[i] = {lanes[i].in, lanes[i].out, &lanes[i].filter->state};
        isSparse = isSparse && lanes[i].isSparse && lanes[i].filter->isOtherParitySilent();
    }
    const CHalfBandKernels& kernels = halfBandKernels();
    const auto& run = laneCount == 2 ? kernels.runTwo : kernels.runOne;
    const CDCDAWFilterWorkspace& filter = *lanes[0].filter;
    run[filter.sections - 1](filter.coefficients, kernelLanes, count, isSparse);
}

bool CDCDAWFilterWorkspace::isTwin(const CDCDAWFilterWorkspace& other) const noexcept
{
    return sections == other.sections && state.turn == other.state.turn &&
           std::equal(&coefficients[0][0], &coefficients[0][0] + 2 * sections,
                      &other.coefficients[0][0]);
}

bool CDCDAWFilterWorkspace::isOtherParitySilent() const noexcept
{
    const double* past = &state.past[1 - state.turn][0][0];
    return state.late == 0.0 &&
           std::all_of(past, past + 2 * (sections + 1), [](double value) { return value == 0.0; });
}

} // namespace tsm
