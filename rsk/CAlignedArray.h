#pragma once

#include "Core/CMemory.h"

#include <cassert>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <type_traits>
#include <utility>

namespace tsm::rsk {

/// A run of plain values that starts at a multiple of 64 bytes, as vectors and cache lines like
/// it. Values start at zero unless it is said otherwise.
template <class T>
class CAlignedArray {
    static_assert(std::is_trivially_copyable_v<T> && std::is_trivially_destructible_v<T>);

public:
    CAlignedArray() = default;
    explicit CAlignedArray(int wanted) { allocate(wanted); }
    CAlignedArray(CAlignedArray&& other) noexcept { swap(other); }
    CAlignedArray& operator=(CAlignedArray&& other) noexcept
    {
        swap(other);
        return *this;
    }
    CAlignedArray(const CAlignedArray&) = delete;
    CAlignedArray& operator=(const CAlignedArray&) = delete;
    ~CAlignedArray() { release(); }

    /// Replaces the values by `wanted` zeros.
    void allocate(int wanted)
    {
        allocateUnset(wanted);
        clear();
    }
    /// Replaces the values by `wanted` ones of any content, which costs next to nothing at any
    /// count.
    void allocateUnset(int wanted)
    {
        assert(wanted >= 0);
        release();
        block = allocBlock(static_cast<std::size_t>(wanted) * sizeof(T) + kAlignment);
        const auto address = reinterpret_cast<std::uintptr_t>(block);
        items = reinterpret_cast<T*>((address + kAlignment - 1) / kAlignment * kAlignment);
        count = wanted;
    }
    /// Sets all values to zero.
    void clear() noexcept
    {
        if (count > 0)
            std::memset(static_cast<void*>(items), 0, static_cast<std::size_t>(count) * sizeof(T));
    }
    void swap(CAlignedArray& other) noexcept
    {
        std::swap(block, other.block);
        std::swap(items, other.items);
        std::swap(count, other.count);
    }

    [[nodiscard]] int getCount() const noexcept { return count; }
    [[nodiscard]] T* data() noexcept { return items; }
    [[nodiscard]] const T* data() const noexcept { return items; }
    T& operator[](int index) noexcept
    {
        assert(index >= 0 && index < count);
        return items[index];
    }
    const T& operator[](int index) const noexcept
    {
        assert(index >= 0 && index < count);
        return items[index];
    }

private:
    static constexpr std::size_t kAlignment = 64;

    void release() noexcept
    {
        if (block)
            freeBlock(block);
        block = nullptr;
    }

    void* block = nullptr;
    T* items = nullptr;
    int count = 0;
};

} // namespace tsm::rsk
