#pragma once

namespace tsm {

/// Sections that a branch can have.
constexpr int kMaxHalfBandSections = 8;

/// What a half-band filter of one channel remembers. A section's past input is the past output of
/// the one before, so that k + 1 pasts serve k sections. Samples of even and of odd index never
/// meet within a branch: each parity has its own past.
struct CHalfBandState {
    double past[2][kMaxHalfBandSections + 1][2] = {}; // by parity, section, branch
    double late = 0.0;                                // branch B's output at the sample before
    int turn = 0;                                     // the parity of the next sample
};

/// One channel for a kernel: `in` and `out` hold the block; they may be the same.
struct CHalfBandLane {
    const double* in;
    double* out;
    CHalfBandState* state;
};

/// The recurrence in one build: the generic one rounds after each operation, the fused one only
/// where the sums of two fused multiply-adds end, so that the two differ by rounding.
///
/// y[n] = c (u[n] - y[n-2]) + u[n-2] in each section; the output is half of branch A and branch B a
/// sample before (R. Ansari, B. Liu, "Efficient sampling rate alteration using recursive (IIR)
/// digital filters", 1983).
struct CHalfBandKernels {
    /// Coefficients in order of the sections, branch A's and B's side by side. With `isSparse`
    /// every second sample of the block is zero, and so is all past of that parity.
    using CRun = void (*)(const double (*coefficients)[2], const CHalfBandLane* lanes, int count,
                          bool isSparse) noexcept;

    CRun runOne[kMaxHalfBandSections]; // by the sections less one; one lane
    CRun runTwo[kMaxHalfBandSections]; // two lanes whose states have the same turn
    bool isFused; // computes y[n] = (c u[n] + u[n-2]) - c y[n-2], each product and its sum as one
};

/// The build for this processor. [any]
[[nodiscard]] const CHalfBandKernels& halfBandKernels() noexcept;
/// The build that every processor runs; for tests. [any]
[[nodiscard]] const CHalfBandKernels& genericHalfBandKernels() noexcept;

} // namespace tsm
