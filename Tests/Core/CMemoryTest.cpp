#include "Core/CMemory.h"
#include "Core/CBlockHeader.h"
#include "Core/CMemPool.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <atomic>
#include <cstdint>
#include <cstring>
#include <random>
#include <thread>
#include <vector>

namespace tsm {

namespace {

// Made before main() and ended behind it; a fault in either ends the program with an error.
struct CStaticUser {
    void* early = allocBlock(100);
    ~CStaticUser()
    {
        freeBlock(early);
        freeBlock(reallocBlock(allocBlock(3000), 9000));
    }
} staticUser;

TEST(ABlock, IsAlignedAndHoldsWhatWasAskedFor)
{
    for (std::size_t size = 0; size < 4200; ++size) {
        auto* block = static_cast<std::uint8_t*>(allocBlock(size));
        ASSERT_EQ(reinterpret_cast<std::uintptr_t>(block) % 16, 0u) << size;
        ASSERT_GE(blockCapacity(block), size);
        std::memset(block, 0x5A, blockCapacity(block));
        freeBlock(block);
    }
}

#ifndef TSM_EXACT_BLOCKS

TEST(ABlock, HasTheClassOfItsSize)
{
    struct CRow {
        std::size_t size;
        int classByte;
        std::size_t capacity;
    };
    for (const CRow& row :
         {CRow{0, 0, 16}, CRow{1, 0, 16}, CRow{16, 0, 16}, CRow{17, 1, 32}, CRow{32, 1, 32},
          CRow{33, 2, 48}, CRow{4080, 254, 4080}, CRow{4081, 255, 4081}, CRow{70000, 255, 70000}}) {
        SCOPED_TRACE(row.size);
        void* block = allocBlock(row.size);
        EXPECT_EQ(CBlockHeader::classByte(block), row.classByte);
        EXPECT_EQ(blockCapacity(block), row.capacity);
        freeBlock(block);
    }
}

#else

TEST(ABlockDeathTest, ShowsAnOverrunOfOneByte)
{
    for (const std::size_t size : {1u, 15u, 16u, 100u, 4080u, 5000u}) {
        auto* block = static_cast<volatile char*>(allocBlock(size));
        EXPECT_DEATH(block[size] = 1, "heap-buffer-overflow") << size;
        freeBlock(const_cast<char*>(block));
    }
}

#endif

TEST(ABlockDeathTest, OfAnAbsurdSizeEndsTheProcess)
{
    for (const std::size_t size : {SIZE_MAX, SIZE_MAX - 14, SIZE_MAX - 24, SIZE_MAX / 2 - 20})
        EXPECT_DEATH((void)allocBlock(size), "Out of memory: [0-9]+ bytes") << size;
}

TEST(AReallocatedBlock, KeepsTheSmallerOfBothSizes)
{
    constexpr std::array<std::size_t, 7> kSizes{1, 16, 100, 4080, 4081, 10000, 200};
    auto* block = static_cast<std::uint8_t*>(reallocBlock(nullptr, kSizes[0]));
    block[0] = 0;
    for (std::size_t i = 1; i < kSizes.size(); ++i) {
        auto* moved = static_cast<std::uint8_t*>(reallocBlock(block, kSizes[i]));
        EXPECT_NE(moved, block);
        for (std::size_t k = 0; k < std::min(kSizes[i - 1], kSizes[i]); ++k)
            ASSERT_EQ(moved[k], static_cast<std::uint8_t>(k * 7)) << kSizes[i];
        for (std::size_t k = 0; k < kSizes[i]; ++k)
            moved[k] = static_cast<std::uint8_t>(k * 7);
        block = moved;
    }
    freeBlock(block);
}

/// Blocks on their way between threads. Each is filled with a stamp that its taker checks: a block
/// that two threads own at once loses it.
template <class Alloc, class Free>
class CExchange {
public:
    CExchange(Alloc allocating, Free freeing) : alloc(allocating), free(freeing) {}

    void run(int threadCount, int rounds)
    {
        std::vector<std::thread> threads;
        for (int i = 0; i < threadCount; ++i)
            threads.emplace_back([this, i, rounds] { work(static_cast<unsigned>(i), rounds); });
        for (std::thread& thread : threads)
            thread.join();
        for (auto& slot : slots)
            take(slot.exchange(nullptr));
    }
    std::atomic<int> damaged = 0;

private:
    struct CStamped {
        std::uint64_t words; // how many words of `stamp` follow
        std::uint64_t stamp;
    };

    void work(unsigned seed, int rounds)
    {
        std::mt19937 random(seed);
        for (int i = 0; i < rounds; ++i)
            take(slots[random() % slots.size()].exchange(make(random), std::memory_order_acq_rel));
    }
    CStamped* make(std::mt19937& random)
    {
        const std::uint64_t words = random() % 20;
        const std::size_t size = sizeof(CStamped) + words * 8;
        auto* block = new (alloc(size)) CStamped{words, random()};
        for (std::uint64_t i = 0; i < words; ++i)
            std::memcpy(reinterpret_cast<char*>(block + 1) + i * 8, &block->stamp, 8);
        return block;
    }
    void take(CStamped* block)
    {
        if (!block)
            return;
        for (std::uint64_t i = 0; i < block->words; ++i)
            if (std::memcmp(reinterpret_cast<char*>(block + 1) + i * 8, &block->stamp, 8) != 0)
                ++damaged;
        free(block);
    }

    Alloc alloc;
    Free free;
    std::array<std::atomic<CStamped*>, 64> slots{};
};

TEST(MemoryThreads, FreeWhatOthersAllocated)
{
    CExchange exchange([](std::size_t size) { return allocBlock(size); },
                       [](void* block) { freeBlock(block); });
    exchange.run(4, 30000);
    EXPECT_EQ(exchange.damaged, 0);
}

TEST(MemoryThreads, ShareOnePoolFromItsFirstRefillOn)
{
    for (int run = 0; run < 20; ++run) { // each begins with the rush on the first chunks
        CMemPool pool(11);
        CExchange exchange([&pool](std::size_t) { return pool.alloc(); },
                           [&pool](void* block) { pool.free(block); });
        exchange.run(4, 2000);
        ASSERT_EQ(exchange.damaged, 0);
        pool.releaseChunks();
    }
}

} // namespace

} // namespace tsm
