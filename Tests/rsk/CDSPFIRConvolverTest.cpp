#include "rsk/CDSPFIRConvolver.h"

#include "Tests/Support/HeapAllocations.h"
#include "rsk/CDSPFIRPlan.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <random>
#include <vector>

namespace tsm::rsk {
namespace {

using CSamples = std::vector<double>;

CSamples noise(int count, unsigned seed)
{
    std::mt19937 random(seed);
    std::uniform_real_distribution<double> uniform(-1.0, 1.0);
    CSamples samples(static_cast<std::size_t>(count));
    for (double& sample : samples)
        sample = uniform(random);
    return samples;
}

/// The direct sum, late by `latency`, of a signal that stood at its first sample for ever before.
CSamples expectedOutput(const CSamples& in, const CSamples& taps, int latency)
{
    CSamples out(in.size());
    for (int i = 0; i < static_cast<int>(in.size()); ++i)
        for (int k = 0; k < static_cast<int>(taps.size()); ++k) {
            const int from = std::max(0, i - latency - k);
            out[static_cast<std::size_t>(i)] +=
                taps[static_cast<std::size_t>(k)] * in[static_cast<std::size_t>(from)];
        }
    return out;
}

CSamples run(CDSPFIRConvolver& convolver, const CSamples& in, std::size_t blockSize)
{
    CSamples out(in.size());
    for (std::size_t done = 0; done < in.size(); done += blockSize)
        convolver.process(in.data() + done, out.data() + done,
                          static_cast<int>(std::min(blockSize, in.size() - done)));
    return out;
}

double worstDifference(const CSamples& a, const CSamples& b)
{
    double worst = 0.0;
    for (std::size_t i = 0; i < a.size(); ++i)
        worst = std::max(worst, std::abs(a[i] - b[i]));
    return worst;
}

TEST(AFIRPlan, HoldsAllTapsAndItsStagesMeet)
{
    for (int order = CDSPFIRPlan::kMinOrder; order <= CDSPFIRPlan::kMaxOrder; ++order)
        for (int taps = 1; taps < 100000; taps += 1 + taps / 3) {
            const CDSPFIRPlan plan(order, taps);
            ASSERT_EQ(plan.stages[0].order, order);
            int first = 0;
            for (int i = 0; i < plan.stageCount; ++i) {
                const CDSPFIRPlan::CStage& stage = plan.stages[i];
                EXPECT_EQ(first, (1 << stage.order) - (1 << order));
                EXPECT_LT(first, taps);
                first += stage.partitions << stage.order;
            }
            EXPECT_GE(first, taps);
        }
}

TEST(AFIRConvolver, EqualsTheDirectSumFromItsFirstSampleOn)
{
    for (const int blockSize : {16, 32, 64, 128, 1024})
        for (const int tapCount : {1, 16, 65, 661, 1063, 5000}) {
            SCOPED_TRACE(testing::Message() << tapCount << " taps in " << blockSize);
            CSamples taps = noise(tapCount, 1);
            for (double& tap : taps)
                tap /= tapCount;
            const CSamples in = noise(4000, 2);
            CDSPFIRConvolver convolver(blockSize, taps.data(), tapCount);
            ASSERT_EQ(convolver.getLatency(), blockSize);
            const CSamples expected = expectedOutput(in, taps, blockSize);
            EXPECT_LT(worstDifference(run(convolver, in, 512), expected), 1e-13);
            convolver.reset();
            EXPECT_LT(worstDifference(run(convolver, in, 37), expected), 1e-13);
        }
}

TEST(AFIRConvolver, StartsBetweenZerosBehindAnInterpolator)
{
    // The past that the start stands for, spelled out: value, zero, value, zero, and so on.
    const CSamples taps = noise(661, 5);
    CSamples in(3000, 0.0);
    for (std::size_t i = 0; i < in.size(); i += 2)
        in[i] = i < 1500 ? 0.8 : 0.1;
    CSamples withPast(1000, 0.0);
    for (std::size_t i = 0; i < withPast.size(); i += 2)
        withPast[i] = 0.8;
    withPast.insert(withPast.end(), in.begin(), in.end());
    CDSPFIRConvolver told(64, taps.data(), 661);
    CSamples out(in.size());
    told.process(in.data(), out.data(), static_cast<int>(in.size()), true);
    CDSPFIRConvolver untold(64, taps.data(), 661);
    CSamples expected(withPast.size());
    untold.process(withPast.data(), expected.data(), static_cast<int>(withPast.size()));
    expected.erase(expected.begin(), expected.begin() + 1000);
    EXPECT_LT(worstDifference(out, expected), 1e-12);
}

TEST(AFIRConvolver, AllocatesNothingWhileItRuns)
{
    const CSamples taps = noise(1063, 3);
    CDSPFIRConvolver convolver(128, taps.data(), 1063);
    const CSamples in = noise(512, 4);
    CSamples out(in.size());
    const int before = countHeapAllocations();
    for (int i = 0; i < 20; ++i)
        convolver.process(in.data(), out.data(), 512);
    EXPECT_EQ(countHeapAllocations(), before);
}

} // namespace
} // namespace tsm::rsk
