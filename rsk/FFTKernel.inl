// The real transform over vectors of TSM_LANES doubles; see CDSPRealFFT for the plan. Compiled once
// per instruction set, under the rules that DSPVector.inl states.

#include "rsk/FFTBins.inl"

namespace tsm::rsk {

namespace {

// A first pass fills whole vectors, so there is no radix 4 with 8 lanes.
constexpr int kSmallFirstRadix = kLanes > 4 ? 8 : 4;

// Both directions change between two places and have to end, or start, in `home`. With an
// odd count of passes between the outer ones the other place must not be `out`.
struct CPlaces {
    CSplit home;
    CSplit away;
};

TSM_INLINE CPlaces makePlaces(const CDSPFFTPlan& plan, double* out, double* work)
{
    // The pads keep the arrays out of each other's cache sets.
    constexpr int kPad = 8;
    const int count = plan.halfCount;
    double* second = work + 2 * (count + kPad);
    const CSplit home = {work, work + count + kPad};
    if (plan.passCount % 2 == 0)
        return {home, {out, out + count}};
    return {home, {second, second + count + kPad}};
}

TSM_INLINE CSplit exchanged(CSplit place)
{
    return {place.im, place.re};
}

/// The fused outer passes need a whole vector on both sides of the middle. With radix 8 they are
/// too much for 16 registers.
TSM_INLINE bool canFuse(const CDSPFFTPlan& plan)
{
    const int radix = plan.radix[plan.passCount - 1];
    return plan.halfCount / radix >= 2 * kLanes && (radix == 4 || kLanes > 4);
}

void midPassesForward(const CDSPFFTPlan& plan, CPlaces& places)
{
    int count = plan.halfCount / plan.radix[0];
    const double* twiddle = plan.midTwiddle;
    for (int pass = 1; pass < plan.passCount - 1; ++pass) {
        const int radix = plan.radix[pass];
        const int stride = plan.halfCount / count;
        if (radix == 4)
            midForward<4>(places.home, places.away, count, stride, twiddle);
        else
            midForward<8>(places.home, places.away, count, stride, twiddle);
        count /= radix;
        twiddle += (count - 1) * 2 * (radix - 1);
        places = {places.away, places.home};
    }
}

void midPassesInverse(const CDSPFFTPlan& plan, CPlaces& places)
{
    int count = plan.radix[plan.passCount - 1];
    const double* twiddle = plan.midTwiddleEnd;
    for (int pass = plan.passCount - 2; pass > 0; --pass) {
        const int radix = plan.radix[pass];
        twiddle -= (count - 1) * 2 * (radix - 1);
        count *= radix;
        const int stride = plan.halfCount / count;
        if (radix == 4)
            midInverse<4>(places.home, places.away, count, stride, twiddle);
        else
            midInverse<8>(places.home, places.away, count, stride, twiddle);
        places = {places.away, places.home};
    }
}

#if TSM_LANES == 4

// 32 points stay in registers: vectors that are stored at one place and loaded across two of them
// would wait for the cache.

/// Rows of a transposed square, in their natural order.
TSM_INLINE void orderRows(const CValues<4>& from, CValues<4>& to)
{
    for (int lane = 0; lane < 4; ++lane) {
        to.re[kLaneOrder[lane]] = from.re[lane];
        to.im[kLaneOrder[lane]] = from.im[lane];
    }
}

TSM_INLINE V nextLanes(V a, V b)
{
    return __builtin_shufflevector(a, b, 1, 2, 3, 4);
}

TSM_INLINE V lastLanes(V a, V b)
{
    return __builtin_shufflevector(a, b, 3, 4, 5, 6);
}

template <bool IsSplit>
void forward32(const CDSPFFTPlan& plan, const double* in, double* out)
{
    CValues<4> v;
    for (int j = 0; j < 4; ++j) {
        const CPair pair = unzip(load(in + 8 * j), load(in + 8 * j + 4));
        v.re[j] = pair.re;
        v.im[j] = pair.im;
    }
    butterfly(v);
    for (int j = 1; j < 4; ++j)
        turn(v.re[j], v.im[j], load(plan.firstTwiddle + 8 * j - 8),
             load(plan.firstTwiddle + 8 * j - 4));
    transpose(v.re);
    transpose(v.im);
    CValues<4> w;
    orderRows(v, w);
    butterfly(w);
    splitBins<IsSplit>({nextLanes(w.re[0], w.re[1]), nextLanes(w.im[0], w.im[1])},
                       {reverse(w.re[3]), reverse(w.im[3])}, out, 0, plan);
    splitBins<IsSplit>({nextLanes(w.re[1], w.re[2]), nextLanes(w.im[1], w.im[2])},
                       {reverse(w.re[2]), reverse(w.im[2])}, out, 4, plan);
    const CBinPlace zero = binPlace<IsSplit>(0, 16);
    out[zero.re] = w.re[0][0] + w.im[0][0];
    out[zero.im] = w.re[0][0] - w.im[0][0];
}

template <bool IsSplit>
void inverse32(const CDSPFFTPlan& plan, const double* in, double* out)
{
    CPair low[2];
    CPair high[2];
    joinBins<IsSplit>(in, 0, low[0], high[0], plan);
    joinBins<IsSplit>(in, 4, low[1], high[1], plan);
    const CBinPlace zero = binPlace<IsSplit>(0, 16);
    const V zeroRe = spread(in[zero.re] + in[zero.im]);
    const V zeroIm = spread(in[zero.re] - in[zero.im]);
    // Parts exchanged, as in all inverse transforms here.
    CValues<4> w = {{lastLanes(zeroIm, low[0].im), lastLanes(low[0].im, low[1].im),
                     reverse(high[1].im), reverse(high[0].im)},
                    {lastLanes(zeroRe, low[0].re), lastLanes(low[0].re, low[1].re),
                     reverse(high[1].re), reverse(high[0].re)}};
    butterfly(w);
    CValues<4> v;
    orderRows(w, v); // the order undoes itself
    transpose(v.re);
    transpose(v.im);
    for (int j = 1; j < 4; ++j)
        turn(v.re[j], v.im[j], load(plan.firstTwiddle + 8 * j - 8),
             load(plan.firstTwiddle + 8 * j - 4));
    butterfly(v);
    for (int j = 0; j < 4; ++j)
        storeRezipped(out + 8 * j, v.im[j], v.re[j]);
}

#endif

template <bool IsSplit>
void forward(const CDSPFFTPlan& plan, const double* in, double* out, double* work) noexcept
{
#if TSM_LANES == 4
    if (plan.halfCount == 16) {
        forward32<IsSplit>(plan, in, out);
        return;
    }
#endif
    CPlaces places = makePlaces(plan, out, work);
    if (plan.radix[0] == kSmallFirstRadix)
        firstForward<kSmallFirstRadix>(in, places.home, plan.halfCount, plan.firstTwiddle);
    else
        firstForward<8>(in, places.home, plan.halfCount, plan.firstTwiddle);
    midPassesForward(plan, places);

    const CSplit from = places.home;
    const bool isLast4 = plan.radix[plan.passCount - 1] == 4;
    if (canFuse(plan)) {
        if (isLast4)
            lastForward<IsSplit, 4>(from, out, plan);
        else if constexpr (kLanes > 4)
            lastForward<IsSplit, 8>(from, out, plan);
        return;
    }
    if (isLast4)
        outerPass<4>(from, from, plan.halfCount);
    else
        outerPass<8>(from, from, plan.halfCount);
    splitSpectrum<IsSplit>(from, out, plan);
    const CBinPlace zero = binPlace<IsSplit>(0, plan.halfCount);
    out[zero.re] = from.re[0] + from.im[0];
    out[zero.im] = from.re[0] - from.im[0];
}

template <bool IsSplit>
void inverse(const CDSPFFTPlan& plan, const double* in, double* out, double* work) noexcept
{
#if TSM_LANES == 4
    if (plan.halfCount == 16) {
        inverse32<IsSplit>(plan, in, out);
        return;
    }
#endif
    // The inverse is the forward transform with the parts exchanged. An even count of places to go
    // to starts at the other end.
    CPlaces places = makePlaces(plan, out, work);
    if (plan.passCount % 2 != 0)
        places = {places.away, places.home};
    places = {exchanged(places.home), exchanged(places.away)};
    const CSplit to = places.home;
    const bool isLast4 = plan.radix[plan.passCount - 1] == 4;
    if (canFuse(plan)) {
        if (isLast4)
            firstInverse<IsSplit, 4>(in, to, plan);
        else if constexpr (kLanes > 4)
            firstInverse<IsSplit, 8>(in, to, plan);
    } else {
        joinSpectrum<IsSplit>(in, exchanged(to), plan);
        const CBinPlace zero = binPlace<IsSplit>(0, plan.halfCount);
        to.im[0] = in[zero.re] + in[zero.im];
        to.re[0] = in[zero.re] - in[zero.im];
        if (isLast4)
            outerPass<4>(to, to, plan.halfCount);
        else
            outerPass<8>(to, to, plan.halfCount);
    }
    midPassesInverse(plan, places);

    if (plan.radix[0] == kSmallFirstRadix)
        lastInverse<kSmallFirstRadix>(places.home, out, plan.halfCount, plan.firstTwiddle);
    else
        lastInverse<8>(places.home, out, plan.halfCount, plan.firstTwiddle);
}

void multiplySpectra(const double* a, const double* b, double* out, int count) noexcept
{
    const double zero = a[0] * b[0];
    const double nyquist = a[1] * b[1];
    for (int i = 0; i < count; i += kLanes) {
        const V x = load(a + i);
        const V y = load(b + i);
        store(out + i, x * repeatEven(y) + kAlternate * (swapPairs(x) * repeatOdd(y)));
    }
    out[0] = zero;
    out[1] = nyquist;
}

} // namespace

} // namespace tsm::rsk
