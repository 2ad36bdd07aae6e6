// The convolvers' inner loops over vectors of TSM_LANES doubles; compiled under the rules that
// DSPVector.inl states.

#include "rsk/DSPVector.inl"

namespace tsm::rsk {

namespace {

/// Sums for `Count` vectors of bins from `at` on stay in registers over all pairs.
template <int Count>
TSM_INLINE void sumProductsAt(const double* const* a, const double* const* b, int pairCount,
                              double* sum, int halfCount, bool adds, int at)
{
    V sumRe[Count];
    V sumIm[Count];
    for (int i = 0; i < Count; ++i) {
        sumRe[i] = adds ? load(sum + at + i * kLanes) : V{};
        sumIm[i] = adds ? load(sum + at + halfCount + i * kLanes) : V{};
    }
    for (int pair = 0; pair < pairCount; ++pair) {
        const double* x = a[pair] + at;
        const double* y = b[pair] + at;
        for (int i = 0; i < Count; ++i) {
            const V xRe = load(x + i * kLanes);
            const V xIm = load(x + halfCount + i * kLanes);
            const V yRe = load(y + i * kLanes);
            const V yIm = load(y + halfCount + i * kLanes);
            sumRe[i] += xRe * yRe;
            sumRe[i] -= xIm * yIm;
            sumIm[i] += xRe * yIm;
            sumIm[i] += xIm * yRe;
        }
    }
    for (int i = 0; i < Count; ++i) {
        store(sum + at + i * kLanes, sumRe[i]);
        store(sum + at + halfCount + i * kLanes, sumIm[i]);
    }
}

/// The bins at zero frequency and at half the rate, which are real, in place of what the loops over
/// complex ones make of them.
struct CRealBins {
    CRealBins(const double* from, int half, bool adds)
        : halfCount(half), zero(adds ? from[0] : 0.0), nyquist(adds ? from[half] : 0.0)
    {
    }
    void add(const double* x, const double* y)
    {
        zero += x[0] * y[0];
        nyquist += x[halfCount] * y[halfCount];
    }
    void put(double* to) const
    {
        to[0] = zero;
        to[halfCount] = nyquist;
    }

