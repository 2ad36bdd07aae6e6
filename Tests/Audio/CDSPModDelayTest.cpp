#include "Audio/CDSPModDelay.h"

#include <gtest/gtest.h>

#include <cmath>
#include <numbers>
#include <random>
#include <vector>

namespace tsm {

namespace {

using CSignal = std::vector<double>;

CSignal noise(int count)
{
    std::mt19937 random(7);
    std::uniform_real_distribution<double> level(-1.0, 1.0);
    CSignal signal(static_cast<std::size_t>(count));
    for (double& sample : signal)
        sample = level(random);
    return signal;
}

double at(const CSignal& signal, int place, double before = 0.0)
{
    return place < 0 ? before : signal[static_cast<std::size_t>(place)];
}

class ADelay : public ::testing::Test {
protected:
    /// Runs `count` samples of the signal on, in blocks of random length, in place.
    void run(int count)
    {
        std::uniform_int_distribution<int> length(1, 700);
        while (count > 0) {
            const int n = std::min(count, length(random));
            CSignal block(in.begin() + done, in.begin() + done + n);
            line.process(block.data(), block.data(), n);
            out.insert(out.end(), block.begin(), block.end());
            done += n;
            count -= n;
        }
    }
    /// The raised cosine itself: from the old delay's sample to the new one's at step `k` of `n`.
    [[nodiscard]] double faded(int place, int from, int to, int k, int n) const
    {
        const double share = 0.5 + 0.5 * std::cos(std::numbers::pi * k / n);
        return share * at(in, place - from) + (1.0 - share) * at(in, place - to);
    }
    void expectDelayed(int first, int last, int samples)
    {
        for (int i = first; i < last; ++i)
            ASSERT_EQ(out[static_cast<std::size_t>(i)], at(in, i - samples)) << "sample " << i;
    }
    void expectFaded(int first, int from, int to, int n)
    {
        // The recursion for the gain gains about an epsilon a step, squared over the fade.
        for (int k = 0; k < n; ++k)
            ASSERT_NEAR(out[static_cast<std::size_t>(first + k)], faded(first + k, from, to, k, n),
                        1e-10)
                << "step " << k;
    }

