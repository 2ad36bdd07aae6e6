#include "Tools/analyze/CBandSpectrum.h"

#include <algorithm>
#include <cmath>

namespace tsm {

namespace {

constexpr double kLowestHz = 20.0;
constexpr double kHighestHz = 20000.0;
constexpr double kBandsOfOctave = 6.0;
constexpr double kCentersOfOctave = 24.0;
constexpr double kSegmentSeconds = 0.75; // bins of 1.3 Hz: the lowest band is 2.3 Hz wide

std::vector<double> makeCenters()
{
    std::vector<double> centers;
    for (int i = 0;; ++i) {
        const double hz = kLowestHz * std::exp2(i / kCentersOfOctave);
        if (hz > kHighestHz)
            return centers;
        centers.push_back(hz);
    }
}

} // namespace

const std::vector<double>& CBandSpectrum::centers()
{
    static const std::vector<double> kCenters = makeCenters();
    return kCenters;
}

std::vector<double> CBandSpectrum::levels(const CSoundBuffer& sound)
{
    const CPowerSpectrum spectrum(sound, CPowerSpectrum::sizeUpTo(kSegmentSeconds * sound.rate),
                                  ESpectrumWindow::Hann);
    const double half = std::exp2(0.5 / kBandsOfOctave);
    std::vector<double> levels;
    for (const double hz : centers()) {
        const double power = spectrum.powerBetween(hz / half, hz * half);
        levels.push_back(std::max(10.0 * std::log10(power), kFloorDb));
    }
    return levels;
}

} // namespace tsm
