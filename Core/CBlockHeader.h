#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>

namespace tsm {

/// The bytes in front of an allocator block. Offset -1 holds the size class or `kLarge`; in front
/// of a large block, -9 to -2 hold its size and -10 the distance from the start of the system
/// allocation to that byte.
class CBlockHeader {
public:
    static constexpr std::uint8_t kLarge = 255;
    /// What a system allocation needs beyond the blocks in it.
    static constexpr std::size_t kOverhead = 25;

    /// The address of the first block in the allocation `raw`: aligned to 16, 10 to 25 bytes in.
    [[nodiscard]] static std::uint8_t* firstBlock(void* raw) noexcept
    {
        auto* bytes = static_cast<std::uint8_t*>(raw);
        return bytes + kOverhead - ((reinterpret_cast<std::uintptr_t>(raw) + 9) & 15);
    }

    /// Lays a large block of `size` bytes into `raw`, which has `size + kOverhead` bytes.
    [[nodiscard]] static void* makeLarge(void* raw, std::size_t size) noexcept
    {
        auto* bytes = static_cast<std::uint8_t*>(raw);
        for (int i = 0; i < 16; ++i)
            bytes[i] = static_cast<std::uint8_t>(i);
        std::uint8_t* block = firstBlock(raw);
        writeLarge(block, size);
        return block;
    }

    /// Lays a large block into `raw`, aligned to 16, so that it ends with the `size + 16` bytes of
    /// the allocation.
    [[nodiscard]] static void* makeExact(void* raw, std::size_t size) noexcept
    {
        std::uint8_t* block = static_cast<std::uint8_t*>(raw) + 16;
        block[-10] = 6;
        writeLarge(block, size);
        return block;
    }

    [[nodiscard]] static std::uint8_t classByte(const void* block) noexcept
    {
        return static_cast<const std::uint8_t*>(block)[-1];
    }
    [[nodiscard]] static std::size_t largeSize(const void* block) noexcept
    {
        std::uint64_t size;
        std::memcpy(&size, static_cast<const std::uint8_t*>(block) - 9, sizeof size);
        return size;
    }
    /// The system allocation that a large block lies in.
    [[nodiscard]] static void* largeRaw(void* block) noexcept
    {
        auto* bytes = static_cast<std::uint8_t*>(block);
        return bytes - bytes[-10] - 10;
    }

private:
    static void writeLarge(std::uint8_t* block, std::uint64_t size) noexcept
    {
        std::memcpy(block - 9, &size, sizeof size);
        block[-1] = kLarge;
    }
};

} // namespace tsm
