#include "Core/CWriteSeqBuffer.h"

#include <algorithm>
#include <cassert>
#include <cstring>
#include <limits>

namespace tsm {

CWriteSeqBuffer::CWriteSeqBuffer(int leastChunkSize) noexcept : chunkSize(leastChunkSize)
{
    assert(leastChunkSize > 0);
}

CWriteSeqBuffer::~CWriteSeqBuffer()
{
    freeChunks();
}

CError* CWriteSeqBuffer::write(const void* buffer, int count)
{
    assert(count >= 0);
    if (count < 1)
        return nullptr;
    if (count > std::numeric_limits<std::int32_t>::max() - size)
        TSM_FAIL("@tsmstr_CWriteSeqBuffer_write_Greater2GB "
                 "The size of the stream is above allowed 2 GB.");
    if (chunks.isEmpty())
        beginChunk(chunkSize);
    const auto* from = static_cast<const std::uint8_t*>(buffer);
    const int fitting = std::min(count, chunks.last().capacity - chunks.last().used);
    appendToLast(from, fitting);
    if (const int rest = count - fitting; rest > 0) {
        beginChunk(std::max(rest, chunkSize));
        appendToLast(from + fitting, rest);
    }
    return nullptr;
}

void CWriteSeqBuffer::takeData(CByteBuffer& out)
{
    out.clear();
    if (chunks.getCount() == 1) {
        out.adopt(chunks[0].data, chunks[0].used);
        chunks.clear();
        size = 0;
        return;
    }
    out.resize(size);
    std::uint8_t* to = out.data();
    for (const CChunk& chunk : chunks) {
        std::memcpy(to, chunk.data, static_cast<std::size_t>(chunk.used));
        to += chunk.used;
    }
    freeChunks();
}

CError* CWriteSeqBuffer::writeTo(COutputStream& stream) const
{
    for (const CChunk& chunk : chunks)
        TSM_TRY(stream.write(chunk.data, chunk.used));
    return nullptr;
}

void CWriteSeqBuffer::beginChunk(int capacity)
{
    auto* data = static_cast<std::uint8_t*>(allocBlock(static_cast<std::size_t>(capacity)));
    chunks.add({data, capacity, 0});
}

void CWriteSeqBuffer::appendToLast(const std::uint8_t* from, int count) noexcept
{
    CChunk& chunk = chunks.last();
    std::memcpy(chunk.data + chunk.used, from, static_cast<std::size_t>(count));
    chunk.used += count;
    size += count;
}

void CWriteSeqBuffer::freeChunks() noexcept
{
    for (const CChunk& chunk : chunks)
        freeBlock(chunk.data);
    chunks.clear();
    size = 0;
}

} // namespace tsm
