#include "Tools/analyze/CToneMeasure.h"

#include "Tools/analyze/CPowerSpectrum.h"

#include <algorithm>
#include <cmath>
#include <numeric>

namespace tsm {

namespace {

constexpr double kSegmentSeconds = 65536.0 / 44100.0;
constexpr double kLobeBins = 4.5; // half the main lobe of the window, and half a bin

double powerOfHarmonic(const CPowerSpectrum& spectrum, double hz)
{
    const double reach = kLobeBins * spectrum.getBinHz() + CToneMeasure::kSkirt * hz;
    return spectrum.powerBetween(hz - reach, hz + reach);
}

} // namespace

CToneMeasure CToneMeasure::of(const CSoundBuffer& sound, double hz)
{
    const double longest =
        std::min(static_cast<double>(sound.getFrameCount()), kSegmentSeconds * sound.rate + 0.5);
    const CPowerSpectrum spectrum(sound, CPowerSpectrum::sizeUpTo(longest),
                                  ESpectrumWindow::BlackmanHarris);
    CToneMeasure measure;
    for (int n = 1; n <= kHarmonicCount && n * hz < 0.5 * sound.rate; ++n)
        measure.powers[static_cast<std::size_t>(n - 1)] = powerOfHarmonic(spectrum, n * hz);
    return measure;
}

double CToneMeasure::amplitude() const
{
    return std::sqrt(2.0 * powers.front());
}

double CToneMeasure::harmonicDistortion() const
{
    const double harmonics = std::accumulate(powers.begin() + 1, powers.end(), 0.0);
    return powers.front() > 0.0 ? std::sqrt(harmonics / powers.front()) : 0.0;
}

} // namespace tsm
