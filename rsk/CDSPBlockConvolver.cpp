#include "rsk/CDSPBlockConvolver.h"

#include "rsk/CDSPRealFFTPool.h"

#include <algorithm>
#include <cassert>
#include <cstring>

namespace tsm::rsk {

namespace {

/// The spectrum of `count` samples becomes that of twice as many with a zero behind each.
void repeatSpectrum(double* spectrum, int count)
{
    const double nyquist = spectrum[1];
    for (int i = 2; i < count; i += 2) {
        spectrum[2 * count - i] = spectrum[i];
        spectrum[2 * count - i + 1] = -spectrum[i + 1];
    }
    spectrum[1] = spectrum[0];
    spectrum[count] = nyquist;
    spectrum[count + 1] = 0.0;
}

} // namespace

CDSPBlockConvolver::CDSPBlockConvolver(const CDSPLowPass::CKey& filter, int up, int down,
                                       int maxInLen)
    : lowPass(lowPassCache(), filter), upFactor(up), downFactor(down),
      isRepeated(up == 2 && lowPass->getTransform().getOrder() > kMinFFTOrder)
{
    const CDSPRealFFT& transform = lowPass->getTransform();
    newCount = transform.getCount() - 2 * lowPass->getHalfLength();
    newCount -= newCount % upFactor;
    // The oldest input sample stands at the frame's start or, where the factor is no divisor of
    // the frame, behind zeros; either way the next one stands where its phase wants it.
    keptCount = (transform.getCount() - newCount) / upFactor;
    inputTransform = isRepeated ? &CDSPRealFFTPool::get(transform.getOrder() - 1) : &transform;
    history.allocate(keptCount + newCount / upFactor);
    frame.allocate(transform.getCount());
    work.allocate(transform.getWorkCount());
    out.allocate(getMaxOutLen(maxInLen));
    clear();
}

int CDSPBlockConvolver::getMaxOutLen(int maxInLen) const
{
    const int frames = maxInLen / (newCount / upFactor) + 1;
    return frames * (newCount / downFactor + 1);
}

void CDSPBlockConvolver::clear()
{
    history.clear();
    filled = keptCount;
    skip = lowPass->getHalfLength();
}

int CDSPBlockConvolver::process(const double* input, int length, const double*& output)
{
    int count = 0;
    while (length > 0) {
        const int step = std::min(length, history.getCount() - filled);
        std::memcpy(history.data() + filled, input,
                    static_cast<std::size_t>(step) * sizeof(double));
        filled += step;
        input += step;
        length -= step;
        if (filled < history.getCount())
            break;
        transformInput();
        count += convolve(out.data() + count);
        std::memmove(history.data(), history.data() + newCount / upFactor,
                     static_cast<std::size_t>(keptCount) * sizeof(double));
        filled = keptCount;
    }
    assert(count <= out.getCount());
    output = out.data();
    return count;
}

void CDSPBlockConvolver::transformInput()
{
    if (isRepeated || upFactor == 1) {
        inputTransform->forward(history.data(), frame.data(), work.data());
        if (isRepeated)
            repeatSpectrum(frame.data(), inputTransform->getCount());
        return;
    }
    frame.clear();
    const int start = frame.getCount() - newCount - upFactor * keptCount;
    for (int i = 0; i < history.getCount(); ++i)
        frame[start + i * upFactor] = history[i];
    inputTransform->forward(frame.data(), frame.data(), work.data());
}

int CDSPBlockConvolver::convolve(double* to)
{
    const CDSPRealFFT& transform = lowPass->getTransform();
    const int frameCount = transform.getCount();
    transform.multiply(frame.data(), lowPass->getSpectrum(), frame.data());
    transform.inverse(frame.data(), frame.data(), work.data());

    // The filter is centered at 0, so what goes out stands half a filter before the frame's end.
    const double* from = frame.data() + frameCount - newCount - lowPass->getHalfLength();
    if (downFactor == 1) {
        const int count = std::max(0, newCount - skip);
        std::memcpy(to, from + skip, static_cast<std::size_t>(count) * sizeof(double));
        skip -= newCount - count;
        return count;
    }
    int count = 0;
    int at = skip;
    for (; at < newCount; at += downFactor)
        to[count++] = from[at];
    skip = at - newCount;
    return count;
}

} // namespace tsm::rsk
