#pragma once

#include "Audio/CAudioBlock.h"
#include "Core/CCheckedObject.h"

#include <array>

namespace tsm {

/// The sample blocks of one plug-in instance: free lists by size, 512 bytes a class, and one for
/// everything above 64 KiB. Blocks go back to the system with the pool only, so processing
/// allocates nothing once each size has been in use. [audio] No lock.
///
/// Samples are aligned to 64 bytes, a cache line and the widest vector. Under the address sanitizer
/// free blocks, and the room behind what was asked for, are off limits.
class CAudioBlockPool : public CCheckedObject {
public:
    CAudioBlockPool() = default;
    CAudioBlockPool(const CAudioBlockPool&) = delete;
    CAudioBlockPool& operator=(const CAudioBlockPool&) = delete;
    /// All blocks have been given back by then.
    ~CAudioBlockPool();

    /// A block of `count` samples (at least 1) with undefined content and one holder.
    [[nodiscard]] CAudioBlockRef take(int count);
    /// The same, filled with `value`.
    [[nodiscard]] CAudioBlockRef takeFilled(int count, double value);

    /// Allocations from the system so far; stands still in the steady state.
    [[nodiscard]] int getAllocationCount() const noexcept { return allocationCount; }

private:
    friend class CAudioBlockRef;
    static constexpr std::uint32_t kClassBytes = 512;
    static constexpr std::uint32_t kLargeClass = 128;

    // Rare, so that it stays out of the short way through take().
    [[nodiscard, gnu::cold]] CAudioBlockRef takeNew(std::uint32_t sizeClass, std::uint32_t bytes);
    [[nodiscard]] CAudioBlockRef hold(CAudioBlock* block, std::uint32_t bytes);
    [[nodiscard]] CAudioBlock* allocate(std::uint32_t sizeClass, std::uint32_t bytes);
    void giveBack(CAudioBlock* block) noexcept;
    static void release(CAudioBlock* block) noexcept;

    std::array<CAudioBlock*, kLargeClass + 1> freeLists{};
    int allocationCount = 0;
    int usedCount = 0;
};

} // namespace tsm
