#include "rsk/CDSPRealFFT.h"
#include "rsk/CDSPRealFFTPool.h"

#include "Tests/rsk/CDSPBuildTest.h"

#include <fftw3.h>
#include <gtest/gtest.h>

#include <cmath>
#include <random>
#include <vector>

namespace tsm::rsk {
namespace {

std::vector<double> noise(int count, unsigned seed)
{
    std::mt19937 random(seed);
    std::uniform_real_distribution<double> uniform(-1.0, 1.0);
    std::vector<double> samples(static_cast<std::size_t>(count));
    for (double& sample : samples)
        sample = uniform(random);
    return samples;
}

/// The packed spectrum by FFTW in long double, so that its own error doesn't count.
std::vector<long double> referenceSpectrum(const std::vector<double>& samples)
{
    const int count = static_cast<int>(samples.size());
    std::vector<long double> in(samples.begin(), samples.end());
    std::vector<long double> bins(samples.size() + 2);
    fftwl_plan plan = fftwl_plan_dft_r2c_1d(
        count, in.data(), reinterpret_cast<fftwl_complex*>(bins.data()), FFTW_ESTIMATE);
    fftwl_execute(plan);
    fftwl_destroy_plan(plan);
    bins[1] = bins[samples.size()];
    bins.resize(samples.size());
    return bins;
}

/// Root mean square of the error over that of the expected values.
template <class T>
double relativeError(const std::vector<double>& values, const std::vector<T>& expected,
                     double scale = 1.0)
{
    long double error = 0.0;
    long double power = 0.0;
    for (std::size_t i = 0; i < values.size(); ++i) {
        const long double difference = values[i] - scale * static_cast<long double>(expected[i]);
        error += difference * difference;
        power += scale * scale * static_cast<long double>(expected[i]) * expected[i];
    }
    return static_cast<double>(std::sqrt(error / power));
}

class ARealFFT : public CDSPBuildTest {};

// Rounding grows with the root of the count of passes; half a unit (1.1e-16) a pass stays below.
constexpr double kTolerance = 1e-15;

TEST_P(ARealFFT, MatchesFFTWInAllOrders)
{
    for (int order = kMinFFTOrder; order <= 18; ++order) {
        SCOPED_TRACE(order);
        const CDSPRealFFT transform(order, *kernels);
        const std::vector<double> samples = noise(transform.getCount(), 7);
        std::vector<double> work(static_cast<std::size_t>(transform.getWorkCount()));
        std::vector<double> spectrum(samples.size());
        transform.forward(samples.data(), spectrum.data(), work.data());
        EXPECT_LT(relativeError(spectrum, referenceSpectrum(samples)), kTolerance);
    }
}

TEST_P(ARealFFT, ComesBackTimesTheCount)
{
    for (int order = kMinFFTOrder; order <= 18; ++order) {
        SCOPED_TRACE(order);
        const CDSPRealFFT transform(order, *kernels);
        const std::vector<double> samples = noise(transform.getCount(), 8);
        std::vector<double> work(static_cast<std::size_t>(transform.getWorkCount()));
        std::vector<double> frame = samples;
        transform.forward(frame.data(), frame.data(), work.data());
        std::vector<double> back(samples.size());
        transform.inverse(frame.data(), back.data(), work.data());
        EXPECT_LT(relativeError(back, samples, transform.getCount()), kTolerance);
        transform.inverse(frame.data(), frame.data(), work.data());
        EXPECT_EQ(frame, back) << "in place";
    }
}

TEST_P(ARealFFT, HasTheSameBinsInBothLayouts)
{
    for (int order = kMinFFTOrder; order <= 14; ++order) {
        SCOPED_TRACE(order);
        const CDSPRealFFT transform(order, *kernels);
        const std::vector<double> samples = noise(transform.getCount(), 9);
        std::vector<double> work(static_cast<std::size_t>(transform.getWorkCount()));
        std::vector<double> packed(samples.size());
        std::vector<double> split(samples.size());
        transform.forward(samples.data(), packed.data(), work.data());
        transform.forwardSplit(samples.data(), split.data(), work.data());
        std::vector<double> joined;
        for (std::size_t k = 0; k < split.size() / 2; ++k) {
            joined.push_back(split[k]);
            joined.push_back(split[split.size() / 2 + k]);
        }
        EXPECT_EQ(joined, packed);
        transform.inverseSplit(split.data(), split.data(), work.data());
        EXPECT_LT(relativeError(split, samples, transform.getCount()), kTolerance);
    }
}

TEST_P(ARealFFT, MultipliesSpectraAsCircularConvolution)
{
    constexpr int kOrder = 6;
    constexpr int kCount = 1 << kOrder;
    const CDSPRealFFT transform(kOrder, *kernels);
    const std::vector<double> a = noise(kCount, 1);
    const std::vector<double> b = noise(kCount, 2);
    std::vector<double> expected(kCount);
    for (int i = 0; i < kCount; ++i)
        for (int k = 0; k < kCount; ++k)
            expected[static_cast<std::size_t>((i + k) % kCount)] +=
                a[static_cast<std::size_t>(i)] * b[static_cast<std::size_t>(k)];

    std::vector<double> work(static_cast<std::size_t>(transform.getWorkCount()));
    std::vector<double> product = a;
    std::vector<double> other = b;
    transform.forward(product.data(), product.data(), work.data());
    transform.forward(other.data(), other.data(), work.data());
    kernels->multiplySpectra(product.data(), other.data(), product.data(), kCount);
    transform.inverse(product.data(), product.data(), work.data());
    EXPECT_LT(relativeError(product, expected, kCount), kTolerance);
}

TSM_FOR_ALL_DSP_BUILDS(ARealFFT);

TEST(TheFFTPool, HandsOutOneTransformAnOrder)
{
    const CDSPRealFFT& transform = CDSPRealFFTPool::get(9);
    EXPECT_EQ(transform.getCount(), 512);
    EXPECT_EQ(&CDSPRealFFTPool::get(9), &transform);
    EXPECT_NE(&CDSPRealFFTPool::get(10), &transform);
}

} // namespace
} // namespace tsm::rsk