    int halfCount;
    double zero;
    double nyquist;
};

void sumProducts(const double* const* a, const double* const* b, int pairCount, double* sum,
                 int halfCount, int first, int end, bool adds) noexcept
{
    CRealBins bins(sum, halfCount, adds);
    // Two vectors fill the registers of the narrow builds; the wide one has twice as many.
    int at = first;
    if constexpr (kLanes == 8)
        for (; at + 4 * kLanes <= end; at += 4 * kLanes)
            sumProductsAt<4>(a, b, pairCount, sum, halfCount, adds, at);
    for (; at < end; at += 2 * kLanes)
        sumProductsAt<2>(a, b, pairCount, sum, halfCount, adds, at);
    if (first > 0)
        return;
    for (int pair = 0; pair < pairCount; ++pair)
        bins.add(a[pair], b[pair]);
    bins.put(sum);
}

/// As `sumProductsAt`, for two sums that share what they read: `y` is the one's factor and, with
/// the next `x`, that of the other.
template <int Count>
TSM_INLINE void sumTwiceAt(const double* const* a, const double* const* b, const double* before,
                           int pairCount, double* sum, double* next, int halfCount, int at)
{
    V sumRe[Count];
    V sumIm[Count];
    V nextRe[Count];
    V nextIm[Count];
    V yRe[Count];
    V yIm[Count];
    for (int i = 0; i < Count; ++i) {
        const int re = at + i * kLanes;
        const int im = re + halfCount;
        sumRe[i] = V{};
        sumIm[i] = V{};
        nextRe[i] = V{};
        nextIm[i] = V{};
        yRe[i] = before ? load(before + re) : V{};
        yIm[i] = before ? load(before + im) : V{};
    }
    for (int pair = 0; pair < pairCount; ++pair) {
        const double* x = a[pair] + at;
        const double* y = b[pair] + at;
        for (int i = 0; i < Count; ++i) {
            const V xRe = load(x + i * kLanes);
            const V xIm = load(x + halfCount + i * kLanes);
            nextRe[i] += xRe * yRe[i];
            nextIm[i] += xRe * yIm[i];
            nextRe[i] -= xIm * yIm[i];
            nextIm[i] += xIm * yRe[i];
            yRe[i] = load(y + i * kLanes);
            yIm[i] = load(y + halfCount + i * kLanes);
            sumRe[i] += xRe * yRe[i];
            sumIm[i] += xRe * yIm[i];
            sumRe[i] -= xIm * yIm[i];
            sumIm[i] += xIm * yRe[i];
        }
    }
    for (int i = 0; i < Count; ++i) {
        const int re = at + i * kLanes;
        const int im = re + halfCount;
        store(sum + re, sumRe[i]);
        store(sum + im, sumIm[i]);
        store(next + re, nextRe[i]);
        store(next + im, nextIm[i]);
    }
}

void sumProductsTwice(const double* const* a, const double* const* b, const double* before,
                      int pairCount, double* sum, double* next, int halfCount, int first,
                      int end) noexcept
{
    int at = first;
    if constexpr (kLanes == 8)
        for (; at + 4 * kLanes <= end; at += 4 * kLanes)
            sumTwiceAt<4>(a, b, before, pairCount, sum, next, halfCount, at);
    for (; at < end; at += 2 * kLanes)
        sumTwiceAt<2>(a, b, before, pairCount, sum, next, halfCount, at);
    if (first > 0)
        return;
    CRealBins sumBins(sum, halfCount, false);
    CRealBins nextBins(next, halfCount, false);
    for (int pair = 0; pair < pairCount; ++pair) {
        const double* last = pair > 0 ? b[pair - 1] : before;
        sumBins.add(a[pair], b[pair]);
        if (last)
            nextBins.add(a[pair], last);
    }
    sumBins.put(sum);
    nextBins.put(next);
}

/// `Count` vectors of outputs at once share each row. As many sums as there are, eight in all, hide
/// the latency of the additions: with few outputs they are sums of every second row and so on.
template <int Count>
TSM_INLINE void convolveAt(const double* in, double* out, const double* rows, int rowCount)
{
    constexpr int kChains = 8 / Count;
    V sums[kChains][Count];
    for (int chain = 0; chain < kChains; ++chain)
        for (int i = 0; i < Count; ++i)
            sums[chain][i] = V{};
    const double* sample = in + kLanes - 1;
    const auto addRow = [&](int row, V* sum) {
        const V taps = load(rows + row * kLanes);
        for (int i = 0; i < Count; ++i)
            sum[i] += taps * spread(sample[i * kLanes - row]);
    };
    int row = 0;
    for (; row + kChains <= rowCount; row += kChains)
        for (int chain = 0; chain < kChains; ++chain)
            addRow(row + chain, sums[chain]);
    for (; row < rowCount; ++row)
        addRow(row, sums[0]);
    for (int i = 0; i < Count; ++i) {
        V sum = sums[0][i];
        for (int chain = 1; chain < kChains; ++chain)
            sum += sums[chain][i];
        store(out + i * kLanes, sum);
    }
}

void convolveDirect(const double* in, double* out, int count, const double* rows,
                    int tapCount) noexcept
{
    const int rowCount = tapCount + kLanes - 1;
    int at = 0;
    for (; at + 8 * kLanes <= count; at += 8 * kLanes)
        convolveAt<8>(in + at, out + at, rows, rowCount);
    for (; at + 4 * kLanes <= count; at += 4 * kLanes)
        convolveAt<4>(in + at, out + at, rows, rowCount);
    for (; at + 2 * kLanes <= count; at += 2 * kLanes)
        convolveAt<2>(in + at, out + at, rows, rowCount);
    for (; at < count; at += kLanes) {
        double last[kLanes];
        convolveAt<1>(in + at, last, rows, rowCount);
        for (int i = 0; i < kLanes && at + i < count; ++i)
            out[at + i] = last[i];
    }
}

} // namespace

} // namespace tsm::rsk
