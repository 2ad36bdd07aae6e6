#pragma once

#include "rsk/CAlignedArray.h"
#include "rsk/CDSPFracBank.h"
#include "rsk/CDSPProcessor.h"
#include "rsk/DSPKernels.h"

#include <cstdint>

namespace tsm::rsk {

/// Reads a signal, whose band ends at a quarter of its rate at most, at another rate.
///
/// Where both rates are multiples of a divisor that the destination holds 1500 times at most, each
/// output has a row of the bank of its own and the position is exact (whole-step mode); elsewhere
/// the taps are interpolated between 256 fractions (spline mode). The first output belongs to the
/// first input's moment.
class CDSPFracInterpolator : public CDSPProcessor {
public:
    CDSPFracInterpolator(double sourceRate, double destRate, double attenuationDb, int maxInLen);

    [[nodiscard]] int getMaxOutLen(int maxInLen) const override;
    void clear() override;
    int process(const double* input, int length, const double*& output) override;

private:
    /// The rates over their greatest common divisor; no steps when that doesn't serve.
    struct CSteps {
        int source = 0;
        int dest = 0;
    };
    static CSteps findSteps(double sourceRate, double destRate);

    int placeWholeSteps(int limit);
    int placeSplineSteps(int limit);

    const CDSPKernels& kernels = dspKernels();
    const CSteps steps;
    const double step; // input samples an output
    CDSPFracBankCache::CHold bank;
    int at = 0;                // whole-step mode: the next position's sample in `line`
    int phase = 0;             // and its fraction, in parts of steps.dest
    std::int64_t outIndex = 0; // spline mode: outputs since the start,
    std::int64_t dropped = 0;  // and input samples that have left `line`
    int filled = 0;
    CAlignedArray<double> line;
    CAlignedArray<int> places; // of each output: its first tap's sample in `line`
    CAlignedArray<int> rows;   // its row's start in the bank
    CAlignedArray<double> beyond;
    CAlignedArray<double> out;
};

} // namespace tsm::rsk
