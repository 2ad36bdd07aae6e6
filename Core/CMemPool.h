#pragma once

#include "Core/CCheckedObject.h"
#include "Platform/CCriticalSection.h"
#include "Platform/CLockFreeStack.h"

#include <cstddef>
#include <cstdint>

namespace tsm {

/// The blocks of one size class. Chunks of blocks come from the system, each 1.8 times the last, so
/// that a rare size stays small and a busy one refills rarely; they go back with `releaseChunks`
/// only.
///
/// Constant-initialised and without a destructor: a table of pools serves before main() and until
/// after the last static object.
class alignas(64) CMemPool : public CCheckedObject {
public:
    /// Size class `sizeClass` (0 to 254): blocks of (sizeClass + 1) * 16 bytes.
    constexpr explicit CMemPool(int sizeClass) noexcept
        : stride((static_cast<std::size_t>(sizeClass) + 2) * 16),
          maxBlocksPerChunk(stride < 2048 ? 128 : 64),
          classByte(static_cast<std::uint8_t>(sizeClass))
    {
    }
    CMemPool(const CMemPool&) = delete;
    CMemPool& operator=(const CMemPool&) = delete;

    /// A block, owned by the caller. [any] Lock-free but for the refill.
    [[nodiscard]] void* alloc() noexcept
    {
        void* block = freeList.pop();
        return block ? block : refill();
    }
    /// Takes back a block of this pool. [any] Lock-free.
    void free(void* block) noexcept { freeList.push(block); }

    /// Gives all chunks back to the system and starts anew. Nobody may have a block any more.
    /// [setup]
    void releaseChunks() noexcept;

    /// How many blocks the next refill makes. [setup]
    [[nodiscard]] int getBlocksPerChunk() const noexcept { return blocksPerChunk; }

private:
    struct CChunk {
        CChunk* next;
    };
    static constexpr int kFirstBlocksPerChunk = 2;

    [[nodiscard]] void* refill() noexcept;
    [[nodiscard]] void* makeChunk() noexcept;

    CLockFreeStack freeList;
    CCriticalSection lock; // for the refill
    std::size_t stride;    // distance of blocks in a chunk, in bytes
    int maxBlocksPerChunk; // from here on chunks stop growing
    int blocksPerChunk = kFirstBlocksPerChunk;
    CChunk* chunks = nullptr;
    std::uint8_t classByte;
};

} // namespace tsm
