#pragma once

#include "Core/COwnedArray.h"
#include "rsk/CDSPLowPass.h"
#include "rsk/CDSPProcessor.h"

namespace tsm::rsk {

/// Changes the rate of a signal by a chain of stages: half-band filters, a steep low-pass, and an
/// interpolator where the rates have no simple ratio.
///
/// The pass band ends `transitionPct` percent below half of the lower rate, where the stop band
/// begins; images and what would fold back are at least `attenuationDb` down, and the pass band's
/// ripple is as small. The phase is linear, the gain 1, and the first output belongs to the first
/// input's moment. Output lags behind input until the filters are full; the caller goes on with
/// zeros for as long as it wants output.
///
/// Designs are kept for the whole process, so the next chain of the same rates is made at once.
class CDSPResampler : public CDSPProcessor {
public:
    /// Rates in Hz, as `isSupported` allows them; `process` takes `maxInLen` samples at most.
    /// [any] Allocates, takes the locks of the caches.
    CDSPResampler(double sourceRate, double destRate, int maxInLen, double transitionPct,
                  double attenuationDb, EDSPPhase phase);

    /// Whether both rates are positive and no more than 512 times one another: beyond, a stage's
    /// buffers would be out of proportion to any signal. [any]
    [[nodiscard]] static bool isSupported(double sourceRate, double destRate) noexcept;

    [[nodiscard]] int getLatency() const override;
    [[nodiscard]] double getLatencyFrac() const override;
    [[nodiscard]] int getMaxOutLen(int maxInLen) const override;
    void clear() override;
    int process(const double* input, int length, const double*& output) override;

    [[nodiscard]] int getStageCount() const noexcept { return stages.getCount(); }

private:
    bool addSimpleRatio();
    bool addWholeUpsampling();
    bool addDownsampling();
    void addGeneral();

    void addConvolver(int upFactor, int downFactor, double frequency, double widthPct);
    void addHalfBandUp(int count);
    void addHalfBandDown(int count);
    void addInterpolator();
    void add(CDSPProcessor* stage, double newRate);

    double sourceRate;
    double destRate;
    double transitionPct;
    double attenuationDb;
    EDSPPhase phase;
    double rate; // behind the stages added so far
    int maxLen;  // of their output
    COwnedArray<CDSPProcessor> stages;
};

/// The name under which the product uses it.
class CDSPResampler16 : public CDSPResampler {
public:
    using CDSPResampler::CDSPResampler;
};

} // namespace tsm::rsk
