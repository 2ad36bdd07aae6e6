#include "rsk/CDSPRealFFT.h"

#include <cassert>
#include <cmath>
#include <numbers>

namespace tsm::rsk {

namespace {

struct CFactor {
    double re;
    double im;
};

/// exp(-2 pi i numerator / denominator), rounded once.
CFactor unitRoot(long numerator, long denominator)
{
    const long double angle = 2.0L * std::numbers::pi_v<long double> *
                              static_cast<long double>(numerator) /
                              static_cast<long double>(denominator);
    return {static_cast<double>(std::cos(angle)), static_cast<double>(-std::sin(angle))};
}

} // namespace

CDSPRealFFT::CDSPRealFFT(int wantedOrder, const CDSPKernels& build)
    : order(wantedOrder), kernels(wantedOrder < build.minFFTOrder ? build.smaller : &build)
{
    assert(order >= kMinFFTOrder && order <= kMaxFFTOrder);
    plan.halfCount = getCount() / 2;
    makePasses();
    makeFirstTwiddles();
    makeMidTwiddles();
    makeSplitFactors();
}

void CDSPRealFFT::makePasses()
{
    // A radix of 8 saves trips through memory. But its 16 streams lie a power of 2 apart: in large
    // transforms they fall into one set of the cache, and vectors shorter than a line would fetch
    // each line several times. The borders are where the one way becomes faster than the other.
    const bool isNarrow = kernels->lanes < 8;
    int rest = order - 1;
    const auto addPass = [&](int log2Radix) {
        plan.radix[plan.passCount++] = 1 << log2Radix;
        rest -= log2Radix;
    };
    addPass(isNarrow && (order <= 6 || (order >= 13 && rest % 2 == 0)) ? 2 : 3);
    while (rest > 3)
        addPass(!isNarrow && order >= 12 && rest > 5 ? 3 : 2);
    addPass(rest);
}

void CDSPRealFFT::makeFirstTwiddles()
{
    const int radix = plan.radix[0];
    const int lanes = kernels->lanes;
    const int span = plan.halfCount / radix;
    firstTwiddle.allocate(span * 2 * (radix - 1));
    double* to = firstTwiddle.data();
    for (int p = 0; p < span; p += lanes)
        for (int j = 1; j < radix; ++j, to += 2 * lanes)
            for (int lane = 0; lane < lanes; ++lane) {
                const int point = p + kernels->laneOrder[lane];
                const CFactor factor = unitRoot(static_cast<long>(point) * j, plan.halfCount);
                to[lane] = factor.re;
                to[lanes + lane] = factor.im;
            }
    plan.firstTwiddle = firstTwiddle.data();
}

void CDSPRealFFT::makeMidTwiddles()
{
    int total = 0;
    for (int pass = 1, count = plan.halfCount / plan.radix[0]; pass < plan.passCount - 1; ++pass) {
        count /= plan.radix[pass];
        total += (count - 1) * 2 * (plan.radix[pass] - 1);
    }
    midTwiddle.allocate(total);
    double* to = midTwiddle.data();
    int count = plan.halfCount / plan.radix[0];
    for (int pass = 1; pass < plan.passCount - 1; ++pass) {
        const int radix = plan.radix[pass];
        for (int p = 1; p < count / radix; ++p)
            for (int j = 1; j < radix; ++j) {
                const CFactor factor = unitRoot(static_cast<long>(p) * j, count);
                *to++ = factor.re;
                *to++ = factor.im;
            }
        count /= radix;
    }
    plan.midTwiddle = midTwiddle.data();
    plan.midTwiddleEnd = to;
}

void CDSPRealFFT::makeSplitFactors()
{
    // -i / 2 times the root of bin k, k from 1 on.
    const int count = plan.halfCount;
    splitFactors.allocate(2 * count);
    for (int k = 0; k < count; ++k) {
        const CFactor factor = unitRoot(k + 1, getCount());
        splitFactors[k] = 0.5 * factor.im;
        splitFactors[count + k] = -0.5 * factor.re;
    }
    plan.splitCos = splitFactors.data();
    plan.splitSin = splitFactors.data() + count;
}

} // namespace tsm::rsk
