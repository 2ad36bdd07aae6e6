#pragma once

#include "rsk/CAlignedArray.h"
#include "rsk/CDSPHalfBand.h"
#include "rsk/CDSPProcessor.h"
#include "rsk/DSPKernels.h"

namespace tsm::rsk {

/// Halves the rate behind a half-band filter. The gain is 1 and the first output belongs to the
/// first input's moment.
class CDSPHBDownsampler : public CDSPProcessor {
public:
    /// `bandEdge` is the end of the signal's band in parts of the higher rate, below 0.25.
    CDSPHBDownsampler(double bandEdge, double attenuationDb, int maxInLen);

    [[nodiscard]] int getMaxOutLen(int maxInLen) const override;
    void clear() override;
    int process(const double* input, int length, const double*& output) override;

private:
    const CDSPKernels& kernels = dspKernels();
    const CDSPHalfBand filter;
    int filled = 0; // samples in `line`, the first of them zeros from before the signal
    CAlignedArray<double> line;
    CAlignedArray<double> even;
    CAlignedArray<double> odd;
    CAlignedArray<double> out;
};

} // namespace tsm::rsk
