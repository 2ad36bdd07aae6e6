#include "Core/CMemory.h"

#include "Core/CBlockHeader.h"
#include "Core/CMemPool.h"

#include <algorithm>
#include <array>
#include <cassert>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>

namespace tsm {

namespace {

constexpr std::size_t kPoolCount = 255;
constexpr std::size_t kMaxPooledSize = kPoolCount * 16;
// Beyond it no object may be, and sums with a header could wrap.
constexpr std::size_t kMaxSize = PTRDIFF_MAX - 64;

[[nodiscard]] void* allocSystem(std::size_t size) noexcept
{
    void* raw = std::malloc(size);
    if (!raw)
        failOutOfMemory(size);
    return raw;
}

#ifdef TSM_EXACT_BLOCKS

[[nodiscard]] void* allocExact(std::size_t size) noexcept
{
    // Not empty, since the leak checker knows an allocation by addresses inside it.
    const std::size_t used = std::max<std::size_t>(size, 1);
    return CBlockHeader::makeExact(allocSystem(used + 16), used);
}

#else

template <std::size_t... Class>
constexpr std::array<CMemPool, kPoolCount> makePools(std::index_sequence<Class...>)
{
    return {CMemPool(static_cast<int>(Class))...};
}

constinit std::array<CMemPool, kPoolCount> pools =
    makePools(std::make_index_sequence<kPoolCount>());
static_assert(std::is_trivially_destructible_v<CMemPool>,
              "static objects of other files free their blocks in their destructors");

// The lowest priority: the C++ destructors of all static objects of the module have run by then.
[[gnu::destructor(101)]] void releasePools()
{
    for (CMemPool& pool : pools)
        pool.releaseChunks();
}

#endif

} // namespace

void failOutOfMemory(std::size_t size) noexcept
{
    std::fprintf(stderr, "Out of memory: %zu bytes can't be allocated.\n", size);
    std::abort();
}

void* allocBlock(std::size_t size) noexcept
{
    if (size > kMaxSize) [[unlikely]]
        failOutOfMemory(size);
#ifdef TSM_EXACT_BLOCKS
    return allocExact(size);
#else
    if (size > kMaxPooledSize)
        return CBlockHeader::makeLarge(allocSystem(size + CBlockHeader::kOverhead), size);
    return pools[size ? (size - 1) / 16 : 0].alloc();
#endif
}

void* reallocBlock(void* block, std::size_t size) noexcept
{
    void* moved = allocBlock(size);
    if (!block)
        return moved;
    std::memcpy(moved, block, std::min(blockCapacity(block), size));
    freeBlock(block);
    return moved;
}

void freeBlock(void* block) noexcept
{
    assert(block);
    const std::uint8_t classByte = CBlockHeader::classByte(block);
    if (classByte == CBlockHeader::kLarge) {
        std::free(CBlockHeader::largeRaw(block));
        return;
    }
#ifdef TSM_EXACT_BLOCKS
    std::abort(); // no block of this build has a class: the byte was overwritten
#else
    pools[classByte].free(block);
#endif
}

std::size_t blockCapacity(const void* block) noexcept
{
    const std::uint8_t classByte = CBlockHeader::classByte(block);
    if (classByte == CBlockHeader::kLarge)
        return CBlockHeader::largeSize(block);
    return (static_cast<std::size_t>(classByte) + 1) * 16;
}

} // namespace tsm
