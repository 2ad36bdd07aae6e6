#include "Core/CMemPool.h"

#include "Core/CBlockHeader.h"
#include "Core/CMemory.h"

#include <cstdlib>
#include <thread>
#include <utility>

namespace tsm {

void* CMemPool::refill() noexcept
{
    // A thread that comes during another's refill takes what that one publishes. It gives the
    // processor away at times, since the other may be waiting for just this one.
    for (int polls = 1; !lock.tryEnter(); ++polls) {
        if (void* block = freeList.pop())
            return block;
        if (polls % 64 == 0)
            std::this_thread::yield();
    }
    void* block = makeChunk();
    lock.leave();
    return block;
}

void* CMemPool::makeChunk() noexcept
{
    const int count = blocksPerChunk;
    const std::size_t size = static_cast<std::size_t>(count) * stride + CBlockHeader::kOverhead;
    void* raw = std::malloc(size);
    if (!raw)
        failOutOfMemory(size);
    chunks = new (raw) CChunk{chunks};

    std::uint8_t* first = CBlockHeader::firstBlock(raw);
    first[-1] = classByte;
    std::uint8_t* block = first;
    for (int i = 1; i < count; ++i) {
        block += stride;
        block[-1] = classByte;
        CLockFreeStack::link(block, block + stride);
    }
    freeList.pushChain(first + stride, block);

    if (count < maxBlocksPerChunk)
        blocksPerChunk = count * 9 / 5;
    return first;
}

void CMemPool::releaseChunks() noexcept
{
    while (freeList.pop()) {
    }
    while (chunks)
        std::free(std::exchange(chunks, chunks->next));
    blocksPerChunk = kFirstBlocksPerChunk;
}

} // namespace tsm
