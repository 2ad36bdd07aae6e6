#pragma once

namespace tsm::rsk {

/// The instruction sets that the kernels are built for, each a superset of those before it.
enum class EDSPBuild { Generic, Fma, Avx512 };

/// Real transforms have 2^kMinFFTOrder to 2^kMaxFFTOrder points.
constexpr int kMinFFTOrder = 5;
constexpr int kMaxFFTOrder = 20;
constexpr int kMaxFFTPasses = 10; // of radix 4 at least, over half as many complex points
/// Doubles behind the end of a buffer that kernels may touch, since they work on whole vectors: as
/// many as the widest vector has.
constexpr int kKernelPad = 8;

/// The tables of a real transform of 2^order points, as one build's kernels read them; made by
/// `CDSPRealFFT`, which tells about the algorithm.
struct CDSPFFTPlan {
    int halfCount;              // points of the complex transform, half those of the real one
    int passCount;              // 2 at least
    int radix[kMaxFFTPasses];   // 4 or 8, in the order of the forward transform
    const double* firstTwiddle; // of the first pass, in vectors
    const double* midTwiddle;   // of all passes between first and last, in scalars
    const double* midTwiddleEnd;
    const double* splitCos; // halfCount factors each, of bins 1 on, that split the real halves
    const double* splitSin;
};

/// The arithmetic of transforms and spectra in one build.
///
/// A spectrum of `count` doubles is packed: the real value at zero frequency, the real value at
/// half the rate, then pairs of real and imaginary part in ascending frequency. A split one has
/// the same real parts in its first half, the imaginary parts in its second, and the value at half
/// the rate in the place of the first of these. No pointer needs an alignment; 64 bytes are
/// fastest.
struct CDSPKernels {
    int lanes;            // doubles in a vector
    const int* laneOrder; // which point stands in each lane of the first pass
    int minFFTOrder;      // smaller transforms are left to `smaller`
    const CDSPKernels* smaller;
    void (*forward)(const CDSPFFTPlan& plan, const double* in, double* out, double* work) noexcept;
    void (*inverse)(const CDSPFFTPlan& plan, const double* in, double* out, double* work) noexcept;
    void (*forwardSplit)(const CDSPFFTPlan& plan, const double* in, double* out,
                         double* work) noexcept;
    void (*inverseSplit)(const CDSPFFTPlan& plan, const double* in, double* out,
                         double* work) noexcept;
    /// `out` = `a` * `b`, packed; `out` may be one of them.
    void (*multiplySpectra)(const double* a, const double* b, double* out, int count) noexcept;
    /// Bins `first` up to `end`, multiples of 16, of the sum over `pairCount` of a[i] * b[i], first
    /// one first, written to `sum` or added to it; all spectra split, of 2 * `halfCount` doubles.
    void (*sumProducts)(const double* const* a, const double* const* b, int pairCount, double* sum,
                        int halfCount, int first, int end, bool adds) noexcept;
    /// The same sum in `sum`, and in `next` that of a[i] * b[i - 1]: half the reading for two.
    /// `before` stands in for b[-1], or is null for none.
    void (*sumProductsTwice)(const double* const* a, const double* const* b, const double* before,
                             int pairCount, double* sum, double* next, int halfCount, int first,
                             int end) noexcept;
    /// out[i] = sum of taps[k] * in[i - k]. Lane j of row r (of `lanes` doubles,
    /// tapCount + lanes - 1 rows) is tap r - (lanes - 1) + j, or zero. `in` has its past in front,
    /// `lanes` samples more than the taps reach, and may be read up to kKernelPad samples beyond
    /// its end; `out` is exact.
    void (*convolveDirect)(const double* in, double* out, int count, const double* rows,
                           int tapCount) noexcept;

    // The resampler's loops. They work on whole vectors, so inputs may be read and outputs written
    // up to kKernelPad samples (twice that where the rate doubles) beyond their ends.

    /// out[2 * i] = in[i]; between them pairs of taps, the first next to the place.
    void (*upsampleHalfBand)(const double* in, double* out, int count, const double* taps,
                             int pairs) noexcept;
    /// Half of even[i] and pairs of taps on the odd samples round it, odd[i] the one behind.
    void (*downsampleHalfBand)(const double* even, const double* odd, double* out, int count,
                               const double* taps, int pairs) noexcept;
    /// Output i is the product of `stride` taps from bank[rows[i]] on and samples from
    /// in[places[i]] on. `stride` is a multiple of 8.
    void (*interpolate)(const double* in, const int* places, const int* rows, const double* bank,
                        int stride, double* out, int count) noexcept;
    /// The same with taps c0 + t * c1 + t^2 * c2, t from `beyond`, their lists `stride` apart.
    void (*interpolateSpline)(const double* in, const int* places, const int* rows,
                              const double* beyond, const double* bank, int stride, double* out,
                              int count) noexcept;
};

/// The build for this processor, or the one a test has chosen. [any]
[[nodiscard]] const CDSPKernels& dspKernels() noexcept;

/// That build; null when this processor can't run it. [any]
[[nodiscard]] const CDSPKernels* dspKernels(EDSPBuild build) noexcept;

/// Chooses the build for what is made from here on in the whole process; false and no change when
/// the processor can't run it. For tests and measurements. [setup]
bool selectDSPKernels(EDSPBuild build) noexcept;

} // namespace tsm::rsk
