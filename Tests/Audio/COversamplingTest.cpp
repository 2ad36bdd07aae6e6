// The whole chain at raised rates: what it reports against what it does.

#include "Tests/Audio/CTestInstance.h"
#include "Tests/Support/HeapAllocations.h"
#include "Tests/Support/ResidentMemory.h"
#include "Tests/Support/TapeRig.h"

#include <cmath>
#include <complex>
#include <numbers>

namespace tsm {
namespace {

using test::noise;

/// An instance at a level at which the tape is straight.
class AnOversampledInstance : public AnInstance {
protected:
    void TearDown() override
    {
        set("lp-oversampling-enable", 0.0); // shared with the next instance
        AnInstance::TearDown();
    }

    void choose(int factor, bool isLinear)
    {
        set("oversampling", 1.0 + std::log2(factor));
        set("lp-oversampling-enable", isLinear ? 1.0 : 0.0);
    }
    void beginStraight(int factor, bool isLinear, double rate)
    {
        makeInstance();
        choose(factor, isLinear);
        set("modReelpath.hardness", 1.0);
        set("modReelpath.flutter", 0.0);
        set("modReelpath.cab-enable", 0.0);
        begin(1, rate);
    }

    /// The chain's response at a frequency in cycles a sample, measured with a sine.
    std::complex<double> responseAt(double cycles)
    {
        constexpr int kCount = 16384;
        constexpr int kSettled = 8192;
        constexpr double kLevel = 0.01;
        CChannel in(kCount);
        for (int i = 0; i < kCount; ++i)
            in[static_cast<std::size_t>(i)] =
                kLevel * std::sin(2.0 * std::numbers::pi * cycles * i);
        const CChannel out = process(in);
        std::complex<double> sum = 0.0;
        for (int i = kSettled; i < kCount; ++i)
            sum += out[static_cast<std::size_t>(i)] *
                   std::polar(1.0, -2.0 * std::numbers::pi * cycles * i);
        return sum * std::complex<double>(0.0, 2.0 / (kLevel * (kCount - kSettled)));
    }
    /// The samples that the chain is late at a frequency, of all that fit the phase those next to
    /// `near`.
    double delayAt(double cycles, double near)
    {
        const double late = -std::arg(responseAt(cycles)) / (2.0 * std::numbers::pi * cycles);
        return late + std::round((near - late) * cycles) / cycles;
    }
};

constexpr double kFilterUp = 330 + 64;    // samples of a filter of taps and of its block,
constexpr double kFilterDown = 531 + 128; // each at the rate where it stands
constexpr double kFilterSoft = 32 + 32;

/// The delay by arithmetic: filters, two tape stages and the impulse's place on the raised rate,
/// with a sample added wherever half a sample would come of halving the rate.
int expectedLatency(int factor, bool isLinear, double rate)
{
    double late = 0.0;
    for (int at = 2; at <= factor; at *= 2)
        late = 2.0 * late + (isLinear ? (at == 2 ? kFilterUp : kFilterSoft) : 0.0);
    const double raised = rate * factor;
    late += 2.0 * (std::ceil(raised * 2.0 / 44100.0) + 1.0) + std::round(raised * 0.00131519);
    for (int at = factor; at >= 2; at /= 2)
        late = std::ceil(0.5 * (late + (isLinear ? (at == 2 ? kFilterDown : kFilterSoft) : 0.0)));
    return static_cast<int>(late);
}

TEST_F(AnOversampledInstance, IsAsLateAsItsPartsAndReportsIt)
{
    for (const double rate : {44100.0, 48000.0, 96000.0})
        for (const bool isLinear : {false, true})
            for (const int factor : {1, 2, 4, 8}) {
                SCOPED_TRACE(testing::Message()
                             << factor << "X at " << rate << (isLinear ? ", linear" : ""));
                beginStraight(factor, isLinear, rate);
                process(CChannel(512));
                const int real = expectedLatency(factor, isLinear, rate);
                // With linear phase hosts get one figure for all factors, as far as it reaches.
                EXPECT_EQ(wrapper->queryLatency(), isLinear ? 584 : real);
                const int whole = isLinear ? std::max(real, 584) : real;
                // The half-band filters' own few samples are reported nowhere.
                const double tolerance = isLinear || factor == 1 ? 0.5 : 9.0;
                for (const double cycles : {0.03, 0.031}) // shelves have turned little there
                    EXPECT_NEAR(delayAt(cycles, whole), whole, tolerance);
            }
}

TEST_F(AnOversampledInstance, KeepsTheDryPathInTimeToTheSample)
{
    for (const bool isLinear : {false, true})
        for (const int factor : {1, 2, 4, 8}) {
            SCOPED_TRACE(testing::Message() << factor << "X" << (isLinear ? ", linear" : ""));
            beginStraight(factor, isLinear, 44100.0);
            set("bypass-enable", 1.0);
            const CChannel in = noise(6000, 0.5);
            const CChannel out = process(in);
            const int real = expectedLatency(factor, isLinear, 44100.0);
            const auto late = static_cast<std::size_t>(isLinear ? std::max(real, 584) : real);
            for (std::size_t i = 3000; i < in.size(); ++i)
                ASSERT_EQ(out[i], in[i - late]) << i;
        }
}

TEST_F(AnOversampledInstance, PassesTheBandAtItsLevel)
{
    // Emphasis and de-emphasis cancel up to a shelf's shape near half the rate, and the flutter's
    // interpolation, which both get better with the rate.
    for (const bool isLinear : {false, true})
        for (const int factor : {2, 4, 8}) {
            SCOPED_TRACE(testing::Message() << factor << "X" << (isLinear ? ", linear" : ""));
            beginStraight(factor, isLinear, 44100.0);
            for (const double hz : {200.0, 1000.0, 5000.0, 15000.0, 17000.0})
                EXPECT_NEAR(20.0 * std::log10(std::abs(responseAt(hz / 44100.0))), 0.0, 1.5) << hz;
        }
}

/// What a session does to the chain while it runs.
struct CChange {
    int factor;
    bool isLinear;
    double cabEnable;
    double cabIndex;
    double rate;
};

TEST_F(AnOversampledInstance, SurvivesEveryChangeWhileSoundRuns)
{
    constexpr CChange kChanges[] = {
        {8, false, 1.0, 1.0, 44100.0}, {8, true, 1.0, 8.0, 44100.0},  {1, true, 1.0, 8.0, 44100.0},
        {2, true, 0.0, 8.0, 44100.0},  {2, false, 0.0, 3.0, 96000.0}, {4, false, 1.0, 3.0, 96000.0},
        {4, true, 1.0, 5.0, 48000.0},  {1, false, 1.0, 5.0, 44104.0}, {2, false, 1.0, 0.0, 44100.0},
    };
    begin(2, 44100.0);
    const std::vector<CChannel> in{noise(4000, 0.8, 1), noise(4000, 0.8, 2)};
    const std::vector<CChannel> silence{CChannel(4000), CChannel(4000)};
    double settled = 0.0;
    for (int round = 0; round < 6; ++round) {
        for (const CChange& change : kChanges) {
            choose(change.factor, change.isLinear);
            set("modReelpath.cab-enable", change.cabEnable);
            set("modReelpath.cab-index", change.cabIndex);
            setFormat(2, change.rate);
            for (const int blockSize : {512, 33}) {
                for (const CChannel& channel : process(in, blockSize))
                    for (const double sample : channel)
                        ASSERT_LT(std::abs(sample), 8.0); // the tape ends at 1, its filters at 3
            }
        }
        // A block that got stuck would go on sounding.
        std::vector<CChannel> out;
        for (int i = 0; i < 40; ++i)
            out = process(silence);
        for (const CChannel& channel : out)
            for (const double sample : channel)
                ASSERT_LT(std::abs(sample), 1e-6);
        // What the first rounds took is enough for all that follow.
        if (round == 2)
            settled = residentBytes();
    }
    // A sanitizer keeps what was given back.
    if (countHeapAllocations() >= 0) {
        EXPECT_LT(residentBytes(), settled + (1 << 20));
    }
}

TEST_F(AnOversampledInstance, AllocatesNothingInASteadyBlock)
{
    if (countHeapAllocations() < 0)
        GTEST_SKIP() << "the heap is a sanitizer's";
    for (const bool isLinear : {false, true})
        for (const int factor : {1, 2, 4, 8}) {
            makeInstance();
            choose(factor, isLinear);
            begin(2, 44100.0);
            const std::vector<CChannel> in{noise(20000, 0.8, 1), noise(20000, 0.8, 2)};
            std::vector<CChannel> out = in;
            process(in);
            const void* const inputs[] = {in[0].data(), in[1].data()};
            void* const outputs[] = {out[0].data(), out[1].data()};
            const int before = countHeapAllocations();
            for (int i = 0; i < 20; ++i)
                wrapper->processBlock(inputs, outputs, 512);
            EXPECT_EQ(countHeapAllocations(), before) << factor;
        }
}

} // namespace
} // namespace tsm
