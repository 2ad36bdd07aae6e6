#include "rsk/CDSPPartitionPlan.h"

#include <algorithm>
#include <iterator>

namespace tsm::rsk {

namespace {

struct CLevel {
    int order;
    int firstTap;
};

constexpr CLevel kLevels[] = {{6, 64}, {9, 512}, {11, 2560}, {13, 10752}};
constexpr int kLevelCount = static_cast<int>(std::size(kLevels));
static_assert(kLevelCount == CDSPPartitionPlan::kMaxStages);

/// Measured: about as many partitions cost what a further stage with its few does.
constexpr int kMaxLastPartitions = 20;

} // namespace

CDSPPartitionPlan::CDSPPartitionPlan(int length) noexcept
    : headLength(std::min(length, kLevels[0].firstTap))
{
    int count = 0;
    for (int tap = headLength; tap < length; tap += count << stages[stageCount++].order) {
        const CLevel& level = kLevels[stageCount];
        count = ((length - tap - 1) >> level.order) + 1;
        if (count > kMaxLastPartitions && stageCount + 1 < kLevelCount)
            count = (kLevels[stageCount + 1].firstTap - tap) >> level.order;
        stages[stageCount] = {level.order, level.firstTap - (1 << level.order), count};
    }
}

} // namespace tsm::rsk
