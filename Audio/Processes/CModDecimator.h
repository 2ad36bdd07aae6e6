#pragma once

#include "Audio/CAudioProcessBase.h"
#include "Audio/CDSPModDelay.h"

namespace tsm {

/// Halves the rate: every second sample goes on. Inputs that are late by an odd number of samples
/// are delayed by one more, so that the latency is a whole number at the lower rate too.
class CModDecimator : public CAudioProcessBase {
public:
    void reset() override;
    void update() override;
    void process() override;

private:
    void makeDelays(bool isOdd, int channelCount);

    COwnedArray<CDSPModDelay> delays; // of each channel, while the latency is odd
};

} // namespace tsm
