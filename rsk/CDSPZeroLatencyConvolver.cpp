#include "rsk/CDSPZeroLatencyConvolver.h"

#include "rsk/CDSPConvolverPhase.h"
#include "rsk/CDSPPartitionPlan.h"

#include <algorithm>
#include <cassert>

namespace tsm::rsk {

namespace {

/// In eighths of a block, by stage and phase: no two phases have the same start in a stage, and a
/// phase early in one stage is late in the next.
constexpr int kStartOffsets[CDSPPartitionPlan::kMaxStages][CDSPConvolverPhase::kCount] = {
    {0, 4, 2, 6, 3, 7, 1, 5},
    {6, 2, 0, 4, 1, 5, 7, 3},
    {4, 0, 6, 2, 7, 3, 5, 1},
    {2, 6, 4, 0, 5, 1, 3, 7},
};

/// The longest piece that the direct filter takes at once.
constexpr int kMaxPiece = 64;

} // namespace

CDSPZeroLatencyConvolver::CDSPZeroLatencyConvolver(int wantedPhase) : phase(wantedPhase)
{
    assert(phase >= 0 && phase < CDSPConvolverPhase::kCount);
}

void CDSPZeroLatencyConvolver::load(const CDSPImpulseRef& newImpulse)
{
    if (newImpulse == impulse)
        return;
    line.fit(newImpulse->getHead().getPastCount() + kMaxPiece);
    impulse = newImpulse;
    workCount = impulse->getWorkCount();
    loadStages();
}

void CDSPZeroLatencyConvolver::loadStages()
{
    const int count = impulse->getStageCount();
    while (stages.getCount() > count)
        stages.remove(stages.getCount() - 1);
    for (int i = 0; i < count; ++i) {
        const bool isNew = i >= stages.getCount();
        if (isNew) {
            const CDSPConvolverImpulse::CStage& cut = impulse->getStage(i);
            stages.create(cut.order, cut.lag, (kStartOffsets[i][phase] << cut.order) / 8);
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
    convolveHead(in, out, count);
    for (CDSPPartitionStage& stage : stages)
        stage.process(in, out, count, work);
}

void CDSPZeroLatencyConvolver::convolveHead(const double* in, double* out, int count) noexcept
{
    for (int i = 0; i < count; i += kMaxPiece) {
        const int piece = std::min(count - i, kMaxPiece);
        line.append(in + i, piece);
        impulse->getHead().process(line.newest(piece), out + i, piece);
    }
}

} // namespace tsm::rsk
