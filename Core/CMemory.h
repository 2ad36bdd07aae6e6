#pragma once

#include <cstddef>
#include <new>
#include <utility>

namespace tsm {

/// The block allocator. Blocks of up to 4080 bytes come from lock-free lists, one for each 16-byte
/// size class; larger ones from the system. Every block is aligned to 16 bytes. Pool memory stays
/// with the module until it is unloaded. When the system has no memory left the process ends with
/// a message: no caller tests for null.

/// A block of at least `size` bytes, owned by the caller until `freeBlock`; 0 gives a small block.
/// [any] Lock-free but for the refill of an empty size class.
[[nodiscard]] void* allocBlock(std::size_t size) noexcept;

/// A new block of `size` bytes with the first min(old capacity, `size`) bytes of `block`, which is
/// released; null behaves as `allocBlock`. The block always moves. [any]
[[nodiscard]] void* reallocBlock(void* block, std::size_t size) noexcept;

/// Gives a block back, on any thread; `block` is not null. [any]
void freeBlock(void* block) noexcept;

/// The bytes that may be used in `block`: the size class's, or for a large block those asked for.
/// [any]
[[nodiscard]] std::size_t blockCapacity(const void* block) noexcept;

/// Ends the process with a line about the `size` bytes that can't be had; for callers whose sizes
/// leave the range of their types. [any]
[[noreturn]] void failOutOfMemory(std::size_t size) noexcept;

/// Base of classes whose objects live in allocator blocks. Empty.
class CTsmMemAllocator {
public:
    static void* operator new(std::size_t size) { return allocBlock(size); }
    static void* operator new(std::size_t, void* place) noexcept { return place; }
    static void operator delete(void* block) noexcept
    {
        if (block)
            freeBlock(block);
    }
};

/// Constructs a `T` in a block of its own; ended by `destroyInBlock`. [any]
template <class T, class... Args>
[[nodiscard]] T* createInBlock(Args&&... args)
{
    static_assert(alignof(T) <= 16);
    return new (allocBlock(sizeof(T))) T(std::forward<Args>(args)...);
}

/// Destroys what `createInBlock` made; null is allowed. [any]
template <class T>
void destroyInBlock(T* object) noexcept
{
    if (!object)
        return;
    object->~T();
    freeBlock(object);
}

} // namespace tsm
