// The complex transform's passes over vectors of TSM_LANES doubles; compiled under the rules that
// DSPVector.inl states.

#pragma once

#include "rsk/DSPVector.inl"

namespace tsm::rsk {

namespace {

/// One value of the radix-R butterfly in all lanes.
template <int R>
struct CValues {
    V re[R];
    V im[R];
};

TSM_INLINE void turn(V& re, V& im, V c, V s)
{
    const V oldRe = re;
    re = c * oldRe - s * im;
    im = c * im + s * oldRe;
}

/// Transform of 4 points, kernel exp(-2 pi i jk / 4), in place.
TSM_INLINE void butterfly(V& r0, V& i0, V& r1, V& i1, V& r2, V& i2, V& r3, V& i3)
{
    const V sumRe02 = r0 + r2;
    const V sumIm02 = i0 + i2;
    const V diffRe02 = r0 - r2;
    const V diffIm02 = i0 - i2;
    const V sumRe13 = r1 + r3;
    const V sumIm13 = i1 + i3;
    const V diffRe13 = r1 - r3;
    const V diffIm13 = i1 - i3;
    r0 = sumRe02 + sumRe13;
    i0 = sumIm02 + sumIm13;
    r1 = diffRe02 + diffIm13;
    i1 = diffIm02 - diffRe13;
    r2 = sumRe02 - sumRe13;
    i2 = sumIm02 - sumIm13;
    r3 = diffRe02 - diffIm13;
    i3 = diffIm02 + diffRe13;
}

TSM_INLINE void butterfly(CValues<4>& v)
{
    butterfly(v.re[0], v.im[0], v.re[1], v.im[1], v.re[2], v.im[2], v.re[3], v.im[3]);
}

TSM_INLINE void sumAndDifference(V& a, V& b)
{
    const V difference = a - b;
    a = a + b;
    b = difference;
}

/// 8 points: the even ones, the odd ones, and the radix-2 step that joins them.
TSM_INLINE void butterfly(CValues<8>& v)
{
    butterfly(v.re[0], v.im[0], v.re[2], v.im[2], v.re[4], v.im[4], v.re[6], v.im[6]);
    butterfly(v.re[1], v.im[1], v.re[3], v.im[3], v.re[5], v.im[5], v.re[7], v.im[7]);

    const V root = spread(0.70710678118654752440);
    const V re3 = root * (v.re[3] + v.im[3]);
    const V im3 = root * (v.im[3] - v.re[3]);
    const V re5 = v.im[5];
    const V im5 = V{} - v.re[5];
    const V re7 = root * (v.im[7] - v.re[7]);
    const V im7 = root * (V{} - v.re[7] - v.im[7]);

    const CValues<8> u = v;
    v.re[0] = u.re[0] + u.re[1];
    v.im[0] = u.im[0] + u.im[1];
    v.re[4] = u.re[0] - u.re[1];
    v.im[4] = u.im[0] - u.im[1];
    v.re[1] = u.re[2] + re3;
    v.im[1] = u.im[2] + im3;
    v.re[5] = u.re[2] - re3;
    v.im[5] = u.im[2] - im3;
    v.re[2] = u.re[4] + re5;
    v.im[2] = u.im[4] + im5;
    v.re[6] = u.re[4] - re5;
    v.im[6] = u.im[4] - im5;
    v.re[3] = u.re[6] + re7;
    v.im[3] = u.im[6] + im7;
    v.re[7] = u.re[6] - re7;
    v.im[7] = u.im[6] - im7;
}

/// Real and imaginary parts in arrays of their own.
struct CSplit {
    double* re;
    double* im;
};

template <int R>
TSM_INLINE void loadValues(CValues<R>& v, CSplit from, int at, int stride)
{
    for (int j = 0; j < R; ++j) {
        v.re[j] = load(from.re + at + j * stride);
        v.im[j] = load(from.im + at + j * stride);
    }
}

template <int R>
TSM_INLINE void storeValues(const CValues<R>& v, CSplit to, int at, int stride)
{
    for (int j = 0; j < R; ++j) {
        store(to.re + at + j * stride, v.re[j]);
        store(to.im + at + j * stride, v.im[j]);
    }
}

template <int R>
TSM_INLINE void turnValues(CValues<R>& v, const V* twiddle)
{
    for (int j = 1; j < R; ++j)
        turn(v.re[j], v.im[j], twiddle[2 * j - 2], twiddle[2 * j - 1]);
}

/// The R x lanes values of one array, transposed to runs of R values a lane, and stored as such.
template <int R>
TSM_INLINE void storeTransposed(V* v, double* to)
{
    for (int block = 0; block < R; block += kLanes) {
        transpose(v + block);
        for (int lane = 0; lane < kLanes; ++lane)
            store(to + R * kLaneOrder[lane] + block, v[block + lane]);
    }
}

template <int R>
TSM_INLINE void loadTransposed(V* v, const double* from)
{
    for (int block = 0; block < R; block += kLanes) {
        for (int lane = 0; lane < kLanes; ++lane)
            v[block + lane] = load(from + R * kLaneOrder[lane] + block);
        transpose(v + block);
    }
}

/// First pass of the forward transform, stride 1: the real samples are read as complex pairs.
template <int R>
void firstForward(const double* __restrict in, CSplit to, int halfCount, const double* twiddle)
{
    const int span = halfCount / R;
    for (int p = 0; p < span; p += kLanes) {
        CValues<R> v;
        for (int j = 0; j < R; ++j) {
            const double* from = in + 2 * (p + j * span);
            const CPair pair = unzip(load(from), load(from + kLanes));
            v.re[j] = pair.re;
            v.im[j] = pair.im;
        }
        butterfly(v);
        for (int j = 1; j < R; ++j) {
            turn(v.re[j], v.im[j], load(twiddle), load(twiddle + kLanes));
            twiddle += 2 * kLanes;
        }
        storeTransposed<R>(v.re, to.re + R * p);
        storeTransposed<R>(v.im, to.im + R * p);
    }
}

/// Its mirror image, the last pass of the inverse transform. The inverse is the forward transform
/// with real and imaginary parts exchanged, so `from.re` holds imaginary parts.
template <int R>
void lastInverse(CSplit from, double* __restrict out, int halfCount, const double* twiddle)
{
    const int span = halfCount / R;
    for (int p = 0; p < span; p += kLanes) {
        CValues<R> v;
        loadTransposed<R>(v.re, from.re + R * p);
        loadTransposed<R>(v.im, from.im + R * p);
        for (int j = 1; j < R; ++j) {
            turn(v.re[j], v.im[j], load(twiddle), load(twiddle + kLanes));
            twiddle += 2 * kLanes;
        }
        butterfly(v);
        for (int j = 0; j < R; ++j) {
            double* to = out + 2 * (p + j * span);
            storeRezipped(to, v.im[j], v.re[j]);
        }
    }
}

/// Decimation in frequency: butterflies first, then the twiddles.
template <int R>
void midForward(CSplit from, CSplit to, int count, int stride, const double* twiddle)
{
    const int span = count / R * stride;
    for (int q = 0; q < stride; q += kLanes) {
        CValues<R> v;
        loadValues(v, from, q, span);
        butterfly(v);
        storeValues(v, to, q, stride);
    }
    for (int at = stride; at < span; at += stride) {
        V factors[2 * R - 2];
        for (int j = 0; j < 2 * R - 2; ++j)
            factors[j] = spread(*twiddle++);
        for (int q = 0; q < stride; q += kLanes) {
            CValues<R> v;
            loadValues(v, from, at + q, span);
            butterfly(v);
            turnValues(v, factors);
            storeValues(v, to, R * at + q, stride);
        }
    }
}

/// Decimation in time, the transpose of the former.
template <int R>
void midInverse(CSplit from, CSplit to, int count, int stride, const double* twiddle)
{
    const int span = count / R * stride;
    for (int q = 0; q < stride; q += kLanes) {
        CValues<R> v;
        loadValues(v, from, q, stride);
        butterfly(v);
        storeValues(v, to, q, span);
    }
    for (int at = stride; at < span; at += stride) {
        V factors[2 * R - 2];
        for (int j = 0; j < 2 * R - 2; ++j)
            factors[j] = spread(*twiddle++);
        for (int q = 0; q < stride; q += kLanes) {
            CValues<R> v;
            loadValues(v, from, R * at + q, stride);
            turnValues(v, factors);
            butterfly(v);
            storeValues(v, to, at + q, span);
        }
    }
}

/// The pass without twiddles, last of the forward and first of the inverse transform; may work in
/// place.
template <int R>
void outerPass(CSplit from, CSplit to, int halfCount)
{
    const int stride = halfCount / R;
    for (int q = 0; q < stride; q += kLanes) {
        CValues<R> v;
        loadValues(v, from, q, stride);
        butterfly(v);
        storeValues(v, to, q, stride);
    }
}

} // namespace

} // namespace tsm::rsk
