#include "Tools/analyze/CAliasMeasure.h"

#include "Tools/analyze/CPowerSpectrum.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <set>

namespace tsm {

namespace {

/// Where a frequency is heard in a sound of that rate.
double folded(double hz, double rate)
{
    const double rest = std::fmod(hz, rate);
    return std::min(rest, rate - rest);
}

bool isNearHarmonic(double hz, double toneHz, double rate)
{
    const double harmonic = std::max(1.0, std::round(hz / toneHz)) * toneHz;
    return harmonic < 0.5 * rate && std::abs(hz - harmonic) < CAliasMeasure::kKeepHz;
}

} // namespace

double CAliasMeasure::aliasDb(const std::vector<double>& sound, double rate, double toneHz)
{
    CSoundBuffer buffer;
    buffer.rate = static_cast<int>(rate);
    buffer.channels = {sound};
    const CPowerSpectrum spectrum(buffer,
                                  CPowerSpectrum::sizeUpTo(static_cast<double>(sound.size())),
                                  ESpectrumWindow::BlackmanHarris);
    // A set, since several harmonics may be folded to one place.
    std::set<long> places;
    for (int n = 2; n <= kHighestHarmonic; ++n) {
        const double hz = folded(n * toneHz, rate);
        if (n * toneHz > 0.5 * rate && hz > 100.0 && !isNearHarmonic(hz, toneHz, rate))
            places.insert(std::lround(hz));
    }
    double power = 0.0;
    for (const long place : places)
        power += spectrum.powerBetween(static_cast<double>(place) - kReachHz,
                                       static_cast<double>(place) + kReachHz);
    const double tone = spectrum.powerBetween(toneHz - kKeepHz, toneHz + kKeepHz);
    return 10.0 * std::log10(std::max(power / tone, std::numeric_limits<double>::min()));
}

} // namespace tsm
