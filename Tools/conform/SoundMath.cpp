#include "Tools/conform/SoundMath.h"

#include <algorithm>
#include <cmath>
#include <numeric>
#include <random>

namespace tsm {

CChannels makeNoise(int channelCount, std::size_t frameCount, double peak, unsigned seed)
{
    std::uniform_real_distribution<double> uniform(-peak, peak);
    CChannels sound = makeSilence(channelCount, frameCount);
    for (std::vector<double>& channel : sound) {
        // One for each channel: a shorter noise is the beginning of a longer one.
        std::mt19937 generator(seed++);
        // Representable in both sample sizes, so that both are given the same.
        std::ranges::generate(
            channel, [&] { return static_cast<double>(static_cast<float>(uniform(generator))); });
    }
    return sound;
}

CChannels makeSilence(int channelCount, std::size_t frameCount)
{
    return CChannels(static_cast<std::size_t>(channelCount), std::vector<double>(frameCount));
}

std::size_t frameCountOf(const CChannels& sound)
{
    return sound.empty() ? 0 : sound[0].size();
}

double peakOf(const CChannels& sound, std::size_t from)
{
    double peak = 0.0;
    for (const std::vector<double>& channel : sound)
        for (std::size_t i = from; i < channel.size(); ++i)
            peak = std::max(peak, std::abs(channel[i]));
    return peak;
}

bool isFinite(const CChannels& sound)
{
    return std::ranges::all_of(sound, [](const std::vector<double>& channel) {
        return std::ranges::all_of(channel, [](double sample) { return std::isfinite(sample); });
    });
}

CSoundGap findLargestGap(const CChannels& a, const CChannels& b, std::size_t from)
{
    CSoundGap gap;
    for (std::size_t channel = 0; channel < std::min(a.size(), b.size()); ++channel)
        for (std::size_t i = from; i < std::min(a[channel].size(), b[channel].size()); ++i) {
            const double size = std::abs(a[channel][i] - b[channel][i]);
            if (std::isnan(size))
                return {size, i, channel};
            if (size > gap.size)
                gap = {size, i, channel};
        }
    return gap;
}

std::size_t findFirstGap(const CChannels& a, const CChannels& b, double size)
{
    std::size_t first = std::min(frameCountOf(a), frameCountOf(b));
    for (std::size_t channel = 0; channel < std::min(a.size(), b.size()); ++channel)
        for (std::size_t i = 0; i < first; ++i)
            if (!(std::abs(a[channel][i] - b[channel][i]) <= size))
                first = i;
    return first;
}

CLag findLag(const std::vector<double>& in, const std::vector<double>& out, int maxLag)
{
    // The last `maxLag` frames of the input have no place in the output for each lag.
    const std::size_t count = std::min(in.size(), out.size()) - static_cast<std::size_t>(maxLag);
    const double inEnergy = std::inner_product(
        in.begin(), in.begin() + static_cast<std::ptrdiff_t>(count), in.begin(), 0.0);
    CLag best;
    for (int lag = 0; lag <= maxLag; ++lag) {
        const double* const late = out.data() + lag;
        double product = 0.0;
        double outEnergy = 0.0;
        for (std::size_t i = 0; i < count; ++i) {
            product += in[i] * late[i];
            outEnergy += late[i] * late[i];
        }
        const double size = std::sqrt(inEnergy * outEnergy);
        const double correlation = size > 0.0 ? product / size : 0.0;
        if (std::abs(correlation) > std::abs(best.correlation))
            best = {lag, correlation};
    }
    return best;
}

} // namespace tsm
