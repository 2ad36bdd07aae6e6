#include "rsk/CDSPPartitionPlan.h"

#include <algorithm>

namespace tsm::rsk {

namespace {

constexpr int ceilDiv(int value, int divisor)
{
    return value / divisor + (value % divisor != 0);
}

/// The tap with which a stage of that order begins when it has no delay.
constexpr int startFor(int order)
{
    return (5 << order) / 2;
}

} // namespace

CDSPPartitionPlan::CDSPPartitionPlan(int length) noexcept
{
    int order = length <= kMaxShortImpulse ? 4 : 5;
    headLength = std::min(length, startFor(order));
    int tap = headLength;
    int delay = 0;
    while (tap < length) {
        const int block = 1 << order;
        int count = ceilDiv(length - tap, block);
        const int nextStart = startFor(order + 2);
        if (stageCount < kMaxStages - 1)
            count = std::min(count, ceilDiv(nextStart - tap, block));
        stages[stageCount++] = {order, tap, count, delay};
        if (count > (length - tap) / block)
            return;
        tap += count * block;
        delay = tap - nextStart;
        order += 2;
    }
}

} // namespace tsm::rsk
