#include "rsk/CDSPFIRConvolver.h"

#include "rsk/CDSPFIRPlan.h"

#include <algorithm>

namespace tsm::rsk {

CDSPFIRConvolver::CDSPFIRConvolver(int blockSize, const double* taps, int tapCount)
{
    int order = CDSPFIRPlan::kMinOrder;
    while (order < CDSPFIRPlan::kMaxOrder && 1 << order < blockSize)
        ++order;
    latency = 1 << order;
    const CDSPFIRPlan plan(order, tapCount);
    int first = 0;
    for (int i = 0; i < plan.stageCount; ++i) {
        const int count =
            std::min(plan.stages[i].partitions << plan.stages[i].order, tapCount - first);
        stages.create(plan.stages[i].order, taps + first, count);
        first += count;
    }
    work.allocate(stages.last().getWorkCount()); // the largest
}

void CDSPFIRConvolver::process(const double* in, double* out, int count, bool isSparse) noexcept
{
    if (count <= 0)
        return;
    if (!isStarted)
        for (CDSPFIRStage& stage : stages)
            stage.start(in[0], isSparse);
    isStarted = true;
    bool adds = false;
    for (CDSPFIRStage& stage : stages) {
        stage.process(in, out, count, adds, work.data());
        adds = true;
    }
}

} // namespace tsm::rsk
