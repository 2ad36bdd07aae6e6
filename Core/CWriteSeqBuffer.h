#pragma once

#include "Core/CArray.h"
#include "Core/CMemory.h"
#include "Core/COutputStream.h"

#include <cstdint>

namespace tsm {

/// Output into memory: a growing list of chunks, so that what is written stays where it is. At most
/// 2 GB.
class CWriteSeqBuffer : public COutputStream, public CTsmMemAllocator {
public:
    /// `chunkSize` is the least size of a chunk in bytes, above 0.
    explicit CWriteSeqBuffer(int chunkSize = 256) noexcept;
    ~CWriteSeqBuffer() override;

    /// Errors: above 2 GB.
    [[nodiscard]] CError* write(const void* buffer, int count) override;

    /// Bytes written so far.
    [[nodiscard]] int getSize() const noexcept { return size; }
    /// Moves all data into `out`, without a copy when they lie in one chunk, and empties the
    /// object.
    void takeData(CByteBuffer& out);
    /// Writes the data to `stream`, chunk by chunk, and keeps them.
    [[nodiscard]] CError* writeTo(COutputStream& stream) const;

private:
    struct CChunk {
        std::uint8_t* data;
        std::int32_t capacity;
        std::int32_t used;
    };

    void beginChunk(int capacity);
    void appendToLast(const std::uint8_t* from, int count) noexcept;
    void freeChunks() noexcept;

    CArray<CChunk> chunks;
    std::int32_t chunkSize;
    std::int32_t size = 0;
};

} // namespace tsm
