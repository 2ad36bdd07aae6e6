#include "Audio/Filters/CFIRFilter.h"

#include <algorithm>

namespace tsm {

CFIRFilter::CFIRFilter(const double* taps, int tapCount, int blockSize)
    : blocks(new rsk::CDSPFIRConvolver(blockSize, taps, tapCount))
{
}

CFIRFilter::CFIRFilter(const double* taps, int tapCount) : headTaps(std::min(tapCount, kHeadTaps))
{
    std::copy_n(taps, headTaps, head);
    // The first tap behind the head is as late as a block of that length.
    if (tapCount > headTaps)
        blocks.reset(new rsk::CDSPFIRConvolver(kHeadTaps, taps + headTaps, tapCount - headTaps));
}

int CFIRFilter::getLatency() const noexcept
{
    return headTaps > 0 ? 0 : blocks->getLatency();
}

void CFIRFilter::reset() noexcept
{
    if (blocks)
        blocks->reset();
    isHeadStarted = false;
}

void CFIRFilter::process(const double* in, double* out, int count, bool isSparse) noexcept
{
    if (blocks)
        blocks->process(in, out, count, isSparse);
    else
        std::fill_n(out, count, 0.0);
    if (headTaps == 0 || count <= 0)
        return;
    if (!isHeadStarted)
        startHead(in[0], isSparse);
    addHead(in, out, count);
}

void CFIRFilter::startHead(double value, bool isSparse) noexcept
{
    isHeadStarted = true;
    place = 0;
    for (int age = 0; age < 2 * kHeadTaps; ++age)
        past[age] = isSparse && age % 2 == 1 ? 0.0 : value;
}

void CFIRFilter::addHead(const double* in, double* out, int count) noexcept
{
    int at = place;
    for (int i = 0; i < count; ++i) {
        past[at] = past[at + kHeadTaps] = in[i];
        double sum = 0.0;
        for (int tap = 0; tap < headTaps; ++tap)
            sum += head[tap] * past[at + tap];
        out[i] += sum;
        at = at == 0 ? kHeadTaps - 1 : at - 1;
    }
    place = at;
}

} // namespace tsm
