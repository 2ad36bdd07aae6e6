#include "rsk/CDSPZeroLatencyConvolver.h"

#include "rsk/CDSPConvolverPhase.h"
#include "rsk/CDSPPartitionPlan.h"

#include <algorithm>
#include <cassert>
#include <cstring>

namespace tsm::rsk {

namespace {

/// In sixteenths of a block, by stage and phase: no two phases have the same start in a stage, and
/// a phase early in one stage is late in the next.
constexpr int kStartOffsets[CDSPPartitionPlan::kMaxStages][CDSPConvolverPhase::kCount] = {
    {0, 4, 2, 6, 3, 7, 1, 5}, {6, 2, 0, 4, 1, 5, 7, 3}, {4, 0, 6, 2, 7, 3, 5, 1},
    {2, 6, 4, 0, 5, 1, 3, 7}, {0, 4, 2, 6, 3, 7, 1, 5},
};

} // namespace

CDSPZeroLatencyConvolver::CDSPZeroLatencyConvolver(int wantedPhase) : phase(wantedPhase)
{
    assert(phase >= 0 && phase < CDSPConvolverPhase::kCount);
}

void CDSPZeroLatencyConvolver::load(const double* impulse, int length, double gain)
{
    assert(length > 0);
    const CDSPPartitionPlan plan(length);
    loadHead(impulse, plan.headLength, gain);

    // A stage's place in time comes with its order; of the same first order all are the same.
    if (!stages.isEmpty() && plan.stageCount > 0 && stages[0].getOrder() != plan.stages[0].order)
        stages.clear();
    while (stages.getCount() > plan.stageCount)
        stages.remove(stages.getCount() - 1);
    for (int i = 0; i < plan.stageCount; ++i) {
        const CDSPPartitionPlan::CStage& cut = plan.stages[i];
        const bool isNew = i >= stages.getCount();
        if (isNew)
            stages.create(cut.order, (kStartOffsets[i][phase] << cut.order) / 16, cut.delay);
        CDSPPartitionStage& stage = stages[i];
        if (work.getCount() < stage.getWorkCount())
            work.allocate(stage.getWorkCount());
        const int count = std::min(cut.partitions << cut.order, length - cut.firstTap);
        stage.load(impulse + cut.firstTap, count, gain, work.data());
        if (isNew)
            stage.reset();
    }
}

void CDSPZeroLatencyConvolver::loadHead(const double* impulse, int length, double gain)
{
    CAlignedArray<double> newLine(length - 1 + kMaxBlock + kKernelPad);
    const int kept = std::min(length, head.getCount()) - 1;
    if (kept > 0)
        std::memcpy(newLine.data() + length - 1 - kept, line.data() + head.getCount() - 1 - kept,
                    static_cast<std::size_t>(kept) * sizeof(double));
    line.swap(newLine);
    head.allocate(length);
    for (int i = 0; i < length; ++i)
        head[i] = gain * impulse[i];
}

void CDSPZeroLatencyConvolver::reset() noexcept
{
    line.clear();
    for (CDSPPartitionStage& stage : stages)
        stage.reset();
}

void CDSPZeroLatencyConvolver::process(const double* in, double* out, int count) noexcept
{
    if (head.getCount() == 0) {
        std::fill_n(out, count, 0.0);
        return;
    }
    for (; count > 0; count -= kMaxBlock, in += kMaxBlock, out += kMaxBlock)
        processBlock(in, out, std::min(count, kMaxBlock));
}

void CDSPZeroLatencyConvolver::processBlock(const double* in, double* out, int count) noexcept
{
    const int past = head.getCount() - 1;
    double* block = line.data() + past;
    std::memcpy(block, in, static_cast<std::size_t>(count) * sizeof(double));
    kernels.convolveDirect(block, out, count, head.data(), head.getCount());
    for (CDSPPartitionStage& stage : stages)
        stage.process(block, out, count, work.data());
    std::memmove(line.data(), line.data() + count, static_cast<std::size_t>(past) * sizeof(double));
}

} // namespace tsm::rsk
