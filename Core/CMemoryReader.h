#pragma once

#include "Core/CPosInputStream.h"

#include <cstdint>

namespace tsm {

/// Input from a block of memory, which it doesn't own and which must outlive it. Reading in part
/// doesn't happen: after a failure the position is where it was.
class CMemoryReader : public CPosInputStream {
public:
    CMemoryReader(const void* memory, int size) noexcept;
    explicit CMemoryReader(const CByteBuffer& buffer) noexcept
        : CMemoryReader(buffer.data(), buffer.getSize())
    {
    }

    [[nodiscard]] CError* skip(int count) override;
    [[nodiscard]] CError* read(void* buffer, int count) override;
    [[nodiscard]] CError* readStreamed(void* buffer, int& count) override;
    [[nodiscard]] CError* getPosition(std::uint64_t& result) override;
    [[nodiscard]] CError* getSize(std::uint64_t& result) override;
    [[nodiscard]] CError* setPosition(std::uint64_t newPosition) override;

protected:
    /// The unread data, or null when there are none.
    [[nodiscard]] const void* unreadData() const noexcept;

private:
    [[nodiscard]] int getLeft() const noexcept { return size - position; }
    void take(void* buffer, int count) noexcept;

    const std::uint8_t* memory;
    std::int32_t size;
    std::int32_t position = 0;
};

} // namespace tsm
