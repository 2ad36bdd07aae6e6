#include "Core/CMemoryReader.h"

#include "Core/CText.h"

#include <algorithm>
#include <cassert>
#include <cstring>

namespace tsm {

CMemoryReader::CMemoryReader(const void* block, int blockSize) noexcept
    : memory(static_cast<const std::uint8_t*>(block)), size(blockSize)
{
    assert(blockSize >= 0 && (block || blockSize == 0));
}

CError* CMemoryReader::skip(int count)
{
    if (count < 1)
        return nullptr;
    if (count > getLeft())
        TSM_FAIL("@tsmstr_CMemoryReader_skip_EOF Premature end of memory resource while skipping "
                 "(pos %1, count %2, size %3).",
                 toString(position), toString(count), toString(size));
    position += count;
    return nullptr;
}

CError* CMemoryReader::read(void* buffer, int count)
{
    if (count < 0 || count > getLeft())
        TSM_FAIL("@tsmstr_CMemoryReader_read_EOF Premature end of memory resource while reading "
                 "(pos %1, count %2, size %3).",
                 toString(position), toString(count), toString(size));
    take(buffer, count);
    return nullptr;
}

CError* CMemoryReader::readStreamed(void* buffer, int& count)
{
    count = std::clamp(count, 0, getLeft());
    take(buffer, count);
    return nullptr;
}

CError* CMemoryReader::getPosition(std::uint64_t& result)
{
    result = static_cast<std::uint64_t>(position);
    return nullptr;
}

CError* CMemoryReader::getSize(std::uint64_t& result)
{
    result = static_cast<std::uint64_t>(size);
    return nullptr;
}

CError* CMemoryReader::setPosition(std::uint64_t newPosition)
{
    if (newPosition > static_cast<std::uint64_t>(size))
        TSM_FAIL("@tsmstr_CMemoryReader_setPosition_seek "
                 "Positioning beyond memory resource end (newpos %1, size %2).",
                 toString(static_cast<std::int64_t>(newPosition)), toString(size));
    position = static_cast<std::int32_t>(newPosition);
    return nullptr;
}

const void* CMemoryReader::unreadData() const noexcept
{
    return position < size ? memory + position : nullptr;
}

void CMemoryReader::take(void* buffer, int count) noexcept
{
    if (count == 0)
        return; // either address may be null then
    std::memcpy(buffer, memory + position, static_cast<std::size_t>(count));
    position += count;
}

} // namespace tsm
