#include "Audio/Processes/CTapePostStage.h"

#include "Audio/Processes/TapeTwins.h"

namespace tsm {

void CTapePostStage::update(const CTapePostSettings& settings) noexcept
{
    coefficients = tapeKernels().updatePost(settings);
    mark.renew();
    state = {};
    state.flutter.noise = 1000000; // unrelated to the flutter of the stage before
    state.flutter.position = coefficients.flutter.length - 1;
}

void CTapePostStage::setHistory(double* memory) noexcept
{
    state.history = memory;
    reset();
}

void CTapePostStage::reset() noexcept
{
    resetTapeState(state, coefficients.flutter);
}

bool CTapePostStage::isTwinOf(const CTapePostStage& other) noexcept
{
    return state.flutter == other.state.flutter &&
           mark.isEqual(coefficients, other.mark, other.coefficients);
}

void CTapePostStage::process(const CLane* lanes, int laneCount, int count) noexcept
{
    const CTapeKernels& kernels = tapeKernels();
    forEachTwins(lanes, laneCount,
                 [&](const CTapePostStage& first, const CTapeLane* twins, int twinCount) {
                     kernels.processPost(first.coefficients, twins, twinCount, count);
                 });
}

} // namespace tsm
