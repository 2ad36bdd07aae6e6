#include "rsk/CDSPConvolverImpulse.h"

#include "rsk/CDSPPartitionPlan.h"
#include "rsk/CDSPRealFFTPool.h"

#include <algorithm>
#include <cassert>
#include <iterator>

namespace tsm::rsk {

namespace {

/// A prefix by the count of stages that it replaces: the least block that gains by it, and the
/// transform, both as orders beyond that of the first stage. A transform leaves room for pieces of
/// a third of its length at the least.
struct CPrefixPlan {
    int blockOrder;
    int transformOrder; // 0 for direct convolution
};
constexpr CPrefixPlan kPrefixPlans[] = {{1, 0}, {4, 6}, {7, 9}};

constexpr int kPrefixCount = static_cast<int>(std::size(kPrefixPlans));

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
    for (int i = 0; i < plan.stageCount; ++i) {
        const CDSPPartitionPlan::CStage& cut = plan.stages[i];
        CStage& stage = stages.create();
        stage.order = cut.order;
        stage.delay = cut.delay;
        const int count = std::min(cut.partitions << cut.order, length - cut.firstTap);
        fillStage(stage, taps + cut.firstTap, count, gain);
    }
    addPrefixes(taps, length, gain);
}

void CDSPConvolverImpulse::addPrefixes(const double* taps, int length, double gain)
{
    const CDSPPartitionPlan plan(length);
    for (int i = 0; i < std::min(kPrefixCount, plan.stageCount); ++i) {
        CPrefix& prefix = prefixes.create();
        prefix.stageCount = i + 1;
        prefix.tapCount = i + 1 < plan.stageCount ? plan.stages[i + 1].firstTap : length;
        if (kPrefixPlans[i].transformOrder == 0) {
            prefix.filter.load(taps, prefix.tapCount, gain);
            continue;
        }
        const int order = plan.stages[0].order + kPrefixPlans[i].transformOrder;
        prefix.transform = &CDSPRealFFTPool::get(order);
        prefix.spectrum.allocate(prefix.transform->getCount());
        makeSpectrum(*prefix.transform, taps, prefix.tapCount, gain / (1 << order),
                     prefix.spectrum.data());
    }
}

const CDSPConvolverImpulse::CPrefix* CDSPConvolverImpulse::findPrefix(int count) const noexcept
{
    for (int i = prefixes.getCount() - 1; i >= 0; --i)
        if (count >= 1 << (stages[0].order + kPrefixPlans[i].blockOrder))
            return &prefixes[i];
    return nullptr;
}

int CDSPConvolverImpulse::getPastCount() const noexcept
{
    int past = head.getPastCount();
    for (const CPrefix& prefix : prefixes) {
        const CStage& stage = stages[prefix.stageCount - 1];
        past =
            std::max({past, prefix.tapCount, prefix.filter.getPastCount(), stage.getPastCount()});
    }
    return past;
}

int CDSPConvolverImpulse::getWorkCount(int count) const noexcept
{
    int doubles = stages.isEmpty() ? 0 : CDSPRealFFT::workCount(stages.last().order + 1);
    // Shorter blocks need no more: their transforms are shorter too.
    const CPrefix* prefix = findPrefix(count);
    if (prefix && prefix->transform)
        doubles = std::max(doubles,
                           2 * prefix->transform->getCount() + prefix->transform->getWorkCount());
    return doubles;
}

std::size_t CDSPConvolverImpulse::getByteCount() const noexcept
{
    auto doubles = static_cast<std::size_t>(head.getDoubleCount());
    for (const CStage& stage : stages)
        doubles += static_cast<std::size_t>(stage.spectra.getCount());
    for (const CPrefix& prefix : prefixes)
        doubles +=
            static_cast<std::size_t>(prefix.filter.getDoubleCount() + prefix.spectrum.getCount());
    return doubles * sizeof(double);
}

} // namespace tsm::rsk
