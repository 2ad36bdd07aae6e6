#include "Tools/analyze/CPowerSpectrum.h"

#include <algorithm>
#include <cassert>
#include <cmath>
#include <complex>
#include <numbers>

#include <kissfft.hh>

namespace tsm {

namespace {

std::vector<double> makeWindow(std::size_t size, ESpectrumWindow kind)
{
    std::vector<double> window(size);
    const double step = 2.0 * std::numbers::pi / static_cast<double>(size);
    for (std::size_t i = 0; i < size; ++i) {
        const double x = step * static_cast<double>(i);
        window[i] = kind == ESpectrumWindow::Hann
                        ? 0.5 - 0.5 * std::cos(x)
                        : 0.35875 - 0.48829 * std::cos(x) + 0.14128 * std::cos(2.0 * x) -
                              0.01168 * std::cos(3.0 * x);
    }
    return window;
}

/// Adds up the power spectra of segments of one size.
class CSegmentSum {
public:
    CSegmentSum(std::size_t segmentSize, ESpectrumWindow kind)
        : size(segmentSize), window(makeWindow(size, kind)), transform(size / 2, false),
          segment(size), spectrum(size / 2), sums(size / 2 + 1)
    {
    }

    void add(const std::vector<double>& samples, std::size_t first)
    {
        for (std::size_t i = 0; i < size; ++i)
            segment[i] = first + i < samples.size() ? window[i] * samples[first + i] : 0.0;
        transform.transform_real(segment.data(), spectrum.data());
        // The library packs the highest bin, which is real, into the lowest one's imaginary part.
        sums.front() += spectrum[0].real() * spectrum[0].real();
        sums.back() += spectrum[0].imag() * spectrum[0].imag();
        for (std::size_t k = 1; k < size / 2; ++k)
            sums[k] += 2.0 * std::norm(spectrum[k]); // the negative frequency's half too
        ++count;
    }

    [[nodiscard]] std::vector<double> mean() const
    {
        double windowPower = 0.0;
        for (const double value : window)
            windowPower += value * value;
        const double scale =
            1.0 / (windowPower * static_cast<double>(size) * static_cast<double>(count));
        std::vector<double> bins(sums);
        for (double& bin : bins)
            bin *= scale;
        return bins;
    }

private:
    std::size_t size;
    std::vector<double> window;
    kissfft<double> transform;
    std::vector<double> segment;
    std::vector<std::complex<double>> spectrum;
    std::vector<double> sums;
    std::size_t count = 0;
};

} // namespace

CPowerSpectrum::CPowerSpectrum(const CSoundBuffer& sound, std::size_t size, ESpectrumWindow window)
    : binHz(static_cast<double>(sound.rate) / static_cast<double>(size))
{
    assert(size >= 4 && size % 2 == 0 && !sound.channels.empty());
    CSegmentSum sum(size, window);
    for (const std::vector<double>& channel : sound.channels) {
        std::size_t first = 0;
        do {
            sum.add(channel, first);
            first += size / 2;
        } while (first + size <= channel.size());
    }
    bins = sum.mean();
}

double CPowerSpectrum::powerBetween(double lowHz, double highHz) const
{
    const double low = std::max(lowHz / binHz + 0.5, 0.0);
    const double high = std::min(highHz / binHz + 0.5, static_cast<double>(bins.size()));
    double power = 0.0;
    for (double at = low; at < high;) {
        const double bin = std::floor(at);
        const double end = std::min(bin + 1.0, high);
        power += bins[static_cast<std::size_t>(bin)] * (end - at);
        at = end;
    }
    return power;
}

std::size_t CPowerSpectrum::sizeUpTo(double wanted)
{
    constexpr std::size_t kSmallest = 4;
    constexpr std::size_t kLargest = std::size_t{1} << 20;
    std::size_t size = kSmallest;
    while (size < kLargest && static_cast<double>(2 * size) <= wanted)
        size *= 2;
    return size;
}

} // namespace tsm
