#include "Audio/Filters/CAudioFilterFIRLPGen.h"

#include "rsk/CDSPKaiserWindow.h"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace tsm {

namespace {

constexpr double kFixedRate = 44100.0;
// Ten times what the longest parameters give at 44.1 kHz; at very high rates memory is the limit.
constexpr double kMaxHalfLength = 1 << 22;

/// Half of the window in samples, a fraction included: shorter for a higher cut-off, which needs
/// fewer taps for the same number of its periods.
double windowReach(double rate, double lengthSeconds, double frequency)
{
    const double reach = rate * rate * lengthSeconds / frequency * 0.125;
    return std::isfinite(reach) ? std::clamp(reach, 0.0, kMaxHalfLength) : 0.0;
}

} // namespace

void CAudioFilterFIRLPGen::generate(const CAudioFilterParams& params, double sampleRate,
                                    COwnedArray<CAudioFilter>& filters) const
{
    const double rate = params.get("fixsr", 1.0) >= 0.5 ? kFixedRate : sampleRate;
    const double frequency = params.get("freq", 11025.0);
    const double reach = windowReach(rate, params.get("length", 0.015), frequency);
    const int halfLength = static_cast<int>(reach);
    const double w = 2.0 * std::numbers::pi * frequency / rate;
    const rsk::CDSPKaiserWindow window(std::clamp(params.get("beta", 18.0), 1.0, 350.0));

    CAudioFilter& filter = filters.create();
    filter.latency = halfLength;
    filter.taps.resize(2 * halfLength + 1);
    filter.taps[halfLength] = w / std::numbers::pi;
    // sin(w * k) by its recursion, sin(w * (k + 1)) = 2 * cos(w) * sin(w * k) - sin(w * (k - 1)).
    const double factor = 2.0 * std::cos(w);
    double sine = std::sin(w);
    double before = 0.0;
    for (int k = 1; k <= halfLength; ++k) {
        const double tap = sine / (std::numbers::pi * k) * window.at(k / reach);
        filter.taps[halfLength - k] = tap;
        filter.taps[halfLength + k] = tap;
        const double next = factor * sine - before;
        before = sine;
        sine = next;
    }
}

void CAudioFilterFIRLPGen::declareClass(CObjectClassInfo& info)
{
    CAudioFilterGen::declareClass(info);
}

} // namespace tsm
