#include "Tools/analyze/CSoundMeasure.h"

#include <algorithm>
#include <cmath>

namespace tsm {

double decibels(double amplitude)
{
    return 20.0 * std::log10(amplitude);
}

CSoundMeasure CSoundMeasure::of(const CSoundBuffer& sound)
{
    CSoundMeasure measure;
    double sum = 0.0;
    for (const std::vector<double>& channel : sound.channels)
        for (const double sample : channel) {
            measure.peak = std::max(measure.peak, std::abs(sample));
            sum += sample * sample;
        }
    const std::size_t count = sound.channels.size() * sound.getFrameCount();
    if (count > 0)
        measure.rms = std::sqrt(sum / static_cast<double>(count));
    return measure;
}

double CSoundMeasure::crestDb() const
{
    return rms > 0.0 ? decibels(peak / rms) : 0.0;
}

} // namespace tsm
