#include "rsk/CDSPPartitionStage.h"

#include "rsk/CDSPRealFFTPool.h"

#include <algorithm>
#include <cassert>
#include <cstring>
#include <utility>

namespace tsm::rsk {

namespace {

/// Bins that are summed at once: what the kernels do best, and a divisor of all blocks.
constexpr int kBinRun = 64;

std::size_t bytesOf(int count)
{
    return static_cast<std::size_t>(count) * sizeof(double);
}

void addTo(double* __restrict sum, const double* __restrict terms, int count)
{
    for (int i = 0; i < count; ++i)
        sum[i] += terms[i];
}

} // namespace

CDSPPartitionStage::CDSPPartitionStage(int blockOrder, int outputLag, int offset)
    : transform(CDSPRealFFTPool::get(blockOrder + 1)), order(blockOrder), block(1 << blockOrder),
      lag(outputLag), startOffset(offset), frame(2 * block), sum(2 * block), next(2 * block),
      output(2 * block)
{
    assert(lag >= 0 && lag < block && offset >= 0 && offset < block);
    reset();
}

void CDSPPartitionStage::load(const CDSPImpulseRef& impulse, int index)
{
    const CDSPConvolverImpulse::CStage& stage = impulse->getStage(index);
    assert(stage.order == order && stage.lag == lag);
    pending = {impulse, &stage.partitions};
    hasPending = true;
    fitHistory(std::max(pending.getCount(), filter.getCount()));
}

void CDSPPartitionStage::fitHistory(int partitions)
{
    const int former = inputs.getCount();
    if (partitions == former)
        return;
    const int stride = spectrumStride(order);
    CAlignedArray<double> fitted;
    fitted.allocateUnset(partitions * stride);
    CArray<double*> places;
    places.reserve(partitions);
    known = std::min(known, partitions);
    for (int i = 0; i < partitions; ++i) {
        double* spectrum = places.add(fitted.data() + i * stride);
        if (i >= partitions - known)
            std::memcpy(spectrum, inputs[former - partitions + i], bytesOf(2 * block));
    }
    history.swap(fitted);
    inputs = std::move(places);
}

void CDSPPartitionStage::takePending() noexcept
{
    // Nothing is freed here: what is replaced goes at the next load.
    hasPending = false;
    std::swap(filter, pending);
}

void CDSPPartitionStage::reset() noexcept
{
    toBoundary = block - startOffset;
    toOutput = lag > startOffset ? lag - startOffset : toBoundary + lag;
    binsDone = 0;
    isSecond = false;
    hasNewest = false;
    known = 0;
    frame.clear();
    output.clear();
    if (hasPending)
        takePending();
}

void CDSPPartitionStage::process(const double* in, double* out, int count, double* work) noexcept
{
    while (count > 0) {
        const int step = std::min({count, toBoundary, toOutput});
        std::memcpy(frame.data() + block - toBoundary, in, bytesOf(step));
        addTo(out, output.data() + block - toOutput, step);
        toBoundary -= step;
        toOutput -= step;
        if (getDueBins() != binsDone)
            sumPast();
        if (toBoundary == 0)
            transformInput(work);
        if (toOutput == 0)
            makeOutput(work);
        in += step;
        out += step;
        count -= step;
    }
}

void CDSPPartitionStage::transformInput(double* work) noexcept
{
    const int last = inputs.getCount() - 1;
    double* newest = inputs[0];
    std::memmove(inputs.data(), inputs.data() + 1,
                 static_cast<std::size_t>(last) * sizeof(double*));
    inputs[last] = newest;
    known = std::min(known + 1, last + 1);
    hasNewest = true;
    transform.forwardSplit(frame.data(), newest, work);
    std::memcpy(frame.data() + block, frame.data(), bytesOf(block));
    toBoundary = block;
}

void CDSPPartitionStage::makeOutput(double* work) noexcept
{
    const int past = getPastCount();
    if (hasNewest) {
        kernels.sumProducts(inputs.data() + inputs.getCount() - 1,
                            filter.partitions->data() + filter.getCount() - 1, 1, sum.data(), block,
                            0, block, past > 0);
        // The frame held the later block in front of the one before, so what is valid of the
        // circular convolution stands in front as well.
        transform.inverseSplit(sum.data(), output.data(), work);
    }
    hasNewest = false;
    toOutput = block;
    isSecond = !isSecond && past > 0 && !hasPending;
    binsDone = 0;
    sum.swap(next);
    if (hasPending)
        takePending();
}

/// Partitions that the sum under way can have without the newest input. What came before the known
/// past was silence.
int CDSPPartitionStage::getPastCount() const noexcept
{
    return std::min(filter.getCount() - 1, known - (hasNewest ? 1 : 0));
}

/// Bins that the past's part of the sum should have by now.
int CDSPPartitionStage::getDueBins() const noexcept
{
    return (block - toOutput) & ~(kBinRun - 1);
}

/// Brings the sum to as many bins as samples have passed. The partition with the latest taps comes
/// first, and the newest input last.
void CDSPPartitionStage::sumPast() noexcept
{
    const int end = getDueBins();
    const int past = getPastCount();
    if (past == 0)
        return;
    const double* const* spectra = inputs.data() + inputs.getCount() - (hasNewest ? 1 : 0) - past;
    const int first = filter.getCount() - 1 - past;
    const double* const* taps = filter.partitions->data() + first;
    if (isSecond)
        kernels.sumProducts(spectra + past - 1, taps + past - 1, 1, sum.data(), block, binsDone,
                            end, true);
    else
        kernels.sumProductsTwice(spectra, taps, first > 0 ? taps[-1] : nullptr, past, sum.data(),
                                 next.data(), block, binsDone, end);
    binsDone = end;
}

} // namespace tsm::rsk
