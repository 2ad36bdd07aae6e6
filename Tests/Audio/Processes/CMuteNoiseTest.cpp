#include "Audio/Processes/CMuteNoise.h"
#include "Audio/Processes/CNoiseSeed.h"

#include <gtest/gtest.h>

#include <set>
#include <thread>
#include <vector>

namespace tsm::test {

namespace {

std::vector<double> fill(CMuteNoise& noise, int count)
{
    std::vector<double> out(static_cast<std::size_t>(count));
    noise.fill(out.data(), count);
    return out;
}

TEST(MuteNoise, IsTinyNeverZeroAndWithoutAConstantPart)
{
    CMuteNoise noise;
    noise.init();
    int positive = 0;
    for (const double sample : fill(noise, 100000)) {
        ASSERT_TRUE(sample == 1e-11 || sample == -1e-11) << sample;
        positive += sample > 0.0;
    }
    EXPECT_NEAR(positive, 50000, 1000); // six standard deviations of a fair coin
}

TEST(MuteNoise, GoesOnFromBlockToBlockAndDiffersBetweenModules)
{
    CMuteNoise first;
    first.init();
    CMuteNoise same = first;
    CMuteNoise other;
    other.init();
    const std::vector<double> whole = fill(first, 300);
    std::vector<double> parts = fill(same, 100);
    const std::vector<double> rest = fill(same, 200);
    parts.insert(parts.end(), rest.begin(), rest.end());
    EXPECT_EQ(parts, whole);
    EXPECT_NE(fill(other, 300), whole);
}

TEST(NoiseSeed, IsDrawnOnceEachFromAllThreads)
{
    std::vector<std::vector<std::uint32_t>> drawn(4);
    {
        std::vector<std::jthread> threads;
        for (auto& seeds : drawn)
            threads.emplace_back([&seeds] {
                for (int i = 0; i < 5000; ++i)
                    seeds.push_back(CNoiseSeed::draw());
            });
    }
    std::set<std::uint32_t> all;
    for (const auto& seeds : drawn)
        all.insert(seeds.begin(), seeds.end());
    EXPECT_EQ(all.size(), 20000u);
}

} // namespace

} // namespace tsm::test
