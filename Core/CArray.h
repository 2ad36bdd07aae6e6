#pragma once

#include "Core/CCheckedObject.h"
#include "Core/CMemory.h"

#include <cassert>
#include <cstdint>
#include <cstring>
#include <type_traits>
#include <utility>

namespace tsm {

/// A growing array of plain values (numbers, pointers, small records), in order of insertion.
///
/// Up to `InlineCount` elements live inside the object; growth goes to 2 * count + 1. Elements move
/// when the array grows, so nobody keeps their addresses: objects with an identity go into a
/// `COwnedArray`.
template <class T, int InlineCount = 8>
class CArray : public CCheckedObject {
    static_assert(std::is_trivially_copyable_v<T> && std::is_trivially_destructible_v<T>);

public:
    CArray() = default;
    CArray(const CArray& other) { assign(other); }
    CArray(CArray&& other) noexcept { takeFrom(other); }
    CArray& operator=(const CArray& other)
    {
        if (this != &other)
            assign(other);
        return *this;
    }
    CArray& operator=(CArray&& other) noexcept
    {
        if (this != &other) {
            freeHeap();
            takeFrom(other);
        }
        return *this;
    }
    ~CArray() { freeHeap(); }

    [[nodiscard]] int getCount() const noexcept { return count; }
    [[nodiscard]] int getCapacity() const noexcept { return capacity; }
    [[nodiscard]] bool isEmpty() const noexcept { return count == 0; }
    [[nodiscard]] T* data() noexcept { return items; }
    [[nodiscard]] const T* data() const noexcept { return items; }
    T* begin() noexcept { return items; }
    T* end() noexcept { return items + count; }
    const T* begin() const noexcept { return items; }
    const T* end() const noexcept { return items + count; }
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
    T& last() noexcept { return (*this)[count - 1]; }
    const T& last() const noexcept { return (*this)[count - 1]; }

    /// Appends a copy of `value`, which may be an element of this array.
    T& add(const T& value)
    {
        const T copy = value;
        if (count == capacity)
            grow();
        return *new (items + count++) T(copy);
    }
    /// Puts `value` in front of the element at `index` (0 to count).
    void insert(int index, const T& value)
    {
        assert(index >= 0 && index <= count);
        const T copy = value;
        add(copy);
        std::memmove(static_cast<void*>(items + index + 1), items + index,
                     static_cast<std::size_t>(count - 1 - index) * sizeof(T));
        items[index] = copy;
    }
    /// Takes `removeCount` elements out, from `index` on; the rest closes up.
    void remove(int index, int removeCount = 1) noexcept
    {
        assert(index >= 0 && removeCount >= 0 && index + removeCount <= count);
        std::memmove(static_cast<void*>(items + index), items + index + removeCount,
                     static_cast<std::size_t>(count - index - removeCount) * sizeof(T));
        count -= removeCount;
    }
    /// The index of the first element equal to `value`, or -1.
    [[nodiscard]] int indexOf(const T& value) const noexcept
    {
        for (int i = 0; i < count; ++i)
            if (items[i] == value)
                return i;
        return -1;
    }
    /// Sets the count; new elements are copies of `fill`.
    void resize(int newCount, const T& fill = T())
    {
        assert(newCount >= 0);
        const T copy = fill;
        reserve(newCount);
        for (int i = count; i < newCount; ++i)
            new (items + i) T(copy);
        count = newCount;
    }
    /// Makes room for `wanted` elements without changing the count.
    void reserve(int wanted)
    {
        if (wanted > capacity)
            setCapacity(wanted);
    }
    /// Empties the array and keeps its room.
    void clear() noexcept { count = 0; }

private:
    void grow()
    {
        if (count > (INT32_MAX - 1) / 2)
            failOutOfMemory(2 * static_cast<std::size_t>(count) * sizeof(T));
        setCapacity(2 * count + 1);
    }
    void setCapacity(int newCapacity)
    {
        const std::size_t bytes = static_cast<std::size_t>(newCapacity) * sizeof(T);
        if (isInline()) {
            void* heap = allocBlock(bytes);
            std::memcpy(heap, items, static_cast<std::size_t>(count) * sizeof(T));
            items = static_cast<T*>(heap);
        } else {
            items = static_cast<T*>(reallocBlock(items, bytes));
        }
        capacity = newCapacity;
    }
    void assign(const CArray& other)
    {
        count = 0;
        reserve(other.count);
        std::memcpy(static_cast<void*>(items), other.items,
                    static_cast<std::size_t>(other.count) * sizeof(T));
        count = other.count;
    }
    void takeFrom(CArray& other) noexcept
    {
        if (other.isInline()) {
            std::memcpy(static_cast<void*>(inlineItems()), other.items,
                        static_cast<std::size_t>(other.count) * sizeof(T));
            items = inlineItems();
            capacity = InlineCount;
        } else {
            items = std::exchange(other.items, other.inlineItems());
            capacity = std::exchange(other.capacity, InlineCount);
        }
        count = std::exchange(other.count, 0);
    }
    void freeHeap() noexcept
    {
        if (!isInline())
            freeBlock(items);
    }
    [[nodiscard]] bool isInline() const noexcept
    {
        return static_cast<const void*>(items) == static_cast<const void*>(inlineStorage);
    }
    T* inlineItems() noexcept { return reinterpret_cast<T*>(inlineStorage); }

    std::int32_t count = 0;
    T* items = reinterpret_cast<T*>(inlineStorage);
    std::int32_t capacity = InlineCount;
    alignas(T) unsigned char inlineStorage[static_cast<std::size_t>(InlineCount) * sizeof(T)];
};

} // namespace tsm
