#include "Audio/Processes/CTapePostStage.h"

namespace tsm {

void CTapePostStage::update(const CTapePostSettings& settings) noexcept
{
    constexpr std::uint32_t kFirstNoise = 1000000; // unrelated to the flutter of the stage before
    start(tapeKernels().updatePost(settings), kFirstNoise);
}

void CTapePostStage::work(const CTapePostCoefficients& coefficients, const CTapeLane* lanes,
                          int laneCount, int count) noexcept
{
    tapeKernels().processPost(coefficients, lanes, laneCount, count);
}

} // namespace tsm
