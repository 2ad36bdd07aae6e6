#include "rsk/CDSPResampler.h"

#include "Tests/Support/HeapAllocations.h"
#include "Tests/rsk/CToneProbe.h"

#include <gtest/gtest.h>
#include <soxr.h>

#include <random>

namespace tsm::rsk {
namespace {

constexpr int kMaxIn = 512;
constexpr double kTransitionPct = 5.0;
constexpr double kAttenuationDb = 136.45;

struct CRates {
    double source;
    double dest;

    [[nodiscard]] double lowNyquist() const { return 0.5 * std::min(source, dest); }
};

std::vector<CRates> ratesInUse()
{
    std::vector<CRates> rates;
    for (const double other : {22050.0, 32000.0, 44104.0, 48000.0, 88200.0, 96000.0, 176400.0,
                               192000.0, 352800.0, 384000.0}) {
        rates.push_back({44100.0, other});
        rates.push_back({other, 44100.0});
    }
    return rates;
}

CDSPResampler makeChain(const CRates& rates)
{
    return {rates.source, rates.dest, kMaxIn, kTransitionPct, kAttenuationDb, EDSPPhase::Linear};
}

class CResampling : public testing::TestWithParam<CRates> {
protected:
    /// Sends a tone through: 12000 samples at the lower rate.
    std::vector<double> send(double frequency)
    {
        const CRates rates = GetParam();
        const double seconds = 12000.0 / std::min(rates.source, rates.dest);
        CDSPResampler chain = makeChain(rates);
        const std::vector<double> in =
            tone(frequency, rates.source, static_cast<int>(rates.source * seconds));
        return resample(chain, in, static_cast<int>(rates.dest * seconds), kMaxIn);
    }
};

TEST_P(CResampling, KeepsThePassBandAndItsTiming)
{
    for (const double part : {0.013, 0.21, 0.37, 0.5, 0.71, 0.83, 0.925, 0.9499}) {
        SCOPED_TRACE(part);
        const double frequency = part * GetParam().lowNyquist();
        const CToneProbe probe = probeTone(send(frequency), frequency, GetParam().dest);
        // Pass and stop band of a Kaiser window have the same ripple, here 1.5e-7 a stage.
        EXPECT_NEAR(probe.gain, 1.0, 4e-7);
        EXPECT_NEAR(probe.delaySamples, 0.0, 1e-3);
        EXPECT_LT(probe.residueDb, -kAttenuationDb) << "images";
    }
}

TEST_P(CResampling, StopsWhatWouldFoldBack)
{
    const CRates rates = GetParam();
    const double low = rates.lowNyquist();
    const double high = 0.5 * rates.source;
    for (const double part : {0.0001, 0.01, 0.03, 0.1, 0.3, 0.5, 0.77, 0.99}) {
        const double frequency = low + part * (high - low);
        if (frequency >= high)
            continue; // going up, nothing can
        SCOPED_TRACE(frequency);
        EXPECT_LT(levelDb(send(frequency)), -kAttenuationDb);
    }
}

TEST_P(CResampling, GivesTheSameForAnyChunksAndAfterClear)
{
    const CRates rates = GetParam();
    CDSPResampler chain = makeChain(rates);
    const std::vector<double> in = tone(997.0, rates.source, 3000);
    const int count = static_cast<int>(3000 * rates.dest / rates.source);
    const std::vector<double> whole = resample(chain, in, count, kMaxIn);
    for (const int chunk : {1, 37, 511})
        EXPECT_EQ(resample(chain, in, count, chunk), whole) << chunk;
}

INSTANTIATE_TEST_SUITE_P(Rates, CResampling, testing::ValuesIn(ratesInUse()),
                         [](const auto& rates) {
                             return std::to_string(static_cast<int>(rates.param.source)) + "To" +
                                    std::to_string(static_cast<int>(rates.param.dest));
                         });

TEST(AResampler, BuildsTheShortestChain)
{
    struct CRow {
        CRates rates;
        int stageCount;
    };
    for (const CRow& row :
         {CRow{{48000, 48000}, 0}, CRow{{44100, 22050}, 1}, CRow{{48000, 32000}, 1},
          CRow{{44100, 88200}, 1}, CRow{{44100, 352800}, 3}, CRow{{352800, 44100}, 3},
          CRow{{44100, 48000}, 2}, CRow{{192000, 44100}, 3}, CRow{{44100, 384000}, 3},
          CRow{{44100, 768000}, 4}})
        EXPECT_EQ(makeChain(row.rates).getStageCount(), row.stageCount)
            << row.rates.source << " to " << row.rates.dest;
}

TEST(AResampler, HandlesExtremeRatios)
{
    for (const CRates rates : {CRates{8000, 384000}, CRates{384000, 8000}, CRates{1000, 511000},
                               CRates{192000, 400.5}, CRates{11025.5, 96000}}) {
        SCOPED_TRACE(rates.source);
        ASSERT_TRUE(CDSPResampler::isSupported(rates.source, rates.dest));
        CDSPResampler chain = makeChain(rates);
        const double frequency = 0.3 * rates.lowNyquist();
        const double seconds = 4000.0 / std::min(rates.source, rates.dest);
        const std::vector<double> in =
            tone(frequency, rates.source, static_cast<int>(rates.source * seconds));
        const CToneProbe probe =
            probeTone(resample(chain, in, static_cast<int>(rates.dest * seconds), 100), frequency,
                      rates.dest);
        EXPECT_NEAR(probe.gain, 1.0, 1e-6);
        EXPECT_NEAR(probe.delaySamples, 0.0, 1e-3);
        EXPECT_LT(probe.residueDb, -kAttenuationDb);
    }
    EXPECT_FALSE(CDSPResampler::isSupported(1.0, 192000.0));
    EXPECT_FALSE(CDSPResampler::isSupported(0.0, 44100.0));
}

TEST(AResampler, AllocatesNothingWhileItRuns)
{
    CDSPResampler chain = makeChain({44100, 48000});
    const std::vector<double> in = tone(997.0, 44100, kMaxIn);
    const int before = countHeapAllocations();
    const double* out = nullptr;
    for (int i = 0; i < 20; ++i)
        chain.process(in.data(), kMaxIn, out);
    EXPECT_EQ(countHeapAllocations(), before);
}

/// An independent converter at its best setting (SOXR_VHQ), whose pass band ends at 0.913.
std::vector<double> resampleBySoxr(const std::vector<double>& in, const CRates& rates, int count)
{
    const soxr_io_spec_t io = soxr_io_spec(SOXR_FLOAT64_I, SOXR_FLOAT64_I);
    const soxr_quality_spec_t quality = soxr_quality_spec(SOXR_VHQ, SOXR_ROLLOFF_NONE);
    std::vector<double> out(static_cast<std::size_t>(count));
    std::size_t done = 0;
    soxr_oneshot(rates.source, rates.dest, 1, in.data(), in.size(), nullptr, out.data(), out.size(),
                 &done, &io, &quality, nullptr);
    out.resize(done);
    return out;
}

TEST(AResampler, AgreesWithSoxrOnABandLimitedSignal)
{
    std::mt19937 random(5);
    std::uniform_real_distribution<double> uniform(0.0, 1.0);
    for (const CRates& rates : ratesInUse()) {
        SCOPED_TRACE(testing::Message() << rates.source << " to " << rates.dest);
        const int inCount = static_cast<int>(rates.source / 5.0);
        const int outCount = static_cast<int>(rates.dest / 5.0);
        std::vector<double> in(static_cast<std::size_t>(inCount));
        for (int k = 0; k < 30; ++k) {
            const double frequency = 0.9 * uniform(random) * rates.lowNyquist();
            const std::vector<double> part = tone(frequency, rates.source, inCount);
            for (std::size_t i = 0; i < in.size(); ++i)
                in[i] += part[i] / 30.0;
        }
        CDSPResampler chain = makeChain(rates);
        const std::vector<double> ours = resample(chain, in, outCount, kMaxIn);
        const std::vector<double> theirs = resampleBySoxr(in, rates, outCount);
        ASSERT_GE(theirs.size() + 2, ours.size());
        double worst = 0.0;
        const std::size_t edge = ours.size() / 8;
        for (std::size_t i = edge; i < ours.size() - edge; ++i)
            worst = std::max(worst, std::abs(ours[i] - theirs[i]));
        EXPECT_LT(worst, 5e-7); // -126 dB: the ripples of both and of each stage add up
    }
}

} // namespace
} // namespace tsm::rsk
