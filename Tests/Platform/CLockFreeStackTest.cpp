#include "Platform/CLockFreeStack.h"

#include <gtest/gtest.h>

#include <array>
#include <atomic>
#include <thread>
#include <vector>

namespace tsm {

namespace {

struct alignas(16) CTestBlock {
    std::uint64_t link = 0; // the list's while the block is on it, else the owner's
    std::atomic<int> holders = 0;
    std::int64_t uses = 0; // plain: handing a block over must publish it
};

TEST(ALockFreeStack, GivesTheLastBlockFirst)
{
    std::array<CTestBlock, 4> blocks;
    CLockFreeStack stack;
    EXPECT_EQ(stack.pop(), nullptr);
    stack.push(&blocks[0]);
    CLockFreeStack::link(&blocks[1], &blocks[2]);
    CLockFreeStack::link(&blocks[2], &blocks[3]);
    stack.pushChain(&blocks[1], &blocks[3]);
    for (const int expected : {1, 2, 3, 0})
        EXPECT_EQ(stack.pop(), &blocks[static_cast<std::size_t>(expected)]);
    EXPECT_EQ(stack.pop(), nullptr);
}

// Few blocks and many threads: heads come back all the time, and owners overwrite the link word.
void popAndPush(CLockFreeStack& stack, int rounds, std::atomic<int>& clashes)
{
    for (int i = 0; i < rounds; ++i) {
        auto* first = static_cast<CTestBlock*>(stack.pop());
        auto* second = static_cast<CTestBlock*>(stack.pop());
        for (CTestBlock* block : {second, first}) { // put back in the other order
            if (!block)
                continue;
            if (block->holders.fetch_add(1, std::memory_order_relaxed) != 0)
                ++clashes;
            block->link = ~static_cast<std::uint64_t>(i);
            ++block->uses;
            block->holders.fetch_sub(1, std::memory_order_relaxed);
        }
        if (first)
            stack.push(first);
        if (second)
            stack.push(second);
    }
}

TEST(LockFreeStackThreads, NeverHandABlockToTwo)
{
    constexpr int kThreads = 4;
    constexpr int kRounds = 200000;
    std::array<CTestBlock, 5> blocks;
    CLockFreeStack stack;
    for (CTestBlock& block : blocks)
        stack.push(&block);

    std::atomic<int> clashes = 0;
    std::vector<std::thread> threads;
    for (int i = 0; i < kThreads; ++i)
        threads.emplace_back([&] { popAndPush(stack, kRounds, clashes); });
    for (std::thread& thread : threads)
        thread.join();

    EXPECT_EQ(clashes, 0);
    std::size_t found = 0;
    std::int64_t uses = 0;
    while (auto* block = static_cast<CTestBlock*>(stack.pop())) {
        ASSERT_LT(found++, blocks.size()) << "a block is on the list twice";
        uses += block->uses;
    }
    EXPECT_EQ(found, blocks.size());
    EXPECT_GT(uses, kRounds);
}

} // namespace

} // namespace tsm
