#include "rsk/CDSPConvolverImpulse.h"

#include "rsk/CDSPPartitionPlan.h"
#include "rsk/CDSPRealFFTPool.h"

#include <algorithm>
#include <cassert>

namespace tsm::rsk {

namespace {

/// The split spectrum of `count` taps times `scale`, padded to the transform's length.
void makeSpectrum(const CDSPRealFFT& transform, const double* taps, int count, double scale,
                  double* spectrum)
{
    CAlignedArray<double> padded(transform.getCount());
    CAlignedArray<double> work(transform.getWorkCount());
    for (int i = 0; i < count; ++i)
        padded[i] = scale * taps[i];
    transform.forwardSplit(padded.data(), spectrum, work.data());
}

void fillStage(CDSPConvolverImpulse::CStage& stage, const double* taps, int count, double gain)
{
    const int block = 1 << stage.order;
    const int partitions = (count + block - 1) / block;
    const double scale = gain / (2 * block); // for the transforms, which have none
    const CDSPRealFFT& transform = CDSPRealFFTPool::get(stage.order + 1);
    const int stride = spectrumStride(stage.order);
    stage.spectra.allocate(partitions * stride);
    stage.partitions.reserve(partitions);
    for (int i = partitions - 1; i >= 0; --i) {
        const int first = i * block;
        double* spectrum = stage.spectra.data() + stage.partitions.getCount() * stride;
        makeSpectrum(transform, taps + first, std::min(block, count - first), scale, spectrum);
        stage.partitions.add(spectrum);
    }
}

} // namespace

CDSPConvolverImpulse::CDSPConvolverImpulse(const double* taps, int length, double gain)
{
    assert(length > 0);
    const CDSPPartitionPlan plan(length);
    head.load(taps, plan.headLength, gain);
    int tap = plan.headLength;
    for (int i = 0; i < plan.stageCount; ++i) {
        const CDSPPartitionPlan::CStage& cut = plan.stages[i];
        CStage& stage = stages.create();
        stage.order = cut.order;
        stage.lag = cut.lag;
        const int count = std::min(cut.partitions << cut.order, length - tap);
        fillStage(stage, taps + tap, count, gain);
        tap += count;
    }
}

int CDSPConvolverImpulse::getWorkCount() const noexcept
{
    return stages.isEmpty() ? 0 : CDSPRealFFT::workCount(stages.last().order + 1);
}

std::size_t CDSPConvolverImpulse::getByteCount() const noexcept
{
    auto doubles = static_cast<std::size_t>(head.getDoubleCount());
    for (const CStage& stage : stages)
        doubles += static_cast<std::size_t>(stage.spectra.getCount());
    return doubles * sizeof(double);
}

} // namespace tsm::rsk
