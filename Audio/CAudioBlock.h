#pragma once

#include <cassert>
#include <cstdint>
#include <utility>

namespace tsm {

class CAudioBlockPool;

/// The header of a block of samples; the samples, 64-bit floats, stand right behind it. Blocks are
/// counted by their holders (`CAudioBlockRef`) and belong to the audio thread, so the count is a
/// plain number.
struct CAudioBlock {
    CAudioBlock* nextFree;
    void* raw; // the allocation that the block lies in
    CAudioBlockPool* pool;
    std::uint32_t sizeClass;
    std::uint32_t capacity; // bytes
    std::uint32_t references;
    bool isSparse; // see CAudioBlockRef::markSparse

    [[nodiscard]] double* samples() noexcept
    {
        return reinterpret_cast<double*>(reinterpret_cast<char*>(this) + kHeaderBytes);
    }
    static constexpr std::size_t kHeaderBytes = 48;
};
static_assert(sizeof(CAudioBlock) <= CAudioBlock::kHeaderBytes);

/// One holder's share of a block; the last one gives the block back to its pool. Passing a signal
/// on is a copy of this. A block with several holders is never written. [audio]
class CAudioBlockRef {
public:
    CAudioBlockRef() = default;
    /// Takes over a reference that the caller holds.
    explicit CAudioBlockRef(CAudioBlock* held) noexcept : block(held) {}
    CAudioBlockRef(const CAudioBlockRef& other) noexcept : block(other.block)
    {
        if (block)
            ++block->references;
    }
    CAudioBlockRef(CAudioBlockRef&& other) noexcept : block(std::exchange(other.block, nullptr)) {}
    CAudioBlockRef& operator=(CAudioBlockRef other) noexcept
    {
        std::swap(block, other.block);
        return *this;
    }
    ~CAudioBlockRef()
    {
        if (block && --block->references == 0)
            giveBack(block);
    }
    void reset() noexcept { *this = CAudioBlockRef(); }

    explicit operator bool() const noexcept { return block != nullptr; }
    /// The same block, not only the same samples.
    bool operator==(const CAudioBlockRef& other) const noexcept = default;
    [[nodiscard]] const double* read() const noexcept { return block->samples(); }
    /// The samples for writing; only for the one holder. Takes the mark off.
    [[nodiscard]] double* write() const noexcept
    {
        assert(isSole());
        block->isSparse = false;
        return block->samples();
    }
    /// Marks what has just been written: every second sample is zero, the block's second one first,
    /// as an interpolator leaves it. Readers may make use of it or not.
    void markSparse() const noexcept
    {
        assert(isSole());
        block->isSparse = true;
    }
    [[nodiscard]] bool isSparse() const noexcept { return block->isSparse; }
    /// True when nobody else holds the block.
    [[nodiscard]] bool isSole() const noexcept { return block->references == 1; }

private:
    static void giveBack(CAudioBlock* block) noexcept;

    CAudioBlock* block = nullptr;
};

} // namespace tsm
