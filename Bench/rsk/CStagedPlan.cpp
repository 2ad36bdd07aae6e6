#include "Bench/rsk/CStagedPlan.h"

#include "rsk/CDSPRealFFTPool.h"

#include <algorithm>

namespace tsm::rsk {

namespace {

constexpr int kStarts[5][8] = {
    {0, 4, 2, 6, 3, 7, 1, 5}, {6, 2, 0, 4, 1, 5, 7, 3}, {4, 0, 6, 2, 7, 3, 5, 1},
    {2, 6, 4, 0, 5, 1, 3, 7}, {0, 4, 2, 6, 3, 7, 1, 5},
};

/// The first tap of a stage that has no delay.
int startFor(int order)
{
    return (5 << order) / 2;
}

std::size_t at(int index)
{
    return static_cast<std::size_t>(index);
}

} // namespace

CStagedPlan::CStagedPlan(const double* impulse, int length, int phase)
{
    constexpr int kLevels = 5;
    int order = length <= 65536 ? 4 : 5;
    int tap = std::min(length, startFor(order));
    head.assign(impulse, impulse + tap);
    ring.resize(2 * head.size());
    position = head.size() - 1;
    int delay = 0;
    for (int level = 0; tap < length; ++level, order += 2) {
        const int block = 1 << order;
        const int toNext = (startFor(order + 2) - tap + block - 1) / block * block;
        const int rest = length - tap;
        const int count = level == kLevels - 1 ? rest : std::min(rest, toNext);
        stages.push_back(std::make_unique<CStage>(impulse + tap, count, order,
                                                  (kStarts[level][phase] << order) / 16, delay));
        tap += count;
        delay = tap - startFor(order + 2);
    }
}

void CStagedPlan::process(const double* in, double* out, int count)
{
    const std::size_t length = head.size();
    for (int n = 0; n < count; ++n) {
        ring[position] = in[n];
        ring[position + length] = in[n];
        const double* past = ring.data() + position;
        const double* taps = head.data();
        double sum = 0.0;
        for (std::size_t i = 0; i < length; ++i)
            sum += past[i] * taps[i];
        out[n] = sum;
        position = position == 0 ? length - 1 : position - 1;
    }
    for (const auto& stage : stages)
        stage->process(in, out, count);
}

CStagedPlan::CStage::CStage(const double* taps, int count, int blockOrder, int start,
                            int extraDelay)
    : order(blockOrder), block(1 << blockOrder), transform(CDSPRealFFTPool::get(blockOrder + 1)),
      toBoundary(block - start), toOutput(block / 2 - start), store(at(block)),
      frame(at(2 * block)), input(at(2 * block)), finished(at(2 * block)), output(at(2 * block)),
      ring(at(extraDelay)), work(at(transform.getWorkCount()))
{
    for (int first = 0; first < count; first += block) {
        CBuffer& filter = filters.emplace_back(at(2 * block));
        for (int i = 0; i < std::min(block, count - first); ++i)
            filter[at(i)] = taps[first + i] / (2 * block);
        transform.forward(filter.data(), filter.data(), work.data());
        sums.push_back({CBuffer(at(2 * block)), 0});
    }
}

void CStagedPlan::CStage::process(const double* in, double* out, int count)
{
    while (count > 0) {
        int step = std::min(count, toBoundary);
        const bool isOutput = step >= toOutput;
        if (isOutput)
            step = toOutput;
        const bool isBoundary = step == toBoundary;
        const int offset = block - toBoundary;
        for (int i = 0; i < step; ++i) {
            frame[at(offset + i + block)] = store[at(offset + i)];
            store[at(offset + i)] = in[i];
            frame[at(offset + i)] = in[i];
        }
        const double* ready = output.data() + block - toOutput;
        if (ring.empty()) {
            for (int i = 0; i < step; ++i)
                out[i] += ready[i];
        } else {
            for (int i = 0; i < step; ++i) {
                out[i] += ring[ringPosition];
                ring[ringPosition] = ready[i];
                ringPosition = ringPosition + 1 == ring.size() ? 0 : ringPosition + 1;
            }
        }
        const int target = ((offset + step) * (block + 1)) >> order;
        if (target != binsDone)
            addProducts(target);
        if (isBoundary)
            endBlock();
        else
            toBoundary -= step;
        if (isOutput) {
            transform.inverse(finished.data(), finished.data(), work.data());
            finished.swap(output);
            toOutput = block;
        } else {
            toOutput -= step;
        }
        in += step;
        out += step;
        count -= step;
    }
}

void CStagedPlan::CStage::addProducts(int target)
{
    for (std::size_t i = 0; i < filters.size(); ++i) {
        const double* x = input.data();
        const double* h = filters[i].data();
        double* sum = sums[i].bins.data();
        const int held = sums[i].held;
        int bin = binsDone;
        if (bin == 0) {
            sum[0] = held > 0 ? sum[0] + x[0] * h[0] : x[0] * h[0];
            ++bin;
        }
        const int last = std::min(target, block);
        const int adding = std::min(last, held);
        for (; bin < adding; ++bin) {
            const double re = x[2 * bin] * h[2 * bin] - x[2 * bin + 1] * h[2 * bin + 1];
            const double im = x[2 * bin] * h[2 * bin + 1] + x[2 * bin + 1] * h[2 * bin];
            sum[2 * bin] += re;
            sum[2 * bin + 1] += im;
        }
        for (; bin < last; ++bin) {
            const double re = x[2 * bin] * h[2 * bin] - x[2 * bin + 1] * h[2 * bin + 1];
            const double im = x[2 * bin] * h[2 * bin + 1] + x[2 * bin + 1] * h[2 * bin];
            sum[2 * bin] = re;
            sum[2 * bin + 1] = im;
        }
        if (target > block)
            sum[1] = held > block ? sum[1] + x[1] * h[1] : x[1] * h[1];
        sums[i].held = std::max(held, target);
    }
    binsDone = target;
}

void CStagedPlan::CStage::endBlock()
{
    transform.forward(frame.data(), frame.data(), work.data());
    frame.swap(input);
    CAccumulator first = std::move(sums.front());
    sums.erase(sums.begin());
    finished.swap(first.bins);
    sums.push_back({std::move(first.bins), 0});
    binsDone = 0;
    toBoundary = block;
}

} // namespace tsm::rsk
