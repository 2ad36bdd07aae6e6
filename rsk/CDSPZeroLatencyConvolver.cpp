#include "rsk/CDSPZeroLatencyConvolver.h"

#include "rsk/CDSPConvolverPhase.h"
#include "rsk/CDSPPartitionPlan.h"

#include <algorithm>
#include <cassert>

namespace tsm::rsk {

namespace {

/// In sixteenths of a block, by stage and phase: no two phases have the same start in a stage, and
/// a phase early in one stage is late in the next.
constexpr int kStartOffsets[CDSPPartitionPlan::kMaxStages][CDSPConvolverPhase::kCount] = {
    {0, 4, 2, 6, 3, 7, 1, 5}, {6, 2, 0, 4, 1, 5, 7, 3}, {4, 0, 6, 2, 7, 3, 5, 1},
    {2, 6, 4, 0, 5, 1, 3, 7}, {0, 4, 2, 6, 3, 7, 1, 5},
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
    line.fit(newImpulse->getPastCount() + kMaxPiece);
    impulse = newImpulse;
    loadStages();
}

void CDSPZeroLatencyConvolver::loadStages()
{
    // A stage's place in time comes with its order; of the same first order all are the same.
    const int count = impulse->getStageCount();
    if (!stages.isEmpty() && count > 0 && stages[0].getOrder() != impulse->getStage(0).order)
        stages.clear();
    while (stages.getCount() > count)
        stages.remove(stages.getCount() - 1);
    restingCount = std::min(restingCount, stages.getCount());
    for (int i = 0; i < count; ++i) {
        const bool isNew = i >= stages.getCount();
        if (isNew) {
            const CDSPConvolverImpulse::CStage& cut = impulse->getStage(i);
            stages.create(cut.order, (kStartOffsets[i][phase] << cut.order) / 16, cut.delay);
        }
        stages[i].load(impulse, i);
        if (isNew || i < restingCount)
            stages[i].reset();
    }
}

void CDSPZeroLatencyConvolver::reset() noexcept
{
    line.clear();
    for (CDSPPartitionStage& stage : stages)
        stage.reset();
    restingCount = 0;
}

void CDSPZeroLatencyConvolver::process(const double* in, double* out, int count,
                                       double* work) noexcept
{
    if (!impulse) {
        std::fill_n(out, count, 0.0);
        return;
    }
    const CDSPConvolverImpulse::CPrefix* prefix = impulse->findPrefix(count);
    const int first = prefix ? prefix->stageCount : 0;
    wakeStages(first, work);
    if (!prefix)
        convolveDirectly(impulse->getHead(), in, out, count);
    else if (!prefix->transform)
        convolveDirectly(prefix->filter, in, out, count);
    else
        transformPieces(*prefix, in, out, count, work);
    for (int i = first; i < stages.getCount(); ++i)
        stages[i].process(in, out, count, work);
}

/// Stages before `first` rest from now on; those behind it that did so far catch up.
void CDSPZeroLatencyConvolver::wakeStages(int first, double* work) noexcept
{
    for (int i = first; i < restingCount; ++i) {
        const int count = impulse->getStage(i).getPastCount();
        stages[i].catchUp(line.newest(count), count, work);
    }
    restingCount = first;
}

void CDSPZeroLatencyConvolver::convolveDirectly(const CDSPDirectFilter& filter, const double* in,
                                                double* out, int count) noexcept
{
    for (int i = 0; i < count; i += kMaxPiece) {
        const int piece = std::min(count - i, kMaxPiece);
        line.append(in + i, piece);
        filter.process(line.newest(piece), out + i, piece);
    }
}

void CDSPZeroLatencyConvolver::transformPieces(const CDSPConvolverImpulse::CPrefix& prefix,
                                               const double* in, double* out, int count,
                                               double* work) noexcept
{
    const CDSPRealFFT& transform = *prefix.transform;
    const int length = transform.getCount();
    const int past = prefix.tapCount - 1;
    const int maxPiece = length - past;
    double* frame = work;
    double* spectrum = frame + length;
    double* rest = spectrum + length;
    // Pieces of equal length, as few as will do.
    const int pieceCount = (count + maxPiece - 1) / maxPiece;
    for (int i = 0, done = 0; i < pieceCount; ++i) {
        const int piece = (count - done) / (pieceCount - i);
        std::copy_n(line.newest(past), past, frame);
        std::copy_n(in + done, piece, frame + past);
        std::fill(frame + past + piece, frame + length, 0.0);
        transform.forwardSplit(frame, spectrum, rest);
        const double* const taps = prefix.spectrum.data();
        kernels.sumProducts(&spectrum, &taps, 1, frame, length / 2, 0, length / 2);
        transform.inverseSplit(frame, spectrum, rest);
        // Before these the circular convolution has wrapped.
        std::copy_n(spectrum + past, piece, out + done);
        line.append(in + done, piece);
        done += piece;
    }
}

} // namespace tsm::rsk
