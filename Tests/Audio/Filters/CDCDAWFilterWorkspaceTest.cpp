#include "Audio/Filters/CDCDAWFilterWorkspace.h"

#include <gtest/gtest.h>

#include <cmath>
#include <complex>
#include <numbers>
#include <vector>

namespace tsm {
namespace {

constexpr double kSteep[] = {0.017201989192148732, 0.14343641647193758, 0.34790076963109384,
                             0.57735026918962573,  0.81051797007260162, 0.066817741883400714,
                             0.23966776783586008,  0.46181636331192544, 0.69311655842787734,
                             0.9338597752912563};
constexpr double kSoft[] = {0.019747343511862459, 0.16576443149605732,  0.41052450108348615,
                            0.7160529805331276,   0.076874187035829891, 0.27917385214994933,
                            0.55597305789318552,  0.89725463537322292};

/// The transfer function: half of A(z^2) + z^-1 B(z^2), of allpass sections in z^-2.
std::complex<double> response(const double* branches, int sections, double frequency)
{
    const std::complex<double> z1 = std::polar(1.0, -2.0 * std::numbers::pi * frequency);
    const std::complex<double> z2 = z1 * z1;
    std::complex<double> a = 1.0;
    std::complex<double> b = z1;
    for (int i = 0; i < sections; ++i) {
        a *= (branches[i] + z2) / (1.0 + branches[i] * z2);
        b *= (branches[sections + i] + z2) / (1.0 + branches[sections + i] * z2);
    }
    return 0.5 * (a + b);
}

TEST(AHalfBandFilter, HasItsTransferFunction)
{
    constexpr int kCount = 4096; // the impulse response has faded by then
    struct CRow {
        const double* branches;
        int sections;
    };
    for (const CRow& row : {CRow{kSteep, 5}, CRow{kSoft, 4}}) {
        std::vector<double> samples(kCount);
        samples[0] = 1.0;
        CDCDAWFilterWorkspace filter(row.branches, row.sections);
        filter.process(samples.data(), samples.data(), kCount);
        for (const double frequency : {0.0, 0.1, 0.2, 0.24, 0.25, 0.26, 0.3, 0.49, 0.5}) {
            std::complex<double> sum = 0.0;
            for (int i = 0; i < kCount; ++i)
                sum += samples[static_cast<std::size_t>(i)] *
                       std::polar(1.0, -2.0 * std::numbers::pi * frequency * i);
            EXPECT_LT(std::abs(sum - response(row.branches, row.sections, frequency)), 1e-12)
                << frequency;
        }
    }
}

TEST(AHalfBandFilter, StopsAsItsNameTells)
{
    // -159 dB from 0.083 of the rate beyond the half band on.
    for (double frequency = 0.3331; frequency < 0.5; frequency += 0.001)
        EXPECT_LT(20.0 * std::log10(std::abs(response(kSteep, 5, frequency))), -158.0);
}

TEST(AHalfBandFilter, KeepsAConstantAndItsState)
{
    std::vector<double> constant(20000, 0.7);
    CDCDAWFilterWorkspace filter(kSteep, 5);
    std::vector<double> whole(constant.size());
    filter.process(constant.data(), whole.data(), 20000);
    EXPECT_NEAR(whole.back(), 0.7, 1e-14);

    filter.reset();
    std::vector<double> pieces(constant.size());
    for (int done = 0, step = 1; done < 20000; done += step, step = step % 7 + 1) {
        step = std::min(step, 20000 - done);
        filter.process(constant.data() + done, pieces.data() + done, step);
    }
    EXPECT_EQ(pieces, whole);
}

} // namespace
} // namespace tsm
