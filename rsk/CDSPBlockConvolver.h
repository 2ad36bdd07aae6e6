#pragma once

#include "rsk/CAlignedArray.h"
#include "rsk/CDSPLowPass.h"
#include "rsk/CDSPProcessor.h"

namespace tsm::rsk {

/// Filters by overlap-save convolution, on the way up or down by small whole factors: input has
/// `upFactor` - 1 zeros put behind each sample, of the filtered samples each `downFactor`th stays.
/// The first output belongs to the first input's moment.
class CDSPBlockConvolver : public CDSPProcessor {
public:
    /// The filter's frequencies are those of the raised rate; factors are 1 to 3.
    CDSPBlockConvolver(const CDSPLowPass::CKey& filter, int upFactor, int downFactor, int maxInLen);

    [[nodiscard]] int getMaxOutLen(int maxInLen) const override;
    void clear() override;
    int process(const double* input, int length, const double*& output) override;

private:
    void transformInput();
    int convolve(double* to);

    CDSPLowPassCache::CHold lowPass;
    const int upFactor;
    const int downFactor;
    const bool isRepeated; // twice the rate: the zeros only repeat a spectrum of half the size
    int newCount;          // samples of the raised rate that a frame adds
    int keptCount;         // input samples that the next frame sees again
    int filled = 0;        // input samples in `history`
    int skip = 0;          // new samples of the next frame until the first that goes out
    const CDSPRealFFT* inputTransform;
    CAlignedArray<double> history;
    CAlignedArray<double> frame;
    CAlignedArray<double> work;
    CAlignedArray<double> out;
};

} // namespace tsm::rsk
