#pragma once

#include "Core/CCheckedObject.h"

#include <cstdint>

namespace tsm {

/// A block of bytes with one owner. Up to 48 bytes lie in the object, more in an allocator block.
/// The bytes move when the object does, or when it grows.
class CByteBuffer : public CCheckedObject {
public:
    static constexpr int kInlineSize = 48;

    CByteBuffer() noexcept = default;
    /// Copies `count` bytes.
    CByteBuffer(const void* bytes, int count);
    CByteBuffer(const CByteBuffer& other);
    CByteBuffer(CByteBuffer&& other) noexcept;
    CByteBuffer& operator=(const CByteBuffer& other);
    CByteBuffer& operator=(CByteBuffer&& other) noexcept;
    ~CByteBuffer();

    [[nodiscard]] std::uint8_t* data() noexcept { return block ? block : inlineBytes; }
    [[nodiscard]] const std::uint8_t* data() const noexcept { return block ? block : inlineBytes; }
    [[nodiscard]] int getSize() const noexcept { return size; }
    [[nodiscard]] bool isEmpty() const noexcept { return size == 0; }
    [[nodiscard]] bool isInline() const noexcept { return !block; }

    /// Sets the size; the bytes up to the smaller of both sizes stay, new ones are undefined.
    void resize(int newSize);
    /// Empties the buffer and keeps its room.
    void clear() noexcept { size = 0; }
    /// Takes over an allocator block that holds `count` bytes, in place of its own.
    void adopt(void* allocated, int count) noexcept;

    /// True for the same bytes.
    friend bool operator==(const CByteBuffer& a, const CByteBuffer& b) noexcept;

private:
    void takeFrom(CByteBuffer& other) noexcept;
    void release() noexcept;

    std::uint8_t* block = nullptr;
    std::int32_t size = 0;
    std::int32_t capacity = kInlineSize;
    std::uint8_t inlineBytes[kInlineSize];
};

} // namespace tsm
