#pragma once

#include "rsk/CDSPResampler.h"

#include <algorithm>
#include <cmath>
#include <numbers>
#include <vector>

namespace tsm::rsk {

/// The first `outCount` samples that the chain makes of `input` and zeros behind it.
inline std::vector<double> resample(CDSPResampler& chain, const std::vector<double>& input,
                                    int outCount, int chunk)
{
    std::vector<double> out;
    std::vector<double> piece(static_cast<std::size_t>(chunk));
    chain.clear();
    for (std::size_t at = 0; static_cast<int>(out.size()) < outCount;
         at += static_cast<std::size_t>(chunk)) {
        for (std::size_t i = 0; i < piece.size(); ++i)
            piece[i] = at + i < input.size() ? input[at + i] : 0.0;
        const double* ready = nullptr;
        const int count = chain.process(piece.data(), chunk, ready);
        out.insert(out.end(), ready, ready + count);
    }
    out.resize(static_cast<std::size_t>(outCount));
    return out;
}

inline std::vector<double> tone(double frequency, double rate, int count)
{
    std::vector<double> samples(static_cast<std::size_t>(count));
    for (int i = 0; i < count; ++i)
        samples[static_cast<std::size_t>(i)] =
            std::sin(2.0 * std::numbers::pi * std::fmod(frequency * i / rate, 1.0));
    return samples;
}

/// The level of the middle half of the samples, 0 dB for a tone of level 1.0.
inline double levelDb(const std::vector<double>& samples)
{
    const std::size_t edge = samples.size() / 4;
    double sum = 0.0;
    for (std::size_t i = edge; i < samples.size() - edge; ++i)
        sum += samples[i] * samples[i];
    const double power = 2.0 * sum / static_cast<double>(samples.size() - 2 * edge);
    return 10.0 * std::log10(std::max(power, 1e-40));
}

/// What is found of a tone of level 1.0 and phase 0 in samples that should be it.
struct CToneProbe {
    double gain;
    double delaySamples; // 0.0 when it is where it belongs
    double residueDb;    // root mean square of all else, over that of the tone of level 1.0
};

/// Fits a sine and a cosine of the frequency by least squares to the middle of the samples.
inline CToneProbe probeTone(const std::vector<double>& samples, double frequency, double rate)
{
    const std::size_t edge = samples.size() / 4;
    double ss = 0.0;
    double sc = 0.0;
    double cc = 0.0;
    double sx = 0.0;
    double cx = 0.0;
    const auto angle = [&](std::size_t i) {
        return 2.0 * std::numbers::pi * std::fmod(frequency * static_cast<double>(i) / rate, 1.0);
    };
    for (std::size_t i = edge; i < samples.size() - edge; ++i) {
        const double s = std::sin(angle(i));
        const double c = std::cos(angle(i));
        ss += s * s;
        sc += s * c;
        cc += c * c;
        sx += s * samples[i];
        cx += c * samples[i];
    }
    const double determinant = ss * cc - sc * sc;
    const double a = (sx * cc - cx * sc) / determinant;
    const double b = (cx * ss - sx * sc) / determinant;
    std::vector<double> rest = samples;
    for (std::size_t i = 0; i < samples.size(); ++i)
        rest[i] -= a * std::sin(angle(i)) + b * std::cos(angle(i));
    return {std::hypot(a, b), -std::atan2(b, a) / (2.0 * std::numbers::pi * frequency) * rate,
            levelDb(rest)};
}

} // namespace tsm::rsk
