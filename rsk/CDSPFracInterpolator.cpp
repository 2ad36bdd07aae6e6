#include "rsk/CDSPFracInterpolator.h"

#include <cassert>
#include <cmath>
#include <cstring>

namespace tsm::rsk {

namespace {

constexpr int kMaxFractions = 1500;
constexpr int kSplineFractions = 256;

} // namespace

CDSPFracInterpolator::CSteps CDSPFracInterpolator::findSteps(double sourceRate, double destRate)
{
    constexpr double kMaxRate = 1 << 30;
    if (sourceRate != std::floor(sourceRate) || destRate != std::floor(destRate) ||
        sourceRate > kMaxRate || destRate > kMaxRate)
        return {};
    // Euclid's algorithm.
    int divisor = static_cast<int>(sourceRate);
    int rest = static_cast<int>(destRate);
    for (int i = 0; i < 50 && rest != 0; ++i) {
        const int next = divisor % rest;
        divisor = rest;
        rest = next;
    }
    if (rest != 0 || destRate / divisor > kMaxFractions)
        return {};
    return {static_cast<int>(sourceRate) / divisor, static_cast<int>(destRate) / divisor};
}

CDSPFracInterpolator::CDSPFracInterpolator(double sourceRate, double destRate, double attenuationDb,
                                           int maxInLen)
    : steps(findSteps(sourceRate, destRate)), step(sourceRate / destRate),
      bank(fracBankCache(),
           {steps.dest > 0 ? steps.dest : kSplineFractions, attenuationDb, steps.dest == 0})
{
    // A position that lies far ahead keeps no more than the taps in front of it.
    line.allocate(bank->getStride() + static_cast<int>(std::ceil(step)) + 1 + maxInLen +
                  kKernelPad);
    const int maxOutLen = getMaxOutLen(maxInLen) + kKernelPad;
    places.allocate(maxOutLen);
    rows.allocate(maxOutLen);
    beyond.allocate(maxOutLen);
    out.allocate(maxOutLen);
    clear();
}

int CDSPFracInterpolator::getMaxOutLen(int maxInLen) const
{
    return static_cast<int>(std::ceil(maxInLen / step)) + 1;
}

void CDSPFracInterpolator::clear()
{
    line.clear();
    filled = bank->getTapCount() / 2 - 1;
    at = 0;
    phase = 0;
    outIndex = 0;
    dropped = 0;
}

int CDSPFracInterpolator::process(const double* input, int length, const double*& output)
{
    assert(filled + length + kKernelPad <= line.getCount());
    std::memcpy(line.data() + filled, input, static_cast<std::size_t>(length) * sizeof(double));
    filled += length;
    output = out.data();

    const int limit = filled - bank->getTapCount();
    const int count = steps.dest > 0 ? placeWholeSteps(limit) : placeSplineSteps(limit);
    for (int i = count; i < count + kKernelPad; ++i) {
        places[i] = 0;
        rows[i] = 0;
    }
    if (steps.dest > 0)
        kernels.interpolate(line.data(), places.data(), rows.data(), bank->getRows(),
                            bank->getStride(), out.data(), count);
    else
        kernels.interpolateSpline(line.data(), places.data(), rows.data(), beyond.data(),
                                  bank->getRows(), bank->getStride(), out.data(), count);

    // The next position may lie beyond what is there: then all of it goes.
    const int next =
        steps.dest > 0
            ? at
            : static_cast<int>(static_cast<std::int64_t>(static_cast<double>(outIndex) * step) -
                               dropped);
    const int gone = next < filled ? next : filled;
    filled -= gone;
    at -= gone;
    dropped += gone;
    std::memmove(line.data(), line.data() + gone,
                 static_cast<std::size_t>(filled) * sizeof(double));
    return count;
}

int CDSPFracInterpolator::placeWholeSteps(int limit)
{
    const int stride = bank->getStride();
    const int wholeStep = steps.source / steps.dest;
    const int fracStep = steps.source % steps.dest;
    int count = 0;
    for (; at <= limit; ++count) {
        places[count] = at;
        rows[count] = phase * stride;
        at += wholeStep;
        phase += fracStep;
        if (phase >= steps.dest) {
            phase -= steps.dest;
            ++at;
        }
    }
    return count;
}

int CDSPFracInterpolator::placeSplineSteps(int limit)
{
    const int rowStride = 3 * bank->getStride();
    int count = 0;
    for (;; ++count, ++outIndex) {
        const double position = static_cast<double>(outIndex) * step;
        const double whole = std::floor(position);
        const int place = static_cast<int>(static_cast<std::int64_t>(whole) - dropped);
        if (place > limit)
            return count;
        const double fraction = (position - whole) * kSplineFractions;
        const int row = static_cast<int>(fraction);
        places[count] = place;
        rows[count] = row * rowStride;
        beyond[count] = fraction - row;
    }
}

} // namespace tsm::rsk
