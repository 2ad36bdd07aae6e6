#include "Core/CMemPool.h"
#include "Core/CBlockHeader.h"

#include <gtest/gtest.h>

#include <cstring>
#include <set>
#include <vector>

namespace tsm {

namespace {

struct AMemPool : testing::Test {
    // Allocates through `count` refills and returns how many blocks each of them gave.
    static std::vector<int> refillSizes(CMemPool& pool, int count)
    {
        std::vector<int> sizes;
        std::set<const void*> blocks;
        std::size_t before = 0;
        while (static_cast<int>(sizes.size()) < count) {
            const int planned = pool.getBlocksPerChunk();
            for (int i = 0; i < planned; ++i)
                blocks.insert(pool.alloc());
            sizes.push_back(static_cast<int>(blocks.size() - before));
            before = blocks.size();
        }
        pool.releaseChunks();
        return sizes;
    }
};

TEST_F(AMemPool, RefillsWithChunksOfGrowingCounts)
{
    CMemPool small(0);
    CMemPool lastOfTheSmall(125);  // 2032 bytes apart
    CMemPool firstOfTheLarge(126); // 2048 bytes apart
    const std::vector<int> growing{2, 3, 5, 9, 16, 28, 50, 90, 162, 162, 162};
    EXPECT_EQ(refillSizes(small, 11), growing);
    EXPECT_EQ(refillSizes(lastOfTheSmall, 11), growing);
    EXPECT_EQ(refillSizes(firstOfTheLarge, 10),
              (std::vector<int>{2, 3, 5, 9, 16, 28, 50, 90, 90, 90}));
}

TEST_F(AMemPool, TakesOneChunkForAsManyBlocksAsItSays)
{
    // Blocks of a chunk lie a stride apart, so a gap shows where the next chunk begins.
    CMemPool pool(3);
    std::vector<std::uint8_t*> blocks;
    for (int i = 0; i < 10; ++i)
        blocks.push_back(static_cast<std::uint8_t*>(pool.alloc()));
    for (const std::size_t inside : {1u, 3u, 4u, 6u, 7u, 8u, 9u})
        EXPECT_EQ(blocks[inside] - blocks[inside - 1], 80) << inside;
    pool.releaseChunks();
}

TEST_F(AMemPool, GivesAlignedBlocksThatDontOverlap)
{
    for (const int sizeClass : {0, 1, 7, 126, 254}) {
        SCOPED_TRACE(sizeClass);
        CMemPool pool(sizeClass);
        const std::size_t size = (static_cast<std::size_t>(sizeClass) + 1) * 16;
        std::vector<std::uint8_t*> blocks;
        for (int i = 0; i < 200; ++i) {
            auto* block = static_cast<std::uint8_t*>(pool.alloc());
            EXPECT_EQ(reinterpret_cast<std::uintptr_t>(block) % 16, 0u);
            std::memset(block, i, size);
            blocks.push_back(block);
        }
        for (std::size_t i = 0; i < blocks.size(); ++i) {
            ASSERT_EQ(CBlockHeader::classByte(blocks[i]), sizeClass);
            ASSERT_EQ(blocks[i][0], static_cast<std::uint8_t>(i));
            ASSERT_EQ(blocks[i][size - 1], static_cast<std::uint8_t>(i));
        }
        pool.releaseChunks();
    }
}

TEST_F(AMemPool, UsesAFreedBlockFirst)
{
    CMemPool pool(2);
    void* kept = pool.alloc();
    void* freed = pool.alloc();
    pool.free(freed);
    EXPECT_EQ(pool.alloc(), freed);
    EXPECT_NE(kept, freed);
    pool.releaseChunks();
}

TEST(ALargeBlock, IsLaidOutForAnyAddressOfTheSystem)
{
    constexpr std::size_t kSize = 5000;
    alignas(16) std::uint8_t memory[kSize + CBlockHeader::kOverhead + 16];
    for (std::size_t offset = 0; offset < 16; ++offset) {
        SCOPED_TRACE(offset);
        std::uint8_t* raw = memory + offset;
        auto* block = static_cast<std::uint8_t*>(CBlockHeader::makeLarge(raw, kSize));
        std::memset(block, 0xAA, kSize);
        EXPECT_EQ(reinterpret_cast<std::uintptr_t>(block) % 16, 0u);
        EXPECT_LE(block + kSize, raw + kSize + CBlockHeader::kOverhead);
        EXPECT_GE(block - 10, raw);
        EXPECT_EQ(block[-10], block - 10 - raw);
        EXPECT_EQ(block[-1], 255);
        EXPECT_EQ(CBlockHeader::largeSize(block), kSize);
        EXPECT_EQ(CBlockHeader::largeRaw(block), raw);
    }
}

} // namespace

} // namespace tsm
