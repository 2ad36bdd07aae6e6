// The resampler's inner loops over vectors of TSM_LANES doubles; compiled under the rules that
// DSPVector.inl states.

#include "rsk/DSPVector.inl"

namespace tsm::rsk {

namespace {

void upsampleHalfBand(const double* in, double* out, int count, const double* taps,
                      int pairs) noexcept
{
    for (int i = 0; i < count; i += kLanes) {
        V sum = V{};
        for (int p = 0; p < pairs; ++p)
            sum += spread(taps[p]) * (load(in + i - p) + load(in + i + 1 + p));
        storeZipped(out + 2 * i, load(in + i), sum);
    }
}

void downsampleHalfBand(const double* even, const double* odd, double* out, int count,
                        const double* taps, int pairs) noexcept
{
    const V half = spread(0.5);
    for (int i = 0; i < count; i += kLanes) {
        V sum = half * load(even + i);
        for (int p = 0; p < pairs; ++p)
            sum += spread(taps[p]) * (load(odd + i - 1 - p) + load(odd + i + p));
        store(out + i, sum);
    }
}

/// The sums over the lanes of as many vectors as there are lanes.
TSM_INLINE V sumLanes(V* v)
{
    transpose(v);
    V sum = v[0];
    for (int i = 1; i < kLanes; ++i)
        sum += v[i];
    return sum;
}

void interpolate(const double* in, const int* places, const int* rows, const double* bank,
                 int stride, double* out, int count) noexcept
{
    for (int i = 0; i < count; i += kLanes) {
        V sums[kLanes];
        for (int k = 0; k < kLanes; ++k) {
            const double* x = in + places[i + k];
            const double* taps = bank + rows[i + k];
            V sum = load(x) * load(taps);
            for (int tap = kLanes; tap < stride; tap += kLanes)
                sum += load(x + tap) * load(taps + tap);
            sums[k] = sum;
        }
        store(out + i, sumLanes(sums));
    }
}

void interpolateSpline(const double* in, const int* places, const int* rows, const double* beyond,
                       const double* bank, int stride, double* out, int count) noexcept
{
    for (int i = 0; i < count; i += kLanes) {
        V sums[kLanes];
        for (int k = 0; k < kLanes; ++k) {
            const double* x = in + places[i + k];
            const double* row = bank + rows[i + k];
            const V t = spread(beyond[i + k]);
            V sum = V{};
            for (int tap = 0; tap < stride; tap += kLanes) {
                const V slope = load(row + stride + tap) + t * load(row + 2 * stride + tap);
                sum += load(x + tap) * (load(row + tap) + t * slope);
            }
            sums[k] = sum;
        }
        store(out + i, sumLanes(sums));
    }
}

} // namespace

} // namespace tsm::rsk
