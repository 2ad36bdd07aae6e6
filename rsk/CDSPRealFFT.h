#pragma once

#include "rsk/CAlignedArray.h"
#include "rsk/DSPKernels.h"

namespace tsm::rsk {

/// Fourier transform of 2^order real samples (order 5 to 20), forward with the kernel
/// exp(-2 pi i jk / N) and back with its conjugate. Neither direction scales, so there and back
/// multiplies by N. Spectra are packed as `CDSPKernels` tells.
///
/// The samples are taken as half as many complex ones, whose transform is a Stockham autosort of
/// radix 4 and 8 (Van Loan, "Computational Frameworks for the Fast Fourier Transform", 1992,
/// section 1.7) in separate arrays of real and imaginary parts, decimated in frequency forward and
/// in time on the way back; then the spectra of even and odd samples are split and joined (section
/// 4.3 there).
///
/// A transform is constant after it is made and serves any number of threads; the caller brings
/// the work space. Most callers get theirs from `CDSPRealFFTPool`.
class CDSPRealFFT {
public:
    /// Computes the tables for `build`, by default the best of this processor. [any]
    explicit CDSPRealFFT(int order, const CDSPKernels& build = dspKernels());
    CDSPRealFFT(const CDSPRealFFT&) = delete;
    CDSPRealFFT& operator=(const CDSPRealFFT&) = delete;

    [[nodiscard]] int getOrder() const noexcept { return order; }
    /// Samples of a frame, and doubles of its spectrum.
    [[nodiscard]] int getCount() const noexcept { return 1 << order; }
    /// Doubles of work space that a transform of `order` needs.
    [[nodiscard]] static constexpr int workCount(int order) noexcept { return (2 << order) + 32; }
    [[nodiscard]] int getWorkCount() const noexcept { return workCount(order); }

    /// Samples to spectrum; `out` may be `in`, `work` overlaps neither. [any] No allocation.
    void forward(const double* in, double* out, double* work) const noexcept
    {
        kernels->forward(plan, in, out, work);
    }
    /// Spectrum to samples, N times as large; overlaps as for `forward`. [any] No allocation.
    void inverse(const double* in, double* out, double* work) const noexcept
    {
        kernels->inverse(plan, in, out, work);
    }
    /// The same two with the split layout that `CDSPKernels` tells, which is faster to multiply.
    void forwardSplit(const double* in, double* out, double* work) const noexcept
    {
        kernels->forwardSplit(plan, in, out, work);
    }
    void inverseSplit(const double* in, double* out, double* work) const noexcept
    {
        kernels->inverseSplit(plan, in, out, work);
    }
    /// `out` = `a` * `b`, bin by bin; `out` may be one of them. [any] No allocation.
    void multiply(const double* a, const double* b, double* out) const noexcept
    {
        kernels->multiplySpectra(a, b, out, getCount());
    }

private:
    void makePasses();
    void makeFirstTwiddles();
    void makeMidTwiddles();
    void makeSplitFactors();

    int order;
    const CDSPKernels* kernels;
    CDSPFFTPlan plan{};
    CAlignedArray<double> firstTwiddle;
    CAlignedArray<double> midTwiddle;
    CAlignedArray<double> splitFactors;
};

} // namespace tsm::rsk
