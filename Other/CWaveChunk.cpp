#include "Other/CWaveChunk.h"

#include "Core/CByteOrder.h"
#include "Core/CText.h"

#include <algorithm>
#include <limits>

namespace tsm {
namespace {

constexpr std::int64_t kMostBytes = std::numeric_limits<std::int64_t>::max();

} // namespace

CString chunkIdText(std::uint32_t id)
{
    CString text;
    for (int shift = 0; shift < 32; shift += 8) {
        const std::uint32_t code = id >> shift & 0xff;
        text.appendChar(code < ' ' || code > '~' ? '?' : code);
    }
    return text;
}

CWaveChunk::CWaveChunk(CPosInputStream& source, std::uint64_t begin, std::uint64_t size,
                       bool isLittleEndian) noexcept
    : stream(&source), position(begin), left(static_cast<std::int64_t>(std::min<std::uint64_t>(
                                            size, static_cast<std::uint64_t>(kMostBytes)))),
      isLittle(isLittleEndian)
{
}

CError* CWaveChunk::checkDataLeft(std::uint64_t count)
{
    if (static_cast<std::uint64_t>(left) < count)
        TSM_FAIL("@tsmstr_CWaveFile_checkDataLeft_DataError "
                 "Data composition error (left %1, required %2).",
                 toString(left),
                 toString(static_cast<std::int64_t>(
                     std::min(count, static_cast<std::uint64_t>(kMostBytes)))));
    left -= static_cast<std::int64_t>(count);
    return nullptr;
}

CError* CWaveChunk::read(void* bytes, int count)
{
    TSM_TRY(stream->read(bytes, count));
    position += static_cast<std::uint64_t>(count);
    return nullptr;
}

CError* CWaveChunk::seek()
{
    TSM_TRY(stream->setPosition(position));
    return nullptr;
}

CError* CWaveChunk::openChunk(CWaveChunk& chunk)
{
    std::uint32_t nextId = 0;
    std::uint32_t size = 0;
    TSM_TRY(readChunkHeader(nextId, size));
    TSM_TRY(enterChunk(chunk, nextId, size, 2, false));
    return nullptr;
}

CError* CWaveChunk::readChunkHeader(std::uint32_t& nextId, std::uint32_t& size)
{
    TSM_TRY(checkDataLeft(8));
    // Only here, not at the former chunk's end: behind the last one the stream may have no byte.
    TSM_TRY(seek());
    TSM_TRY(readId(nextId));
    TSM_TRY(readValue(size));
    return nullptr;
}

CError* CWaveChunk::readId(std::uint32_t& characters)
{
    std::uint8_t bytes[4];
    TSM_TRY(read(bytes, 4));
    characters = readU32(bytes);
    return nullptr;
}

CError* CWaveChunk::enterChunk(CWaveChunk& chunk, std::uint32_t nextId, std::uint64_t size,
                               std::uint64_t alignment, bool isPaddingRequired)
{
    TSM_TRY(checkDataLeft(size));
    chunk = CWaveChunk(*stream, position, size, isLittle);
    chunk.id = nextId;
    std::uint64_t padding = (alignment - size % alignment) % alignment;
    if (!isPaddingRequired)
        padding = std::min(padding, static_cast<std::uint64_t>(left));
    TSM_TRY(checkDataLeft(padding));
    position += size + padding;
    return nullptr;
}

void CWaveChunk::grow(std::int64_t count) noexcept
{
    if (count <= kMostBytes - left)
        left = std::max<std::int64_t>(left + count, 0);
}

} // namespace tsm
