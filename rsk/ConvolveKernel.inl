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

void sumProducts(const double* const* a, const double* const* b, int pairCount, double* sum,
                 int halfCount, bool adds) noexcept
{
    double zero = adds ? sum[0] : 0.0;
    double nyquist = adds ? sum[halfCount] : 0.0;
    for (int pair = 0; pair < pairCount; ++pair) {
        zero += a[pair][0] * b[pair][0];
        nyquist += a[pair][halfCount] * b[pair][halfCount];
    }
    // Two vectors fill the registers of the narrow builds; the wide one has twice as many.
    int at = 0;
    if constexpr (kLanes == 8)
        for (; at + 4 * kLanes <= halfCount; at += 4 * kLanes)
            sumProductsAt<4>(a, b, pairCount, sum, halfCount, adds, at);
    for (; at < halfCount; at += 2 * kLanes)
        sumProductsAt<2>(a, b, pairCount, sum, halfCount, adds, at);
    sum[0] = zero;
    sum[halfCount] = nyquist;
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