    std::mt19937 random{11};
    CAudioBlockPool pool;
    CDSPModDelay line{pool, 1024};
    CSignal in = noise(60000);
    CSignal out;
    int done = 0;
};

} // namespace

TEST_F(ADelay, IsExactForAnyLengthAndBlockSize)
{
    for (const int samples : {0, 1, 255, 256, 767, 768, 769, 1023, 1024, 1025, 5000}) {
        SCOPED_TRACE(samples);
        CDSPModDelay fresh(pool, 1024);
        fresh.setDelay(samples);
        std::uniform_int_distribution<int> length(1, 1500);
        for (int i = 0; i < 20000;) {
            const int n = std::min(length(random), 20000 - i);
            CSignal block(static_cast<std::size_t>(n));
            fresh.process(in.data() + i, block.data(), n);
            for (int k = 0; k < n; ++k)
                ASSERT_EQ(block[static_cast<std::size_t>(k)], at(in, i + k - samples)) << i + k;
            i += n;
        }
    }
}

TEST_F(ADelay, WorksWithBlocksShorterThanTheDelay)
{
    CDSPModDelay shortBlocks(pool, 8);
    shortBlocks.setDelay(20);
    CSignal block = in;
    shortBlocks.process(in.data(), block.data(), 5000);
    for (int i = 0; i < 5000; ++i)
        ASSERT_EQ(block[static_cast<std::size_t>(i)], at(in, i - 20)) << i;
}

TEST_F(ADelay, ChangesByARaisedCosine)
{
    line.setFadeLength(662); // 15 ms at 44100 Hz
    line.setDelay(300);
    run(3000);
    line.setDelay(500); // what it needs of the past is in the ring
    EXPECT_TRUE(line.isFading());
    run(3000);
    EXPECT_FALSE(line.isFading());
    expectDelayed(0, 3000, 300);
    expectFaded(3000, 300, 500, 662);
    expectDelayed(3662, 6000, 500);
}

TEST_F(ADelay, TakesTheFirstLengthAtOnce)
{
    line.setFadeLength(662);
    line.setDelay(100);
    line.setDelay(30);
    run(500);
    expectDelayed(0, 500, 30);
    line.reset();
    EXPECT_TRUE(line.isFresh());
    line.setDelay(40);
    EXPECT_FALSE(line.isFading());
}

TEST_F(ADelay, JoinsARunningSignalWithoutAGap)
{
    line.setFadeLength(100);
    line.joinSignal(3000);
    run(2000);
    line.setDelay(4000);
    run(8000);
    expectDelayed(0, 4000, 0);
    expectFaded(4000, 0, 4000, 100);
    expectDelayed(4100, 10000, 4000);
}

TEST_F(ADelay, JoinsForNothingWhenTheDelayIsGoneAgain)
{
    line.joinSignal(500);
    run(200);
    line.setDelay(0);
    EXPECT_FALSE(line.isFading());
    run(1000);
    expectDelayed(0, 1200, 0);
}

TEST_F(ADelay, KeepsTheLastChangeDuringAFadeForItsEnd)
{
    line.setFadeLength(200);
    line.setDelay(10);
    run(1000);
    line.setDelay(60);
    run(50);
    line.setDelay(99);
    line.setDelay(30); // the last counts
    run(950);
    expectFaded(1000, 10, 60, 200);
    expectFaded(1200, 60, 30, 200);
    expectDelayed(1400, 2000, 30);
}

TEST_F(ADelay, ForgetsAWaitingChangeWhenItIsWhereItIsGoing)
{
    line.setFadeLength(200);
    run(1000);
    line.setDelay(60);
    run(50);
    line.setDelay(99);
    line.setDelay(60);
    run(950);
    expectFaded(1000, 0, 60, 200);
    expectDelayed(1200, 2000, 60);
}

TEST_F(ADelay, KeepsItsContentWhenItShrinksAndGrows)
{
    line.setFadeLength(100);
    line.setDelay(6000);
    run(9000);
    line.setDelay(3000);
    run(2001);
    line.setDelay(3100);
    run(2000);
    expectDelayed(0, 9000, 6000);
    expectFaded(9000, 6000, 3000, 100);
    expectDelayed(9100, 11001, 3000);
    expectFaded(11001, 3000, 3100, 100);
    expectDelayed(11101, 13001, 3100);
}

TEST_F(ADelay, FillsWhatItDoesNotHoldAndThenIsExact)
{
    line.setFillValue(0.25);
    line.setFadeLength(100);
    run(5000);
    line.setDelay(9000);
    run(20000);
    // Of the past the ring held at most the block being written and 256 samples.
    for (int i = 5100; i < 13000; ++i)
        ASSERT_TRUE(out[static_cast<std::size_t>(i)] == 0.25 ||
                    out[static_cast<std::size_t>(i)] == at(in, i - 9000))
            << i;
    EXPECT_EQ(out[6000], 0.25);
    expectDelayed(14000, 25000, 9000);
}

TEST_F(ADelay, EndsAFadeAtItsLastTargetOnReset)
{
    line.setFadeLength(300);
    run(100);
    line.setDelay(20);
    run(10);
    line.setDelay(45);
    line.reset();
    EXPECT_EQ(line.getDelay(), 45);
    EXPECT_FALSE(line.isFading());
    const int start = done;
    run(200);
    for (int i = 0; i < 200; ++i)
        ASSERT_EQ(out[static_cast<std::size_t>(start + i)], i < 45 ? 0.0 : at(in, start + i - 45));
}

TEST_F(ADelay, GivesItsBlocksBack)
{
    line.setDelay(50000);
    run(2000); // a long delay that is hardly filled yet: what was read is filled, not all
    const int early = pool.getAllocationCount();
    EXPECT_LT(early, 10);
    line.reset();
    run(2000);
    EXPECT_EQ(pool.getAllocationCount(), early);
}

} // namespace tsm
