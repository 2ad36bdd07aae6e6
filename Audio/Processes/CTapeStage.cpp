#include "Audio/Processes/CTapeStage.h"

#include "Audio/Processes/TapeTwins.h"

namespace tsm {

void CTapeStage::update(const CTapeSettings& settings) noexcept
{
    coefficients = tapeKernels().updateTape(settings);
    mark.renew();
    state = {};
    state.flutter.noise = 0;
    state.flutter.position = coefficients.flutter.length - 1;
}

void CTapeStage::setHistory(double* memory) noexcept
{
    state.history = memory;
    reset();
}

void CTapeStage::reset() noexcept
{
    resetTapeState(state, coefficients.flutter);
}

bool CTapeStage::isTwinOf(const CTapeStage& other) noexcept
{
    return state.flutter == other.state.flutter &&
           mark.isEqual(coefficients, other.mark, other.coefficients);
}

void CTapeStage::process(const CLane* lanes, int laneCount, int count) noexcept
{
    const CTapeKernels& kernels = tapeKernels();
    forEachTwins(lanes, laneCount,
                 [&](const CTapeStage& first, const CTapeLane* twins, int twinCount) {
                     kernels.processTape(first.coefficients, twins, twinCount, count);
                 });
}

} // namespace tsm
