#include "Tests/rsk/CDSPBuildTest.h"

#include <cmath>
#include <vector>

namespace tsm::rsk {
namespace {

/// Any smooth samples will do; a margin on both sides is for the vectors.
std::vector<double> samples(int count)
{
    std::vector<double> made(static_cast<std::size_t>(count));
    for (int i = 0; i < count; ++i)
        made[static_cast<std::size_t>(i)] = std::sin(0.7 * i + 0.01 * i * i);
    return made;
}

constexpr int kMargin = 64;
constexpr double kTolerance = 1e-14;

class AResampleKernel : public CDSPBuildTest {
protected:
    const std::vector<double> in = samples(1000);
    std::vector<double> out = std::vector<double>(500);
};

TEST_P(AResampleKernel, DoublesTheRate)
{
    const double taps[] = {0.6, -0.2, 0.07, 0.03};
    const double* x = in.data() + kMargin;
    kernels->upsampleHalfBand(x, out.data(), 101, taps, 4);
    for (int i = 0; i < 101; ++i) {
        double expected = 0.0;
        for (int p = 0; p < 4; ++p)
            expected += taps[p] * (x[i - p] + x[i + 1 + p]);
        EXPECT_EQ(out[static_cast<std::size_t>(2 * i)], x[i]);
        EXPECT_NEAR(out[static_cast<std::size_t>(2 * i + 1)], expected, kTolerance);
    }
}

TEST_P(AResampleKernel, HalvesTheRate)
{
    const double taps[] = {0.3, -0.1, 0.04};
    const double* even = in.data() + kMargin;
    const double* odd = in.data() + 400;
    kernels->downsampleHalfBand(even, odd, out.data(), 101, taps, 3);
    for (int i = 0; i < 101; ++i) {
        double expected = 0.5 * even[i];
        for (int p = 0; p < 3; ++p)
            expected += taps[p] * (odd[i - 1 - p] + odd[i + p]);
        EXPECT_NEAR(out[static_cast<std::size_t>(i)], expected, kTolerance);
    }
}

TEST_P(AResampleKernel, ReadsBetweenSamples)
{
    constexpr int kStride = 24;
    const std::vector<double> bank = samples(5 * 3 * kStride);
    std::vector<int> places(64);
    std::vector<int> rows(64);
    std::vector<double> beyond(64);
    for (int i = 0; i < 50; ++i) {
        const auto at = static_cast<std::size_t>(i);
        places[at] = 7 * i;
        rows[at] = i * 3 % 5 * 3 * kStride;
        beyond[at] = 0.02 * i;
    }
    std::vector<double> curved(500);
    kernels->interpolate(in.data(), places.data(), rows.data(), bank.data(), kStride, out.data(),
                         50);
    kernels->interpolateSpline(in.data(), places.data(), rows.data(), beyond.data(), bank.data(),
                               kStride, curved.data(), 50);
    for (std::size_t i = 0; i < 50; ++i) {
        const double* x = in.data() + places[i];
        const double* row = bank.data() + rows[i];
        const double t = beyond[i];
        double straight = 0.0;
        double spline = 0.0;
        for (int tap = 0; tap < kStride; ++tap) {
            straight += x[tap] * row[tap];
            spline += x[tap] * (row[tap] + t * row[kStride + tap] + t * t * row[2 * kStride + tap]);
        }
        EXPECT_NEAR(out[i], straight, 10 * kTolerance);
        EXPECT_NEAR(curved[i], spline, 10 * kTolerance);
    }
}

TSM_FOR_ALL_DSP_BUILDS(AResampleKernel);

} // namespace
} // namespace tsm::rsk
