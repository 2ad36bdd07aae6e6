#include "rsk/CDSPConvolverImpulse.h"

#include "rsk/CDSPPartitionPlan.h"
#include "rsk/CDSPRealFFTPool.h"

#include <algorithm>
#include <cassert>

namespace tsm::rsk {

namespace {

void fillStage(CDSPConvolverImpulse::CStage& stage, const double* taps, int count, double gain)
{
    const int block = 1 << stage.order;
    const int partitions = (count + block - 1) / block;
    const double scale = gain / (2 * block); // for the transforms, which have none
    const CDSPRealFFT& transform = CDSPRealFFTPool::get(stage.order + 1);
    CAlignedArray<double> padded(2 * block);
    CAlignedArray<double> work(transform.getWorkCount());
    const int stride = spectrumStride(stage.order);
    stage.spectra.allocate(partitions * stride);
    stage.partitions.reserve(partitions);
    for (int i = partitions - 1; i >= 0; --i) {
        const int first = i * block;
        const int size = std::min(block, count - first);
        padded.clear();
        for (int k = 0; k < size; ++k)
            padded[k] = scale * taps[first + k];
        double* spectrum = stage.spectra.data() + stage.partitions.getCount() * stride;
        transform.forwardSplit(padded.data(), spectrum, work.data());
        stage.partitions.add(spectrum);
    }
}

} // namespace

CDSPConvolverImpulse::CDSPConvolverImpulse(const double* taps, int length, double gain)
{
    assert(length > 0);
    const CDSPPartitionPlan plan(length);
    head.allocate(plan.headLength);
    for (int i = 0; i < plan.headLength; ++i)
        head[i] = gain * taps[i];
    for (int i = 0; i < plan.stageCount; ++i) {
        const CDSPPartitionPlan::CStage& cut = plan.stages[i];
        CStage& stage = stages.create();
        stage.order = cut.order;
        stage.delay = cut.delay;
        const int count = std::min(cut.partitions << cut.order, length - cut.firstTap);
        fillStage(stage, taps + cut.firstTap, count, gain);
    }
}

int CDSPConvolverImpulse::getWorkCount() const noexcept
{
    return stages.isEmpty() ? 0 : CDSPRealFFT::workCount(stages.last().order + 1);
}

std::size_t CDSPConvolverImpulse::getByteCount() const noexcept
{
    auto doubles = static_cast<std::size_t>(head.getCount());
    for (const CStage& stage : stages)
        doubles += static_cast<std::size_t>(stage.spectra.getCount());
    return doubles * sizeof(double);
}

} // namespace tsm::rsk
