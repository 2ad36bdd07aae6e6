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

void CDSPZeroLatencyConvolver::load(const CDSPImpulseRef& newImpulse)
{
    if (newImpulse == impulse)
        return;
    fitLine(newImpulse->getHeadLength());
    impulse = newImpulse;
    loadStages();
}

void CDSPZeroLatencyConvolver::fitLine(int headLength)
{
    const int formerPast = impulse ? impulse->getHeadLength() - 1 : 0;
    const int past = headLength - 1;
    if (impulse && past == formerPast)
        return;
    CAlignedArray<double> newLine(past + kMaxBlock + kKernelPad);
    const int kept = std::min(past, formerPast);
    if (kept > 0)
        std::memcpy(newLine.data() + past - kept, line.data() + formerPast - kept,
                    static_cast<std::size_t>(kept) * sizeof(double));
    line.swap(newLine);
}

void CDSPZeroLatencyConvolver::loadStages()
{
    // A stage's place in time comes with its order; of the same first order all are the same.
    const int count = impulse->getStageCount();
    if (!stages.isEmpty() && count > 0 && stages[0].getOrder() != impulse->getStage(0).order)
        stages.clear();
    while (stages.getCount() > count)
        stages.remove(stages.getCount() - 1);
    for (int i = 0; i < count; ++i) {
        const bool isNew = i >= stages.getCount();
        if (isNew) {
            const CDSPConvolverImpulse::CStage& cut = impulse->getStage(i);
            stages.create(cut.order, (kStartOffsets[i][phase] << cut.order) / 16, cut.delay);
        }
        stages[i].load(impulse, i);
        if (isNew)
            stages[i].reset();
    }
}

void CDSPZeroLatencyConvolver::reset() noexcept
{
    line.clear();
    for (CDSPPartitionStage& stage : stages)
        stage.reset();
}

void CDSPZeroLatencyConvolver::process(const double* in, double* out, int count,
                                       double* work) noexcept
{
    if (!impulse) {
        std::fill_n(out, count, 0.0);
        return;
    }
    for (; count > 0; count -= kMaxBlock, in += kMaxBlock, out += kMaxBlock)
        processBlock(in, out, std::min(count, kMaxBlock), work);
}

void CDSPZeroLatencyConvolver::processBlock(const double* in, double* out, int count,
                                            double* work) noexcept
{
    const int past = impulse->getHeadLength() - 1;
    double* block = line.data() + past;
    std::memcpy(block, in, static_cast<std::size_t>(count) * sizeof(double));
    kernels.convolveDirect(block, out, count, impulse->getHead(), past + 1);
    for (CDSPPartitionStage& stage : stages)
        stage.process(block, out, count, work);
    std::memmove(line.data(), line.data() + count, static_cast<std::size_t>(past) * sizeof(double));
}

} // namespace tsm::rsk
