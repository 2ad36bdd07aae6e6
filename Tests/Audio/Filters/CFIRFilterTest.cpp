#include "Audio/Filters/CFIRFilter.h"

#include <algorithm>
#include <random>
#include <vector>

#include <gtest/gtest.h>

namespace tsm {
namespace {

std::vector<double> noise(int count, unsigned seed)
{
    std::mt19937 random(seed);
    std::uniform_real_distribution<double> any(-1.0, 1.0);
    std::vector<double> samples(static_cast<std::size_t>(count));
    for (double& sample : samples)
        sample = any(random);
    return samples;
}

/// The plain sum, late by `latency`, for an input that has stood at its first sample for ever.
std::vector<double> convolve(const std::vector<double>& taps, const std::vector<double>& in,
                             int latency)
{
    std::vector<double> out(in.size());
    for (std::size_t i = 0; i < in.size(); ++i)
        for (std::size_t tap = 0; tap < taps.size(); ++tap) {
            const auto from =
                static_cast<std::ptrdiff_t>(i) - latency - static_cast<std::ptrdiff_t>(tap);
            out[i] += taps[tap] * in[static_cast<std::size_t>(std::max<std::ptrdiff_t>(from, 0))];
        }
    return out;
}

void expectConvolved(CFIRFilter& filter, const std::vector<double>& taps, int blockSize)
{
    const std::vector<double> in = noise(1500, 2);
    const std::vector<double> expected = convolve(taps, in, filter.getLatency());
    std::vector<double> out(in.size());
    for (std::size_t at = 0; at < in.size(); at += static_cast<std::size_t>(blockSize))
        filter.process(in.data() + at, out.data() + at,
                       std::min(blockSize, static_cast<int>(in.size() - at)));
    for (std::size_t i = 0; i < in.size(); ++i)
        ASSERT_NEAR(out[i], expected[i], 1e-12) << i; // a few hundred taps of 1.0 at most
}

TEST(AFilterOfTaps, IsThePlainSumWithAndWithoutLatency)
{
    for (const int tapCount : {1, 2, 63, 64, 65, 127, 128, 129, 661}) {
        const std::vector<double> taps = noise(tapCount, 1);
        for (const int blockSize : {1, 50, 512}) {
            SCOPED_TRACE(testing::Message() << tapCount << " taps, blocks of " << blockSize);
            CFIRFilter late(taps.data(), tapCount, 32);
            EXPECT_EQ(late.getLatency(), 32);
            expectConvolved(late, taps, blockSize);
            CFIRFilter direct(taps.data(), tapCount);
            EXPECT_EQ(direct.getLatency(), 0);
            expectConvolved(direct, taps, blockSize);
            direct.reset();
            expectConvolved(direct, taps, blockSize);
        }
    }
}

} // namespace
} // namespace tsm
