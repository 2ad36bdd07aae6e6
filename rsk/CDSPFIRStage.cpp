#include "rsk/CDSPFIRStage.h"

#include "rsk/CDSPRealFFTPool.h"

#include <algorithm>
#include <cstring>

namespace tsm::rsk {

CDSPFIRStage::CDSPFIRStage(int order, const double* taps, int count)
    : transform(CDSPRealFFTPool::get(order + 1)), block(1 << order), frame(2 * block),
      output(2 * block)
{
    const double scale = 1.0 / (2 * block); // for the transforms, which have none
    CAlignedArray<double> work(transform.getWorkCount());
    for (int first = (count - 1) / block * block; first >= 0; first -= block) {
        CSpectrum& filter = spectra.create(2 * block);
        const int size = std::min(block, count - first);
        for (int i = 0; i < size; ++i)
            filter[i] = scale * taps[first + i];
        transform.forwardSplit(filter.data(), filter.data(), work.data());
        filters.add(filter.data());
        gain += 2 * block * filter[0];
        alternatingGain += 2 * block * filter[block];
        inputs.add(spectra.create(2 * block).data());
    }
}

void CDSPFIRStage::start(double value, bool isSparse) noexcept
{
    position = 0;
    // A value and zero by turns are half of the value and half of it with alternating sign, which
    // stands at half the rate.
    const double constant = isSparse ? 0.5 * value : value;
    const double alternating = isSparse ? 0.5 * value : 0.0;
    for (double* input : inputs) {
        std::fill_n(input, 2 * block, 0.0);
        input[0] = constant * 2 * block;
        input[block] = alternating * 2 * block;
    }
    for (int i = 0; i < 2 * block; ++i) {
        const double sign = i % 2 == 0 ? 1.0 : -1.0;
        frame[i] = constant + sign * alternating;
        output[i] = constant * gain + sign * alternating * alternatingGain;
    }
}

void CDSPFIRStage::process(const double* in, double* out, int count, bool adds,
                           double* work) noexcept
{
    while (count > 0) {
        const int step = std::min(count, block - position);
        const auto bytes = static_cast<std::size_t>(step) * sizeof(double);
        std::memcpy(frame.data() + position, in, bytes);
        const double* ready = output.data() + position;
        if (adds)
            for (int i = 0; i < step; ++i)
                out[i] += ready[i];
        else
            std::memcpy(out, ready, bytes);
        position += step;
        if (position == block)
            endBlock(work);
        in += step;
        out += step;
        count -= step;
    }
}

void CDSPFIRStage::endBlock(double* work) noexcept
{
    position = 0;
    const int last = inputs.getCount() - 1;
    double* newest = inputs[0];
    std::memmove(inputs.data(), inputs.data() + 1,
                 static_cast<std::size_t>(last) * sizeof(double*));
    inputs[last] = newest;
    transform.forwardSplit(frame.data(), newest, work);
    std::memcpy(frame.data() + block, frame.data(),
                static_cast<std::size_t>(block) * sizeof(double));
    kernels.sumProducts(inputs.data(), filters.data(), filters.getCount(), output.data(), block, 0,
                        block, false);
    transform.inverseSplit(output.data(), output.data(), work);
}

} // namespace tsm::rsk
