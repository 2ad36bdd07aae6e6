#pragma once

#include "Audio/Processes/CBankedImpulse.h"
#include "Audio/Processes/CImpulseGain.h"
#include "Other/CWaveFile.h"

namespace tsm {

/// The steps from an open sound file to an impulse; one object for one impulse.
class CImpulseLoader : public CCheckedObject {
public:
    /// `processRate` is the rate to come to, in Hz. [any]
    CImpulseLoader(CWaveFile& openFile, double processRate) : file(openFile), rate(processRate) {}

    /// As `loadImpulse` tells; `impulse` is undefined after an error. [any]
    [[nodiscard]] CError* load(CBankedImpulse& impulse, int wantedChannels);

private:
    using CSamples = CArray<double>;

    [[nodiscard]] CError* checkLength();
    [[nodiscard]] CError* readSamples();
    void resample(int keptCount, CImpulseGain& estimate);
    [[nodiscard]] CError* makeChannels(CBankedImpulse& impulse, int keptCount);

    CWaveFile& file;
    double rate;
    int inLength = 0;  // samples of a channel, as read
    int outLength = 0; // and at the process's rate
    COwnedArray<CSamples> samples;
};

} // namespace tsm
