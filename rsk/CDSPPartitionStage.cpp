#include "rsk/CDSPPartitionStage.h"

#include "rsk/CDSPRealFFTPool.h"

#include <algorithm>
#include <cassert>
#include <cstring>
#include <utility>

namespace tsm::rsk {

namespace {

std::size_t bytesOf(int count)
{
    return static_cast<std::size_t>(count) * sizeof(double);
}

} // namespace

CDSPPartitionStage::CDSPPartitionStage(int blockOrder, int offset, int extraDelay)
    : transform(CDSPRealFFTPool::get(blockOrder + 1)), order(blockOrder), block(1 << blockOrder),
      startOffset(offset), delay(extraDelay), frame(2 * block), sum(2 * block), finished(2 * block),
      output(extraDelay + 2 * block)
{
    assert(offset >= 0 && 2 * offset < block && extraDelay >= 0 && extraDelay <= block);
    reset();
}

void CDSPPartitionStage::load(const CDSPImpulseRef& impulse, int index)
{
    const CDSPConvolverImpulse::CStage& stage = impulse->getStage(index);
    assert(stage.order == order && stage.delay == delay);
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
    toOutput = block / 2 - startOffset;
    binsDone = 0;
    frame.clear();
    sum.clear();
    finished.clear();
    output.clear();
    known = 0;
    if (hasPending)
        takePending();
}

void CDSPPartitionStage::catchUp(const double* past, int count, double* work) noexcept
{
    reset();
    double unheard[64] = {};
    for (int i = 0; i < count;) {
        const int run = std::min(count - i, static_cast<int>(std::size(unheard)));
        process(past + i, unheard, run, work);
        i += run;
    }
}

void CDSPPartitionStage::process(const double* in, double* out, int count, double* work) noexcept
{
    while (count > 0) {
        const int step = std::min(count, toBoundary);
        std::memcpy(frame.data() + block - toBoundary, in, bytesOf(step));
        takeOutput(out, step, work);
        toBoundary -= step;
        sumBins(block - toBoundary);
        if (toBoundary == 0)
            endBlock(work);
        in += step;
        out += step;
        count -= step;
    }
}

/// The output's moment comes once a block, between the ends of blocks.
void CDSPPartitionStage::takeOutput(double* out, int count, double* work) noexcept
{
    const int before = std::min(count, toOutput);
    addOutput(out, before);
    toOutput -= before;
    if (toOutput > 0)
        return;
    // The frame holds the present block in front of the one before, so what is valid of the
    // circular convolution stands in front as well.
    std::memcpy(output.data(), output.data() + block, bytesOf(delay));
    transform.inverseSplit(finished.data(), output.data() + delay, work);
    toOutput = block;
    addOutput(out + before, count - before);
    toOutput -= count - before;
}

void CDSPPartitionStage::addOutput(double* out, int count) const noexcept
{
    const double* ready = output.data() + block - toOutput;
    for (int i = 0; i < count; ++i)
        out[i] += ready[i];
}

void CDSPPartitionStage::sumBins(int end) noexcept
{
    // There are as many bins as samples in a block, taken in whole vectors.
    end &= ~7;
    const int partitions = filter.getCount();
    if (end == binsDone || partitions == 0)
        return;
    // What came before the known past was silence.
    const int pairs = std::min(partitions, known);
    kernels.sumProducts(inputs.data() + inputs.getCount() - pairs,
                        filter.partitions->data() + partitions - pairs, pairs, sum.data(), block,
                        binsDone, end);
    binsDone = end;
}

void CDSPPartitionStage::endBlock(double* work) noexcept
{
    finished.swap(sum);
    if (hasPending)
        takePending();
    if (!inputs.isEmpty()) {
        double* oldest = inputs[0];
        const int rest = inputs.getCount() - 1;
        std::memmove(inputs.data(), inputs.data() + 1,
                     static_cast<std::size_t>(rest) * sizeof(double*));
        inputs[rest] = oldest;
        transform.forwardSplit(frame.data(), oldest, work);
        known = std::min(known + 1, rest + 1);
    }
    std::memcpy(frame.data() + block, frame.data(), bytesOf(block));
    toBoundary = block;
    binsDone = 0;
}

} // namespace tsm::rsk
