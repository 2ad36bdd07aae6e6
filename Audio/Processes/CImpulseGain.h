#pragma once

#include "rsk/CAlignedArray.h"
#include "rsk/CDSPRealFFT.h"

namespace tsm {

/// Finds the gain with which an impulse keeps the level of a signal like music: low-passed noise,
/// always the same, is convolved with each channel.
///
/// It is an estimate, and a cheap one: the convolution is circular over 8192 samples, the impulse
/// folded into their first half.
class CImpulseGain {
public:
    static constexpr int kOrder = 13; // of the transform

    /// `sampleRate` is the impulse's, in Hz. [any] Allocates.
    explicit CImpulseGain(double sampleRate);

    /// Adds a channel of `count` samples. [any]
    void add(const double* taps, int count);
    /// The factor for all channels added, from -30 to 30 dB, or not a number when one of them had
    /// values that no level can be found of. [any]
    [[nodiscard]] double getGain() const;

private:
    static constexpr int kFrame = 1 << kOrder;
    static constexpr int kHalf = kFrame / 2;

    void makeSignal(double sampleRate);

    const rsk::CDSPRealFFT& transform;
    rsk::CAlignedArray<double> signal; // its spectrum, with the scale of the transforms in it
    rsk::CAlignedArray<double> frame;
    rsk::CAlignedArray<double> work;
    double squareIn = 0.0;
    double total = 0.0; // of the ratios of power
    int channelCount = 0;
};

} // namespace tsm
