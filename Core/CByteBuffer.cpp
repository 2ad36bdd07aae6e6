#include "Core/CByteBuffer.h"

#include "Core/CMemory.h"

#include <cassert>
#include <cstring>
#include <utility>

namespace tsm {
namespace {

void copyBytes(std::uint8_t* to, const void* from, int count) noexcept
{
    // memcpy may not see null, not even for no bytes.
    if (count > 0)
        std::memcpy(to, from, static_cast<std::size_t>(count));
}

} // namespace

CByteBuffer::CByteBuffer(const void* bytes, int count)
{
    resize(count);
    copyBytes(data(), bytes, count);
}

CByteBuffer::CByteBuffer(const CByteBuffer& other) : CByteBuffer(other.data(), other.size) {}

CByteBuffer::CByteBuffer(CByteBuffer&& other) noexcept : CCheckedObject()
{
    takeFrom(other);
}

CByteBuffer& CByteBuffer::operator=(const CByteBuffer& other)
{
    if (this != &other) {
        clear();
        resize(other.size);
        copyBytes(data(), other.data(), other.size);
    }
    return *this;
}

CByteBuffer& CByteBuffer::operator=(CByteBuffer&& other) noexcept
{
    if (this != &other) {
        release();
        takeFrom(other);
    }
    return *this;
}

CByteBuffer::~CByteBuffer()
{
    release();
}

void CByteBuffer::resize(int newSize)
{
    assert(newSize >= 0);
    if (newSize > capacity) {
        const auto bytes = static_cast<std::size_t>(newSize);
        if (block) {
            block = static_cast<std::uint8_t*>(reallocBlock(block, bytes));
        } else {
            auto* made = static_cast<std::uint8_t*>(allocBlock(bytes));
            copyBytes(made, inlineBytes, size);
            block = made;
        }
        capacity = newSize;
    }
    size = newSize;
}

void CByteBuffer::adopt(void* allocated, int count) noexcept
{
    assert(allocated && count >= 0);
    release();
    block = static_cast<std::uint8_t*>(allocated);
    size = capacity = count;
}

bool operator==(const CByteBuffer& a, const CByteBuffer& b) noexcept
{
    return a.size == b.size &&
           std::memcmp(a.data(), b.data(), static_cast<std::size_t>(a.size)) == 0;
}

void CByteBuffer::takeFrom(CByteBuffer& other) noexcept
{
    if (!other.block)
        copyBytes(inlineBytes, other.inlineBytes, other.size);
    block = std::exchange(other.block, nullptr);
    size = std::exchange(other.size, 0);
    capacity = std::exchange(other.capacity, kInlineSize);
}

void CByteBuffer::release() noexcept
{
    if (block)
        freeBlock(block);
    block = nullptr;
    size = 0;
    capacity = kInlineSize;
}

} // namespace tsm
