#include "Audio/CAudioBlockPool.h"

#include <gtest/gtest.h>

#if defined(__SANITIZE_ADDRESS__)
#include <sanitizer/asan_interface.h>
#endif

namespace tsm {

TEST(ABlockPool, GivesAFreedBlockToTheNextOfItsSize)
{
    CAudioBlockPool pool;
    const double* samples = pool.take(64).read(); // 512 bytes: the largest of the first class
    EXPECT_EQ(pool.take(1).read(), samples);
    EXPECT_EQ(pool.take(64).read(), samples);
    EXPECT_NE(pool.take(65).read(), samples);
    EXPECT_EQ(pool.getAllocationCount(), 2);
}

TEST(ABlockPool, AllocatesNothingOnceEachSizeHasBeenInUse)
{
    CAudioBlockPool pool;
    const auto useAll = [&] {
        CAudioBlockRef held[20];
        for (int i = 0; i < 20; ++i)
            held[i] = pool.take(1 + i * 613);
    };
    useAll();
    const int count = pool.getAllocationCount();
    for (int i = 0; i < 100; ++i)
        useAll();
    EXPECT_EQ(pool.getAllocationCount(), count);
}

TEST(ABlockPool, ReplacesALargeBlockThatIsTooSmall)
{
    CAudioBlockPool pool;
    static_cast<void>(pool.take(8193)); // one above 64 KiB
    static_cast<void>(pool.take(8200));
    EXPECT_EQ(pool.getAllocationCount(), 2);
    static_cast<void>(pool.take(8194)); // fits what is there
    EXPECT_EQ(pool.getAllocationCount(), 2);
}

TEST(ABlockPool, AlignsSamplesForTheWidestVectors)
{
    CAudioBlockPool pool;
    for (const int count : {1, 63, 65, 512, 4096, 8192, 8193, 100000}) {
        SCOPED_TRACE(count);
        const CAudioBlockRef block = pool.takeFilled(count, 0.5);
        EXPECT_EQ(reinterpret_cast<std::uintptr_t>(block.read()) % 64, 0u);
        EXPECT_EQ(block.read()[count - 1], 0.5);
    }
}

TEST(ABlockPool, KeepsABlockUntilItsLastHolderGoes)
{
    CAudioBlockPool pool;
    CAudioBlockRef first = pool.takeFilled(8, 1.0);
    CAudioBlockRef second = first;
    EXPECT_FALSE(first.isSole());
    first.reset();
    EXPECT_TRUE(second.isSole());
    EXPECT_NE(pool.take(8), second);
    EXPECT_EQ(second.read()[7], 1.0);
}

#if defined(__SANITIZE_ADDRESS__)
TEST(ABlockPool, PutsSamplesOffLimitsThatNobodyAskedFor)
{
    CAudioBlockPool pool;
    CAudioBlockRef block = pool.take(10);
    const double* samples = block.read();
    EXPECT_FALSE(__asan_address_is_poisoned(samples + 9));
    EXPECT_TRUE(__asan_address_is_poisoned(samples + 10));
    block.reset();
    EXPECT_TRUE(__asan_address_is_poisoned(samples));
}
#endif

} // namespace tsm
