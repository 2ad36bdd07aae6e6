// Vectors of TSM_LANES doubles for the kernels. Compiled once per instruction set: all of it has
// internal linkage and nothing comes from std::, since a shared inline function would let the
// linker put one build's code into another.

#pragma once

namespace tsm::rsk {

namespace {

#define TSM_INLINE [[gnu::always_inline]] inline

constexpr int kLanes = TSM_LANES;

typedef double V __attribute__((vector_size(8 * TSM_LANES)));
typedef double VMemory __attribute__((vector_size(8 * TSM_LANES), aligned(8), may_alias));

TSM_INLINE V load(const double* from)
{
    return *reinterpret_cast<const VMemory*>(from);
}

TSM_INLINE void store(double* to, V value)
{
    *reinterpret_cast<VMemory*>(to) = value;
}

TSM_INLINE V spread(double value)
{
    // Spelled out: a sum with zero would be computed, for the sake of negative zero.
#if TSM_LANES == 2
    return V{value, value};
#elif TSM_LANES == 4
    return V{value, value, value, value};
#else
    return V{value, value, value, value, value, value, value, value};
#endif
}

struct CPair {
    V re;
    V im;
};

// Rows of the transposed square come out in the order of kLaneOrder; deinterleaving leaves the
// lanes in that order too, so that the two cancel.
#if TSM_LANES == 2

constexpr int kLaneOrder[2] = {0, 1};

TSM_INLINE V reverse(V v)
{
    return __builtin_shufflevector(v, v, 1, 0);
}
TSM_INLINE CPair unzip(V low, V high)
{
    return {__builtin_shufflevector(low, high, 0, 2), __builtin_shufflevector(low, high, 1, 3)};
}
TSM_INLINE void transpose(V* v)
{
    const CPair pair = unzip(v[0], v[1]);
    v[0] = pair.re;
    v[1] = pair.im;
}
TSM_INLINE void storeZipped(double* to, V re, V im)
{
    const CPair pair = unzip(re, im);
    store(to, pair.re);
    store(to + 2, pair.im);
}
TSM_INLINE void storeZippedReverse(double* to, V re, V im)
{
    const CPair pair = unzip(re, im);
    store(to, pair.im);
    store(to + 2, pair.re);
}
TSM_INLINE CPair loadUnzipped(const double* from)
{
    return unzip(load(from), load(from + 2));
}
TSM_INLINE CPair loadUnzippedReverse(const double* from)
{
    return unzip(load(from + 2), load(from));
}
/// Undoes `unzip` of the same two places.
TSM_INLINE void storeRezipped(double* to, V re, V im)
{
    storeZipped(to, re, im);
}
TSM_INLINE V repeatEven(V v)
{
    return __builtin_shufflevector(v, v, 0, 0);
}
TSM_INLINE V repeatOdd(V v)
{
    return __builtin_shufflevector(v, v, 1, 1);
}
TSM_INLINE V swapPairs(V v)
{
    return reverse(v);
}
constexpr V kAlternate = {-1.0, 1.0};

#elif TSM_LANES == 4

constexpr int kLaneOrder[4] = {0, 2, 1, 3};

TSM_INLINE V lowPairs(V a, V b)
{
    return __builtin_shufflevector(a, b, 0, 4, 2, 6);
}
TSM_INLINE V highPairs(V a, V b)
{
    return __builtin_shufflevector(a, b, 1, 5, 3, 7);
}
TSM_INLINE V lowHalves(V a, V b)
{
    return __builtin_shufflevector(a, b, 0, 1, 4, 5);
}
TSM_INLINE V highHalves(V a, V b)
{
    return __builtin_shufflevector(a, b, 2, 3, 6, 7);
}
TSM_INLINE V reverse(V v)
{
    return __builtin_shufflevector(v, v, 3, 2, 1, 0);
}
TSM_INLINE CPair unzip(V low, V high)
{
    return {lowPairs(low, high), highPairs(low, high)};
}
TSM_INLINE void transpose(V* v)
{
    const V t0 = lowPairs(v[0], v[1]);
    const V t1 = highPairs(v[0], v[1]);
    const V t2 = lowPairs(v[2], v[3]);
    const V t3 = highPairs(v[2], v[3]);
    v[0] = lowHalves(t0, t2);
    v[1] = lowHalves(t1, t3);
    v[2] = highHalves(t0, t2);
    v[3] = highHalves(t1, t3);
}
TSM_INLINE void storeZipped(double* to, V re, V im)
{
    const V even = lowPairs(re, im);
    const V odd = highPairs(re, im);
    store(to, lowHalves(even, odd));
    store(to + 4, highHalves(even, odd));
}
TSM_INLINE void storeZippedReverse(double* to, V re, V im)
{
    const V even = lowPairs(re, im);
    const V odd = highPairs(re, im);
    store(to, highHalves(odd, even));
    store(to + 4, lowHalves(odd, even));
}
TSM_INLINE CPair loadUnzipped(const double* from)
{
    const V a = load(from);
    const V b = load(from + 4);
    return unzip(lowHalves(a, b), highHalves(a, b));
}
TSM_INLINE CPair loadUnzippedReverse(const double* from)
{
    const V a = load(from);
    const V b = load(from + 4);
    return unzip(highHalves(b, a), lowHalves(b, a));
}
TSM_INLINE void storeRezipped(double* to, V re, V im)
{
    store(to, lowPairs(re, im));
    store(to + 4, highPairs(re, im));
}
TSM_INLINE V repeatEven(V v)
{
    return __builtin_shufflevector(v, v, 0, 0, 2, 2);
}
TSM_INLINE V repeatOdd(V v)
{
    return __builtin_shufflevector(v, v, 1, 1, 3, 3);
}
TSM_INLINE V swapPairs(V v)
{
    return __builtin_shufflevector(v, v, 1, 0, 3, 2);
}
constexpr V kAlternate = {-1.0, 1.0, -1.0, 1.0};

#else

constexpr int kLaneOrder[8] = {0, 1, 2, 3, 4, 5, 6, 7};

TSM_INLINE V reverse(V v)
{
    return __builtin_shufflevector(v, v, 7, 6, 5, 4, 3, 2, 1, 0);
}
TSM_INLINE CPair unzip(V low, V high)
{
    return {__builtin_shufflevector(low, high, 0, 2, 4, 6, 8, 10, 12, 14),
            __builtin_shufflevector(low, high, 1, 3, 5, 7, 9, 11, 13, 15)};
}
TSM_INLINE void transpose(V* v)
{
    V pairs[8];
    for (int i = 0; i < 8; i += 2) {
        pairs[i] = __builtin_shufflevector(v[i], v[i + 1], 0, 8, 2, 10, 4, 12, 6, 14);
        pairs[i + 1] = __builtin_shufflevector(v[i], v[i + 1], 1, 9, 3, 11, 5, 13, 7, 15);
    }
    V quads[8];
    for (int i = 0; i < 8; i += 4)
        for (int k = 0; k < 2; ++k) {
            const V a = pairs[i + k];
            const V b = pairs[i + k + 2];
            quads[i + k] = __builtin_shufflevector(a, b, 0, 1, 8, 9, 4, 5, 12, 13);
            quads[i + k + 2] = __builtin_shufflevector(a, b, 2, 3, 10, 11, 6, 7, 14, 15);
        }
    for (int i = 0; i < 4; ++i) {
        v[i] = __builtin_shufflevector(quads[i], quads[i + 4], 0, 1, 2, 3, 8, 9, 10, 11);
        v[i + 4] = __builtin_shufflevector(quads[i], quads[i + 4], 4, 5, 6, 7, 12, 13, 14, 15);
    }
}
TSM_INLINE void storeZipped(double* to, V re, V im)
{
    store(to, __builtin_shufflevector(re, im, 0, 8, 1, 9, 2, 10, 3, 11));
    store(to + 8, __builtin_shufflevector(re, im, 4, 12, 5, 13, 6, 14, 7, 15));
}
TSM_INLINE void storeZippedReverse(double* to, V re, V im)
{
    store(to, __builtin_shufflevector(re, im, 7, 15, 6, 14, 5, 13, 4, 12));
    store(to + 8, __builtin_shufflevector(re, im, 3, 11, 2, 10, 1, 9, 0, 8));
}
TSM_INLINE CPair loadUnzipped(const double* from)
{
    return unzip(load(from), load(from + 8));
}
TSM_INLINE CPair loadUnzippedReverse(const double* from)
{
    const V low = load(from);
    const V high = load(from + 8);
    return {__builtin_shufflevector(low, high, 14, 12, 10, 8, 6, 4, 2, 0),
            __builtin_shufflevector(low, high, 15, 13, 11, 9, 7, 5, 3, 1)};
}
TSM_INLINE void storeRezipped(double* to, V re, V im)
{
    storeZipped(to, re, im);
}
TSM_INLINE V repeatEven(V v)
{
    return __builtin_shufflevector(v, v, 0, 0, 2, 2, 4, 4, 6, 6);
}
TSM_INLINE V repeatOdd(V v)
{
    return __builtin_shufflevector(v, v, 1, 1, 3, 3, 5, 5, 7, 7);
}
TSM_INLINE V swapPairs(V v)
{
    return __builtin_shufflevector(v, v, 1, 0, 3, 2, 5, 4, 7, 6);
}
constexpr V kAlternate = {-1.0, 1.0, -1.0, 1.0, -1.0, 1.0, -1.0, 1.0};

#endif

} // namespace

} // namespace tsm::rsk
