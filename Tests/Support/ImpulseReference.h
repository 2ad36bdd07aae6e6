#pragma once

#include "Other/CFileSet.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <numbers>
#include <sndfile.h>
#include <string>
#include <vector>

#include <gtest/gtest.h>

namespace tsm::test {

/// The channels of a sound, side by side.
struct CSoundChannels {
    double rate = 0.0;
    std::vector<std::vector<double>> channels;
};

/// What libsndfile reads of a file.
inline CSoundChannels readChannels(const std::string& path)
{
    SF_INFO info{};
    SNDFILE* file = sf_open(path.c_str(), SFM_READ, &info);
    if (!file) {
        ADD_FAILURE() << path << ": " << sf_strerror(nullptr);
        return {};
    }
    const auto count = static_cast<std::size_t>(info.channels);
    std::vector<double> frames(static_cast<std::size_t>(info.frames) * count);
    EXPECT_EQ(sf_readf_double(file, frames.data(), info.frames), info.frames);
    sf_close(file);
    CSoundChannels sound{static_cast<double>(info.samplerate), {}};
    for (std::size_t c = 0; c < count; ++c) {
        std::vector<double>& channel = sound.channels.emplace_back();
        for (std::size_t i = c; i < frames.size(); i += count)
            channel.push_back(frames[i]);
    }
    return sound;
}

/// An impulse of the embedded bank, as libsndfile reads it; the resources are there.
inline CSoundChannels readBankImpulse(std::uint32_t id)
{
    CFileSet bank;
    CError* error = bank.loadResource("Impulses/ReelpathImpulses.fs");
    const CFileSet::CItem* item = error ? nullptr : bank.find(id);
    if (handleError(error) || !item) {
        ADD_FAILURE() << "no impulse " << id;
        return {};
    }
    const std::string path = testing::TempDir() + "tsm-impulse-" +
                             std::to_string(reinterpret_cast<std::uintptr_t>(&bank)) + ".wav";
    std::FILE* file = std::fopen(path.c_str(), "wb");
    std::fwrite(item->getData(), 1, static_cast<std::size_t>(item->getSize()), file);
    std::fclose(file);
    CSoundChannels sound = readChannels(path);
    std::remove(path.c_str());
    return sound;
}

/// The integers of RANMAR's lagged Fibonacci sequence over 24 bits, less those of its arithmetic
/// sequence, so that nothing is rounded.
class CIntegerRanmar {
public:
    CIntegerRanmar()
    {
        int i = 2;
        int j = 2;
        int k = 1;
        int l = 0;
        for (int n = 0; n < 97; ++n) {
            long value = 0;
            for (int bit = 0; bit < 24; ++bit) {
                const int next = (((i * j) % 179) * k) % 179;
                i = j;
                j = k;
                k = next;
                l = (53 * l + 1) % 169;
                value = 2 * value + ((l * next) % 64 >= 32 ? 1 : 0);
            }
            sequence.insert(sequence.begin(), value); // used last one first
        }
    }
    /// In units of 2^-24.
    long next()
    {
        constexpr long kRange = 1 << 24;
        const std::size_t at = sequence.size();
        sequence.push_back((sequence[at - 97] - sequence[at - 33] + kRange) % kRange);
        carry = carry >= 7654321 ? carry - 7654321 : carry - 7654321 + 16777213;
        return (sequence[at] - carry + kRange) % kRange;
    }

private:
    std::vector<long> sequence;
    long carry = 362436;
};

/// The gain that keeps the level of low-passed noise through impulses, by direct sums.
inline double referenceGain(const std::vector<std::vector<double>>& channels, double rate)
{
    constexpr std::size_t kCount = 4096;
    CIntegerRanmar random;
    const double w = std::min(2.0 * std::numbers::pi * 1000.0 / rate, std::numbers::pi);
    // The pole of a smoother at -3 dB, from |1 - p|^2 / |1 - p e^-jw|^2 = 1 / 2.
    const double pole = 2.0 - std::cos(w) - std::sqrt(std::pow(2.0 - std::cos(w), 2.0) - 1.0);
    std::vector<double> signal;
    double state = 0.0;
    double squareIn = 0.0;
    for (std::size_t i = 0; i < kCount; ++i) {
        const auto first = static_cast<double>(random.next());
        const auto second = static_cast<double>(random.next());
        state = pole * state + (1.0 - pole) * ((first + second) / 16777215.0 - 1.0);
        signal.push_back(state);
        squareIn += state * state;
    }
    double total = 0.0;
    for (const std::vector<double>& taps : channels) {
        std::vector<double> folded(kCount);
        for (std::size_t i = 0; i < taps.size(); ++i)
            folded[i % kCount] += taps[i];
        std::vector<double> out(2 * kCount);
        for (std::size_t i = 0; i < kCount; ++i)
            for (std::size_t k = 0; k < kCount; ++k)
                out[i + k] += signal[i] * folded[k];
        double squareOut = 0.0;
        for (const double sample : out)
            squareOut += sample * sample;
        total += squareIn / squareOut;
    }
    const double db = 10.0 * std::log10(total / static_cast<double>(channels.size()));
    return std::pow(10.0, std::clamp(db, -30.0, 30.0) / 20.0);
}

} // namespace tsm::test
