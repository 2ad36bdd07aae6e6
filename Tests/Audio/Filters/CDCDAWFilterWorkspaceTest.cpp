#include "Audio/Filters/CDCDAWFilterWorkspace.h"

#include <gtest/gtest.h>

#include <cmath>
#include <complex>
#include <numbers>
#include <random>
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

/// The recurrence of each section sample by sample, with rings of the last four samples; rounded as
/// it is written down, or as the fused kernels promise.
std::vector<double> runPlainly(const double* branches, int sections, const std::vector<double>& in,
                               bool isFused)
{
    std::vector<double> out;
    double rings[2][8][2][4] = {}; // branch, section, input and output
    double late = 0.0;
    int index = 3;
    for (const double sample : in) {
        double ends[2];
        for (int branch = 0; branch < 2; ++branch) {
            double u = sample;
            for (int s = 0; s < sections; ++s) {
                auto& ring = rings[branch][s];
                const int before = (index + 2) & 3;
                const double c = branches[branch * sections + s];
                const double y =
                    isFused ? std::fma(-c, ring[1][before], std::fma(c, u, ring[0][before]))
                            : c * (u - ring[1][before]) + ring[0][before];
                ring[0][index] = u;
                ring[1][index] = y;
                u = y;
            }
            ends[branch] = u;
        }
        out.push_back(0.5 * (ends[0] + late));
        late = ends[1];
        index = (index + 3) & 3;
    }
    return out;
}

std::vector<double> noise(std::size_t count, unsigned seed)
{
    std::mt19937 random(seed);
    std::uniform_real_distribution<double> uniform(-1.0, 1.0);
    std::vector<double> samples(count);
    for (double& sample : samples)
        sample = uniform(random);
    return samples;
}

TEST(AHalfBandFilter, GivesTheBitsOfItsRecurrenceInAnyCompany)
{
    // Blocks of even and odd lengths; those of the middle have zeros in between, as behind an
    // interpolator, which a filter may make use of as long as its past has them too.
    constexpr std::size_t kCount = 1200;
    for (const bool isSparseFromTheStart : {true, false})
        for (const int channels : {1, 2, 3, 5}) {
            SCOPED_TRACE(channels);
            std::vector<std::vector<double>> in;
            std::vector<std::vector<double>> out;
            std::vector<CDCDAWFilterWorkspace> filters;
            for (int i = 0; i < channels; ++i) {
                in.push_back(noise(kCount, static_cast<unsigned>(i)));
                for (std::size_t k = isSparseFromTheStart ? 1 : 401; k < 800; k += 2)
                    in.back()[k] = 0.0;
                out.emplace_back(kCount);
                filters.emplace_back(i == 4 ? kSoft : kSteep, i == 4 ? 4 : 5);
            }
            constexpr std::size_t kSizes[] = {400, 64, 2, 334, 100, 7, 293};
            std::size_t done = 0;
            for (const std::size_t size : kSizes) {
                std::vector<CDCDAWFilterWorkspace::CLane> lanes;
                const bool isSparse = done < 800 && (isSparseFromTheStart || done >= 400);
                for (std::size_t i = 0; i < in.size(); ++i)
                    lanes.push_back(
                        {in[i].data() + done, out[i].data() + done, &filters[i], isSparse});
                CDCDAWFilterWorkspace::process(lanes.data(), channels, static_cast<int>(size));
                done += size;
            }
            ASSERT_EQ(done, kCount);
            for (std::size_t i = 0; i < in.size(); ++i)
                EXPECT_EQ(out[i], runPlainly(i == 4 ? kSoft : kSteep, i == 4 ? 4 : 5, in[i],
                                             halfBandKernels().isFused))
                    << i;
        }
}

TEST(AHalfBandFilter, DiffersByRoundingFromBuildToBuild)
{
    double coefficients[8][2];
    for (int s = 0; s < 5; ++s) {
        coefficients[s][0] = kSteep[s];
        coefficients[s][1] = kSteep[5 + s];
    }
    const std::vector<double> in[] = {noise(5000, 1), noise(5000, 2)};
    for (const CHalfBandKernels* build : {&halfBandKernels(), &genericHalfBandKernels()}) {
        CHalfBandState states[2];
        CHalfBandLane lanes[2];
        std::vector<double> out[2];
        for (int i = 0; i < 2; ++i) {
            out[i].resize(in[i].size());
            lanes[i] = {in[i].data(), out[i].data(), &states[i]};
        }
        build->runTwo[4](coefficients, lanes, 5000, false);
        for (int i = 0; i < 2; ++i) {
            EXPECT_EQ(out[i], runPlainly(kSteep, 5, in[i], build->isFused));
            const std::vector<double> written = runPlainly(kSteep, 5, in[i], false);
            for (std::size_t k = 0; k < written.size(); ++k)
                ASSERT_NEAR(out[i][k], written[k], 4e-15) << k;
        }
    }
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
