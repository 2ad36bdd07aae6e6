#include "rsk/CDSPFracBank.h"
#include "rsk/CDSPLowPass.h"
#include "rsk/CDSPRealFFTPool.h"

#include "Tests/rsk/CToneProbe.h"

#include <gtest/gtest.h>

#include <memory>
#include <thread>
#include <vector>

namespace tsm::rsk {
namespace {

CDSPResampler makeChain(double destRate)
{
    return {44100.0, destRate, 512, 5.0, 136.45, EDSPPhase::Linear};
}

TEST(DesignCachesThreads, ServeChainsThatLoadAtTheSameTime)
{
    const std::vector<double> in = tone(997.0, 44100.0, 2000);
    constexpr int kThreads = 4;
    std::vector<double> sums[kThreads];
    std::vector<std::thread> threads;
    threads.reserve(kThreads);
    for (auto& mine : sums)
        threads.emplace_back([&mine, &in] {
            for (int i = 0; i < 12; ++i) {
                CDSPResampler chain = makeChain(45000.0 + 1500.0 * i);
                double sum = 0.0;
                for (const double sample : resample(chain, in, 2000, 500))
                    sum += sample * sample;
                mine.push_back(sum);
            }
        });
    for (std::thread& thread : threads)
        thread.join();
    for (int i = 1; i < kThreads; ++i)
        EXPECT_EQ(sums[i], sums[0]);
}

TEST(ADesignCache, ForgetsTheOldestUnusedDesignOnly)
{
    using CHold = CDSPFracBankCache::CHold;
    CDSPFracBankCache cache;
    const CHold inUse(cache, {2, 136.45, false});
    const CDSPFracBank* kept = &*inUse;
    for (int i = 3; i < 40; ++i)
        const CHold brief(cache, {i, 136.45, false});
    EXPECT_EQ(cache.getCount(), 12);
    EXPECT_EQ(&*CHold(cache, {2, 136.45, false}), kept);

    std::vector<std::unique_ptr<CHold>> many;
    for (int i = 3; i < 23; ++i)
        many.push_back(std::make_unique<CHold>(cache, CDSPFracBank::CKey{i, 136.45, false}));
    EXPECT_EQ(cache.getCount(), 21) << "nothing in use is forgotten";
    many.clear();
    EXPECT_EQ(cache.getCount(), 12);
}

} // namespace
} // namespace tsm::rsk
