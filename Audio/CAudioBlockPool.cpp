#include "Audio/CAudioBlockPool.h"

#include "Core/CMemory.h"

#include <algorithm>

#if defined(__SANITIZE_ADDRESS__)
#include <sanitizer/asan_interface.h>
#define TSM_POISON(address, size) ASAN_POISON_MEMORY_REGION(address, size)
#define TSM_UNPOISON(address, size) ASAN_UNPOISON_MEMORY_REGION(address, size)
#else
#define TSM_POISON(address, size) static_cast<void>(0)
#define TSM_UNPOISON(address, size) static_cast<void>(0)
#endif

namespace tsm {
namespace {

constexpr std::uintptr_t kAlignment = 64;

} // namespace

void CAudioBlockRef::giveBack(CAudioBlock* block) noexcept
{
    block->pool->giveBack(block);
}

CAudioBlockPool::~CAudioBlockPool()
{
    assert(usedCount == 0);
    for (CAudioBlock* block : freeLists)
        while (block)
            release(std::exchange(block, block->nextFree));
}

CAudioBlockRef CAudioBlockPool::take(int count)
{
    assert(count > 0);
    const std::uint32_t bytes = static_cast<std::uint32_t>(count) * sizeof(double);
    const std::uint32_t sizeClass = std::min((bytes - 1) / kClassBytes, kLargeClass);
    CAudioBlock* block = freeLists[sizeClass];
    if (!block || block->capacity < bytes)
        return takeNew(sizeClass, bytes);
    freeLists[sizeClass] = block->nextFree;
    return hold(block, bytes);
}

CAudioBlockRef CAudioBlockPool::takeNew(std::uint32_t sizeClass, std::uint32_t bytes)
{
    // Of the class of large blocks, one that is too small goes, so that they don't pile up.
    if (CAudioBlock* const small = freeLists[sizeClass]) {
        freeLists[sizeClass] = small->nextFree;
        release(small);
    }
    return hold(allocate(sizeClass, bytes), bytes);
}

CAudioBlockRef CAudioBlockPool::hold(CAudioBlock* block, [[maybe_unused]] std::uint32_t bytes)
{
    block->references = 1;
    block->isSparse = false;
    ++usedCount;
    TSM_UNPOISON(block->samples(), bytes);
    return CAudioBlockRef(block);
}

CAudioBlockRef CAudioBlockPool::takeFilled(int count, double value)
{
    CAudioBlockRef block = take(count);
    std::fill_n(block.write(), count, value);
    return block;
}

CAudioBlock* CAudioBlockPool::allocate(std::uint32_t sizeClass, std::uint32_t bytes)
{
    const std::uint32_t capacity = sizeClass < kLargeClass ? (sizeClass + 1) * kClassBytes : bytes;
    void* raw = allocBlock(capacity + CAudioBlock::kHeaderBytes + kAlignment);
    const auto first = reinterpret_cast<std::uintptr_t>(raw) + CAudioBlock::kHeaderBytes;
    const std::uintptr_t samples = (first + kAlignment - 1) & ~(kAlignment - 1);
    auto* block = reinterpret_cast<CAudioBlock*>(samples - CAudioBlock::kHeaderBytes);
    *block = {nullptr, raw, this, sizeClass, capacity, 0, false};
    ++allocationCount;
    TSM_POISON(block->samples(), capacity);
    return block;
}

void CAudioBlockPool::giveBack(CAudioBlock* block) noexcept
{
    TSM_POISON(block->samples(), block->capacity);
    --usedCount;
    block->nextFree = freeLists[block->sizeClass];
    freeLists[block->sizeClass] = block;
}

void CAudioBlockPool::release(CAudioBlock* block) noexcept
{
    TSM_UNPOISON(block->samples(), block->capacity);
    freeBlock(block->raw);
}

} // namespace tsm
