#include "Audio/Processes/CTapeStage.h"

namespace tsm {

void CTapeStage::update(const CTapeSettings& settings) noexcept
{
    start(tapeKernels().updateTape(settings), 0);
}

void CTapeStage::work(const CTapeCoefficients& coefficients, const CTapeLane* lanes, int laneCount,
                      int count) noexcept
{
    tapeKernels().processTape(coefficients, lanes, laneCount, count);
}

} // namespace tsm
