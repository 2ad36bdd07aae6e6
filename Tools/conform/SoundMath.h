#pragma once

#include <cstddef>
#include <vector>

namespace tsm {

/// Sounds of cases: one vector a channel, full scale 1.0.
using CChannels = std::vector<std::vector<double>>;

/// White noise, another one in each channel; the same for the same arguments, and the beginning of
/// a longer one.
[[nodiscard]] CChannels makeNoise(int channelCount, std::size_t frameCount, double peak,
                                  unsigned seed = 1);
[[nodiscard]] CChannels makeSilence(int channelCount, std::size_t frameCount);
[[nodiscard]] std::size_t frameCountOf(const CChannels& sound);

[[nodiscard]] double peakOf(const CChannels& sound, std::size_t from = 0);
[[nodiscard]] bool isFinite(const CChannels& sound);

/// Where and by how much two sounds differ most, over the frames that both have.
struct CSoundGap {
    double size = 0.0; // NaN where either has one
    std::size_t frame = 0;
    std::size_t channel = 0;
};
[[nodiscard]] CSoundGap findLargestGap(const CChannels& a, const CChannels& b,
                                       std::size_t from = 0);
/// The first frame at which they differ by more than `size`; their length when there is none.
[[nodiscard]] std::size_t findFirstGap(const CChannels& a, const CChannels& b, double size);

/// How late `out` is behind `in`: the lag of the largest magnitude of their normalized
/// cross-correlation, over lags of 0 to `maxLag`.
struct CLag {
    int samples = 0;
    double correlation = 0.0; // -1 to 1
};
[[nodiscard]] CLag findLag(const std::vector<double>& in, const std::vector<double>& out,
                           int maxLag);

} // namespace tsm
