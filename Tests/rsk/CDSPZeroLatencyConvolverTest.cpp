#include "rsk/CDSPZeroLatencyConvolver.h"

#include "Tests/Support/HeapAllocations.h"
#include "Tests/rsk/CDSPBuildTest.h"
#include "rsk/CDSPConvolverPhase.h"
#include "rsk/CDSPPartitionPlan.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <memory>
#include <random>
#include <vector>

namespace tsm::rsk {
namespace {

using CSamples = std::vector<double>;

std::size_t at(int index)
{
    return static_cast<std::size_t>(index);
}

CSamples noise(int count, unsigned seed)
{
    std::mt19937 random(seed);
    std::uniform_real_distribution<double> uniform(-1.0, 1.0);
    CSamples samples(at(count));
    for (double& sample : samples)
        sample = uniform(random);
    return samples;
}

/// Noise of which the sum of magnitudes is 1.0, so that the output's full scale is that of the
/// input.
CSamples impulse(int length, unsigned seed)
{
    CSamples taps = noise(length, seed);
    double sum = 0.0;
    for (const double tap : taps)
        sum += std::abs(tap);
    for (double& tap : taps)
        tap /= sum;
    return taps;
}

/// A sparse signal keeps the direct sum affordable: full-scale samples at uneven distances.
CSamples clicks(int count)
{
    CSamples samples(at(count));
    for (int i = 3, k = 0; i < count; i += 61 + 37 * (k++ % 11))
        samples[at(i)] = k % 2 == 0 ? 1.0 : -0.75;
    return samples;
}

CSamples convolveDirectly(const CSamples& in, const CSamples& taps)
{
    CSamples out(in.size());
    for (std::size_t i = 0; i < in.size(); ++i)
        if (in[i] != 0.0)
            for (std::size_t k = 0; k < taps.size() && i + k < in.size(); ++k)
                out[i + k] += in[i] * taps[k];
    return out;
}

/// A convolver with its work space.
class CConvolver {
public:
    explicit CConvolver(int phase) : convolver(phase) {}
    void load(const CSamples& taps, double gain = 1.0)
    {
        load(CDSPImpulseRef(
            new CDSPConvolverImpulse(taps.data(), static_cast<int>(taps.size()), gain)));
    }
    void load(const CDSPImpulseRef& impulse)
    {
        convolver.load(impulse);
        work.allocate(impulse->getWorkCount());
    }
    void process(const double* in, double* out, int count)
    {
        convolver.process(in, out, count, work.data());
    }
    void reset() { convolver.reset(); }

private:
    CDSPZeroLatencyConvolver convolver;
    CAlignedArray<double> work;
};

/// Blocks of that size; 0 for sizes that change all the time.
CSamples run(CConvolver& convolver, const CSamples& in, int blockSize)
{
    CSamples out(in.size());
    std::mt19937 random(11);
    for (std::size_t done = 0; done < in.size();) {
        const std::size_t wanted = blockSize > 0 ? at(blockSize) : 1 + random() % 512;
        const std::size_t count = std::min(wanted, in.size() - done);
        convolver.process(in.data() + done, out.data() + done, static_cast<int>(count));
        done += count;
    }
    return out;
}

double worstDifference(const CSamples& a, const CSamples& b)
{
    double worst = 0.0;
    for (std::size_t i = 0; i < a.size(); ++i)
        worst = std::max(worst, std::abs(a[i] - b[i]));
    return worst;
}

constexpr double kTolerance = 1e-12;

TEST(APartitionPlan, CoversAnyLengthWithoutGap)
{
    for (int length = 1; length < 300000; length += 1 + length / 50) {
        SCOPED_TRACE(length);
        const CDSPPartitionPlan plan(length);
        int tap = plan.headLength;
        for (int i = 0; i < plan.stageCount; ++i) {
            const CDSPPartitionPlan::CStage& stage = plan.stages[i];
            EXPECT_LT(tap, length);
            EXPECT_EQ(tap, (1 << stage.order) + stage.lag);
            EXPECT_GE(stage.lag, 0);
            EXPECT_LT(stage.lag, 1 << stage.order);
            tap += stage.partitions << stage.order;
        }
        EXPECT_GE(tap, length);
        if (plan.stageCount > 0) {
            EXPECT_LT(tap - (1 << plan.stages[plan.stageCount - 1].order), length);
        }
    }
}

TEST(APartitionPlan, AddsAStageWhereTheLastWouldGetTooLong)
{
    constexpr struct {
        int longest; // impulse of that many stages
        int stageCount;
    } kRows[] = {{64, 0}, {1344, 1}, {10752, 2}, {43520, 3}};
    for (const auto& row : kRows) {
        EXPECT_EQ(CDSPPartitionPlan(row.longest).stageCount, row.stageCount);
        EXPECT_EQ(CDSPPartitionPlan(row.longest + 1).stageCount, row.stageCount + 1);
    }
}

TEST(AZeroLatencyConvolver, EqualsTheDirectSumRoundEveryBoundaryOfItsPlan)
{
    for (const int boundary : {1, 64, 128, 512, 576, 1024, 1344, 2560, 3072, 10752, 12800})
        for (const int length : {boundary - 1, boundary, boundary + 1}) {
            if (length < 1)
                continue;
            SCOPED_TRACE(length);
            CConvolver convolver(length % 8);
            const CSamples taps = impulse(length, 1);
            convolver.load(taps);
            const CSamples in = clicks(length + 12000);
            EXPECT_LT(worstDifference(run(convolver, in, 0), convolveDirectly(in, taps)),
                      kTolerance);
        }
}

TEST(AZeroLatencyConvolver, HasAllStages)
{
    for (const int length : {43520, 43521, 70000}) {
        SCOPED_TRACE(length);
        CConvolver convolver(5);
        const CSamples taps = impulse(length, 2);
        convolver.load(taps, 0.5);
        const CSamples in = clicks(length + 40000);
        CSamples expected = convolveDirectly(in, taps);
        for (double& sample : expected)
            sample *= 0.5;
        EXPECT_LT(worstDifference(run(convolver, in, 512), expected), kTolerance);
    }
}

TEST(AZeroLatencyConvolver, SoundsTheSameInAllPhasesAndBlockSizes)
{
    const CSamples taps = impulse(11000, 3); // three stages, the last with a lag
    const CSamples in = clicks(16000);
    const CSamples expected = convolveDirectly(in, taps);
    for (int phase = 0; phase < CDSPConvolverPhase::kCount; ++phase)
        for (const int blockSize : {1, 2, 15, 16, 17, 63, 64, 100, 511, 512, 3000}) {
            SCOPED_TRACE(testing::Message() << phase << " in blocks of " << blockSize);
            CConvolver convolver(phase);
            convolver.load(taps);
            EXPECT_LT(worstDifference(run(convolver, in, blockSize), expected), kTolerance);
        }
}

TEST(AZeroLatencyConvolver, TakesBlocksOfAnySizeByTurnsAndALoadAmongThem)
{
    for (const int length : {150, 600, 4498, 70000}) {
        SCOPED_TRACE(length);
        const CSamples before = impulse(length, 31);
        const CSamples taps = impulse(length, 32);
        const CSamples in = clicks(3 * length + 80000);
        const CSamples expected = convolveDirectly(in, taps);
        CConvolver convolver(6);
        convolver.load(before);
        CSamples out(in.size());
        std::size_t done = 0;
        for (int i = 0; done < in.size(); ++i) {
            constexpr int kSizes[] = {5000, 10, 300, 1, 5000, 48, 512, 33, 7, 441, 64};
            const std::size_t count =
                std::min(at(kSizes[at(i) % std::size(kSizes)]), in.size() - done);
            convolver.process(in.data() + done, out.data() + done, static_cast<int>(count));
            done += count;
            if (i == 3)
                convolver.load(taps);
        }
        const auto settled = static_cast<std::ptrdiff_t>(at(2 * length) + 60000);
        EXPECT_LT(worstDifference(CSamples(out.begin() + settled, out.end()),
                                  CSamples(expected.begin() + settled, expected.end())),
                  kTolerance);
    }
}

TEST(AZeroLatencyConvolver, StartsAfreshAfterReset)
{
    const CSamples taps = impulse(4498, 4);
    const CSamples in = noise(5000, 5);
    CConvolver convolver(3);
    convolver.load(taps);
    const CSamples first = run(convolver, in, 100);
    convolver.reset();
    EXPECT_EQ(run(convolver, in, 100), first);
}

TEST(AZeroLatencyConvolver, TurnsToANewImpulseWithinItsLongestBlocks)
{
    for (const int nextLength : {30, 500, 4498, 20000, 70000}) {
        SCOPED_TRACE(nextLength);
        const CSamples before = impulse(4498, 6);
        const CSamples after = impulse(nextLength, 7);
        CConvolver convolver(1);
        convolver.load(before);
        const CSamples in = clicks(200000);
        const std::size_t change = 5000;
        CSamples out(in.size());
        convolver.process(in.data(), out.data(), static_cast<int>(change));
        convolver.load(after);
        convolver.process(in.data() + change, out.data() + change,
                          static_cast<int>(in.size() - change));
        // What a stage that is new can't know of the past has faded after the impulse's length.
        const CSamples expected = convolveDirectly(in, after);
        const std::size_t settled = change + at(nextLength) + 3 * 8192;
        const CSamples tail(out.begin() + static_cast<std::ptrdiff_t>(settled), out.end());
        const CSamples expectedTail(expected.begin() + static_cast<std::ptrdiff_t>(settled),
                                    expected.end());
        EXPECT_LT(worstDifference(tail, expectedTail), kTolerance);
        for (const double sample : out)
            ASSERT_LT(std::abs(sample), 2.5); // both impulses at full scale, never more
    }
}

TEST(AZeroLatencyConvolver, GivesUpThePastThatShorterImpulsesDontNeed)
{
    CConvolver convolver(6);
    const CSamples in = clicks(12000);
    for (const int length : {20000, 800, 20000}) {
        if (length == 20000)
            convolver.load(impulse(700, 12)); // passed over: what it needs isn't all that was
        convolver.load(impulse(length, 12));
        for (const double sample : run(convolver, in, 100))
            ASSERT_LT(std::abs(sample), 2.5);
    }
    run(convolver, CSamples(33000), 512);
    EXPECT_LT(worstDifference(run(convolver, in, 100), convolveDirectly(in, impulse(20000, 12))),
              kTolerance);
}

TEST(AZeroLatencyConvolver, SharesImpulsesWithOthers)
{
    const CSamples in = clicks(9000);
    CDSPImpulseRef shared[] = {nullptr, nullptr};
    CSamples expected[2];
    for (int i = 0; i < 2; ++i) {
        const CSamples taps = impulse(3000 + 1500 * i, static_cast<unsigned>(20 + i));
        shared[i].reset(new CDSPConvolverImpulse(taps.data(), static_cast<int>(taps.size()), 1.0));
        expected[i] = convolveDirectly(in, taps);
    }
    CConvolver first(2);
    CConvolver second(5);
    first.load(shared[0]);
    second.load(shared[0]);
    EXPECT_LT(worstDifference(run(first, in, 64), expected[0]), kTolerance);
    EXPECT_LT(worstDifference(run(second, in, 200), expected[0]), kTolerance);
    // Loads in a row, of which stages see none but the last, leave nothing behind.
    for (int i = 0; i < 5; ++i) {
        first.load(shared[1]);
        first.load(shared[0]);
    }
    first.load(shared[1]);
    run(first, in, 64);
    first.reset();
    EXPECT_LT(worstDifference(run(first, in, 64), expected[1]), kTolerance);
    second.load(shared[1]);
    run(second, in, 64);
    first.load(impulse(500, 22));
    second.load(impulse(500, 22));
    EXPECT_EQ(shared[0].use_count(), 1) << "what was replaced before the last load is let go of";
}

TEST(AZeroLatencyConvolver, AllocatesNothingWhileItRuns)
{
    const CSamples taps = impulse(20000, 8);
    const CSamples in = noise(30000, 9);
    CSamples out(in.size());
    const int first = countHeapAllocations();
    if (first < 0)
        GTEST_SKIP() << "the heap is a sanitizer's";
    CConvolver convolver(0);
    convolver.load(taps);
    const int before = countHeapAllocations();
    EXPECT_GT(before, first) << "loading does";
    convolver.process(in.data(), out.data(), 15000);
    convolver.reset();
    convolver.process(in.data(), out.data(), 15000);
    EXPECT_EQ(countHeapAllocations(), before);
    convolver.load(impulse(19000, 8));
    const int loaded = countHeapAllocations();
    convolver.process(in.data(), out.data(), 15000);
    EXPECT_EQ(countHeapAllocations(), loaded) << "turning to new taps";
}

TEST(AConvolverPhase, IsTheLeastUsedOne)
{
    std::vector<std::unique_ptr<CDSPConvolverPhase>> phases;
    for (int i = 0; i < 9; ++i) {
        phases.push_back(std::make_unique<CDSPConvolverPhase>());
        EXPECT_EQ(phases.back()->get(), i % 8);
    }
    phases[5].reset();
    EXPECT_EQ(CDSPConvolverPhase().get(), 5);
    phases[6].reset();
    EXPECT_EQ(CDSPConvolverPhase().get(), 5) << "the lowest of two unused ones";
}

class AConvolverKernel : public CDSPBuildTest {};

TEST_P(AConvolverKernel, EqualsTheDirectSum)
{
    const CSamples taps = impulse(40, 1);
    for (const int count : {1, 7, 8, 9, 63, 64, 65, 200}) {
        CSamples in = noise(count, 2);
        const CSamples expected = convolveDirectly(in, taps);
        const int past = 39 + kernels->lanes;
        in.insert(in.begin(), at(past), 0.0);
        in.resize(in.size() + kKernelPad);
        CSamples out(at(count));
        CDSPDirectFilter filter(*kernels);
        filter.load(taps.data(), 40, 1.0);
        filter.process(in.data() + past, out.data(), count);
        EXPECT_LT(worstDifference(out, expected), 1e-15) << count;
    }
}

constexpr int kHalfCount = 96; // whole runs of the widest build, and a rest

/// Adds the product of two split spectra to `sum`.
void addProduct(CSamples& sum, const CSamples& a, const CSamples& b)
{
    for (int k = 0; k < kHalfCount; ++k) {
        const double x[] = {a[at(k)], a[at(kHalfCount + k)]};
        const double y[] = {b[at(k)], b[at(kHalfCount + k)]};
        sum[at(k)] += k == 0 ? x[0] * y[0] : x[0] * y[0] - x[1] * y[1];
        sum[at(kHalfCount + k)] += k == 0 ? x[1] * y[1] : x[0] * y[1] + x[1] * y[0];
    }
}

TEST_P(AConvolverKernel, SumsProductsOfBins)
{
    std::vector<CSamples> a;
    std::vector<CSamples> b;
    std::vector<const double*> pa;
    std::vector<const double*> pb;
    CSamples expected(2 * kHalfCount);
    CSamples expectedNext(2 * kHalfCount);
    for (unsigned pair = 0; pair < 3; ++pair) {
        a.push_back(noise(2 * kHalfCount, 1 + pair));
        b.push_back(noise(2 * kHalfCount, 11 + pair));
        pa.push_back(a[pair].data());
        pb.push_back(b[pair].data());
        addProduct(expected, a[pair], b[pair]);
        if (pair > 0)
            addProduct(expectedNext, a[pair], b[pair - 1]);
    }
    // 3 products of up to 2.0, a few roundings each
    constexpr double kRounding = 1e-15 * 8;
    CSamples sum(2 * kHalfCount, 99.0);
    CSamples twice = sum;
    CSamples next = sum;
    for (const int first : {0, 16, 32}) {
        const int end = first < 32 ? first + 16 : kHalfCount;
        kernels->sumProducts(pa.data(), pb.data(), 1, sum.data(), kHalfCount, first, end, false);
        kernels->sumProducts(pa.data() + 1, pb.data() + 1, 2, sum.data(), kHalfCount, first, end,
                             true);
        kernels->sumProductsTwice(pa.data(), pb.data(), nullptr, 3, twice.data(), next.data(),
                                  kHalfCount, first, end);
    }
    EXPECT_LT(worstDifference(sum, expected), kRounding);
    EXPECT_LT(worstDifference(twice, expected), kRounding);
    EXPECT_LT(worstDifference(next, expectedNext), kRounding);
    kernels->sumProductsTwice(pa.data(), pb.data(), pb[2], 3, twice.data(), next.data(), kHalfCount,
                              0, kHalfCount);
    addProduct(expectedNext, a[0], b[2]);
    EXPECT_LT(worstDifference(next, expectedNext), kRounding);
}

TSM_FOR_ALL_DSP_BUILDS(AConvolverKernel);

} // namespace
} // namespace tsm::rsk
