// Between the half-size complex transform and the spectrum of real samples, with the outer passes
// that do both in one; compiled under the rules that DSPVector.inl states.

#pragma once

#include "rsk/FFTPasses.inl"

namespace tsm::rsk {

namespace {

// A spectrum's layout: bin k's parts stand at 2 * k and 2 * k + 1 when packed, at k and
// halfCount + k when split; the value at half the rate takes the place of bin 0's imaginary part.

template <bool IsSplit>
TSM_INLINE void storeBins(double* out, int k, int halfCount, V re, V im)
{
    if constexpr (IsSplit) {
        store(out + k, re);
        store(out + halfCount + k, im);
    } else {
        storeZipped(out + 2 * k, re, im);
    }
}

template <bool IsSplit>
TSM_INLINE void storeBinsReverse(double* out, int k, int halfCount, V re, V im)
{
    if constexpr (IsSplit) {
        store(out + k, reverse(re));
        store(out + halfCount + k, reverse(im));
    } else {
        storeZippedReverse(out + 2 * k, re, im);
    }
}

template <bool IsSplit>
TSM_INLINE CPair loadBins(const double* in, int k, int halfCount)
{
    if constexpr (IsSplit)
        return {load(in + k), load(in + halfCount + k)};
    else
        return loadUnzipped(in + 2 * k);
}

template <bool IsSplit>
TSM_INLINE CPair loadBinsReverse(const double* in, int k, int halfCount)
{
    if constexpr (IsSplit)
        return {reverse(load(in + k)), reverse(load(in + halfCount + k))};
    else
        return loadUnzippedReverse(in + 2 * k);
}

/// Where the parts of bin k stand.
struct CBinPlace {
    int re;
    int im;
};

template <bool IsSplit>
TSM_INLINE CBinPlace binPlace(int k, int halfCount)
{
    if constexpr (IsSplit)
        return {k, halfCount + k};
    else
        return {2 * k, 2 * k + 1};
}

/// The spectrum of the real samples at bins k + 1 to k + lanes and at their mirror images, from
/// the half-size complex transform there; the mirror's lanes run backwards.
template <bool IsSplit>
TSM_INLINE void splitBins(CPair low, CPair high, double* out, int k, const CDSPFFTPlan& plan)
{
    const V half = spread(0.5);
    const V evenRe = low.re + high.re;
    const V evenIm = low.im - high.im;
    V oddRe = low.re - high.re;
    V oddIm = low.im + high.im;
    turn(oddRe, oddIm, load(plan.splitCos + k), load(plan.splitSin + k));
    storeBins<IsSplit>(out, k + 1, plan.halfCount, half * evenRe + oddRe, half * evenIm + oddIm);
    storeBinsReverse<IsSplit>(out, plan.halfCount - kLanes - k, plan.halfCount,
                              half * evenRe - oddRe, oddIm - half * evenIm);
}

/// The way back, twice as large, as the missing scale wants it.
template <bool IsSplit>
TSM_INLINE void joinBins(const double* in, int k, CPair& low, CPair& high, const CDSPFFTPlan& plan)
{
    const V two = spread(2.0);
    const CPair x = loadBins<IsSplit>(in, k + 1, plan.halfCount);
    const CPair y = loadBinsReverse<IsSplit>(in, plan.halfCount - kLanes - k, plan.halfCount);
    const V evenRe = x.re + y.re;
    const V evenIm = x.im - y.im;
    V oddRe = x.re - y.re;
    V oddIm = x.im + y.im;
    turn(oddRe, oddIm, load(plan.splitCos + k), V{} - load(plan.splitSin + k));
    low = {evenRe + two * oddRe, evenIm + two * oddIm};
    high = {evenRe - two * oddRe, two * oddIm - evenIm};
}

/// For transforms too short for the fused passes. Bin 0 is the caller's.
template <bool IsSplit>
void splitSpectrum(CSplit from, double* out, const CDSPFFTPlan& plan)
{
    for (int k = 0; k < plan.halfCount / 2; k += kLanes) {
        const int mirror = plan.halfCount - kLanes - k;
        splitBins<IsSplit>({load(from.re + k + 1), load(from.im + k + 1)},
                           {reverse(load(from.re + mirror)), reverse(load(from.im + mirror))}, out,
                           k, plan);
    }
}

template <bool IsSplit>
void joinSpectrum(const double* in, CSplit to, const CDSPFFTPlan& plan)
{
    for (int k = 0; k < plan.halfCount / 2; k += kLanes) {
        const int mirror = plan.halfCount - kLanes - k;
        CPair low;
        CPair high;
        joinBins<IsSplit>(in, k, low, high, plan);
        store(to.re + k + 1, low.re);
        store(to.im + k + 1, low.im);
        store(to.re + mirror, reverse(high.re));
        store(to.im + mirror, reverse(high.im));
    }
}

/// Bins j * stride, which mirror each other, of the fused passes.
template <bool IsSplit, int R>
TSM_INLINE void splitColumn(const CValues<R>& v, double* out, const CDSPFFTPlan& plan)
{
    const CBinPlace zero = binPlace<IsSplit>(0, plan.halfCount);
    out[zero.re] = v.re[0][0] + v.im[0][0];
    out[zero.im] = v.re[0][0] - v.im[0][0];
    for (int j = 1; j < R; ++j) {
        const int k = j * (plan.halfCount / R);
        const double oddRe = v.re[j][0] - v.re[R - j][0];
        const double oddIm = v.im[j][0] + v.im[R - j][0];
        const double c = plan.splitCos[k - 1];
        const double s = plan.splitSin[k - 1];
        const CBinPlace to = binPlace<IsSplit>(k, plan.halfCount);
        out[to.re] = 0.5 * (v.re[j][0] + v.re[R - j][0]) + (c * oddRe - s * oddIm);
        out[to.im] = 0.5 * (v.im[j][0] - v.im[R - j][0]) + (c * oddIm + s * oddRe);
    }
}

/// The way back, with the parts exchanged already.
template <bool IsSplit, int R>
TSM_INLINE void joinColumn(const double* in, CValues<R>& v, const CDSPFFTPlan& plan)
{
    const CBinPlace zero = binPlace<IsSplit>(0, plan.halfCount);
    v.im[0] = spread(in[zero.re] + in[zero.im]);
    v.re[0] = spread(in[zero.re] - in[zero.im]);
    const int step = plan.halfCount / R;
    for (int j = 1; j < R; ++j) {
        const CBinPlace x = binPlace<IsSplit>(j * step, plan.halfCount);
        const CBinPlace y = binPlace<IsSplit>((R - j) * step, plan.halfCount);
        const double oddRe = in[x.re] - in[y.re];
        const double oddIm = in[x.im] + in[y.im];
        const double c = plan.splitCos[j * step - 1];
        const double s = plan.splitSin[j * step - 1];
        v.im[j] = spread(in[x.re] + in[y.re] + 2.0 * (c * oddRe + s * oddIm));
        v.re[j] = spread(in[x.im] - in[y.im] + 2.0 * (c * oddIm - s * oddRe));
    }
}

/// Outer pass and splitting in one: columns q and stride - q hold the bins that mirror each other.
template <bool IsSplit, int R>
void lastForward(CSplit from, double* __restrict out, const CDSPFFTPlan& plan)
{
    const int stride = plan.halfCount / R;
    CValues<R> column;
    loadValues(column, from, 0, stride);
    butterfly(column);
    splitColumn<IsSplit>(column, out, plan);
    for (int q = 0; q < stride / 2; q += kLanes) {
        CValues<R> low;
        CValues<R> high;
        loadValues(low, from, q + 1, stride);
        butterfly(low);
        loadValues(high, from, stride - kLanes - q, stride);
        butterfly(high);
        for (int j = 0; j < R; ++j)
            splitBins<IsSplit>({low.re[j], low.im[j]},
                               {reverse(high.re[R - 1 - j]), reverse(high.im[R - 1 - j])}, out,
                               q + j * stride, plan);
    }
}

/// Its mirror image; `to` is exchanged already.
template <bool IsSplit, int R>
void firstInverse(const double* __restrict in, CSplit to, const CDSPFFTPlan& plan)
{
    const int stride = plan.halfCount / R;
    CValues<R> column;
    joinColumn<IsSplit>(in, column, plan);
    butterfly(column);
    for (int q = 0; q < stride / 2; q += kLanes) {
        CValues<R> low;
        CValues<R> high;
        for (int j = 0; j < R; ++j) {
            CPair x;
            CPair y;
            joinBins<IsSplit>(in, q + j * stride, x, y, plan);
            low.re[j] = x.im;
            low.im[j] = x.re;
            high.re[R - 1 - j] = reverse(y.im);
            high.im[R - 1 - j] = reverse(y.re);
        }
        butterfly(low);
        storeValues(low, to, q + 1, stride);
        butterfly(high);
        storeValues(high, to, stride - kLanes - q, stride);
    }
    for (int j = 0; j < R; ++j) {
        to.re[j * stride] = column.re[j][0];
        to.im[j * stride] = column.im[j][0];
    }
}

} // namespace

} // namespace tsm::rsk
