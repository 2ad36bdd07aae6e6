#pragma once

#include "Core/CDataId.h"
#include "Core/CPosInputStream.h"

#include <cstdint>
#include <type_traits>

namespace tsm {

/// The four characters of a chunk's id as a little-endian number.
[[nodiscard]] consteval std::uint32_t chunkId(const char (&text)[5]) noexcept
{
    return dataId(text);
}
/// The id as text; what can't be printed becomes a question mark.
[[nodiscard]] CString chunkIdText(std::uint32_t id);

/// A chunk of a sound file or a container of chunks, of the EA IFF 85 family (RIFF and AIFF): a
/// span of the stream with a count of what is left of it. Structured data are read in two steps,
/// checkDataLeft() and then the reads, so that nothing is read past the chunk's end.
class CWaveChunk {
public:
    CWaveChunk() = default;
    /// The `size` bytes of `source` from `begin` on, or as many as a signed number can tell. The
    /// stream must outlive the chunk.
    CWaveChunk(CPosInputStream& source, std::uint64_t begin, std::uint64_t size,
               bool isLittleEndian) noexcept;

    [[nodiscard]] std::uint32_t getId() const noexcept { return id; }
    [[nodiscard]] std::int64_t getLeft() const noexcept { return left; }
    /// Where the next read takes place, in bytes from the stream's start.
    [[nodiscard]] std::uint64_t getPosition() const noexcept { return position; }
    /// True while there may be another chunk in this one.
    [[nodiscard]] bool hasChunks() const noexcept { return left > 8; }

    /// Counts `count` bytes as used. Errors: fewer are left.
    [[nodiscard]] CError* checkDataLeft(std::uint64_t count);
    /// Reads bytes that checkDataLeft() has counted, or a number in the chunk's byte order.
    [[nodiscard]] CError* read(void* bytes, int count);
    template <class T>
    [[nodiscard]] CError* readValue(T& value)
    {
        static_assert(std::is_unsigned_v<T>);
        std::uint8_t bytes[sizeof(T)];
        TSM_TRY(read(bytes, static_cast<int>(sizeof(T))));
        value = 0;
        for (std::size_t i = 0; i < sizeof(T); ++i)
            value = static_cast<T>(value << 8 | bytes[isLittle ? sizeof(T) - 1 - i : i]);
        return nullptr;
    }
    /// Reads four characters, as chunkId() has them.
    [[nodiscard]] CError* readId(std::uint32_t& characters);
    /// Passes bytes over that checkDataLeft() has counted, as far as chunks are concerned.
    void pass(std::uint64_t count) noexcept { position += count; }
    /// Puts the stream to where this chunk's next byte lies.
    [[nodiscard]] CError* seek();

    /// Enters the next chunk: id, u32 size, the data and a pad byte behind an odd size. This
    /// container goes on behind it. Errors: the chunk is larger than what is left here.
    [[nodiscard]] CError* openChunk(CWaveChunk& chunk);
    /// The two halves of openChunk(), for chunks with another header.
    [[nodiscard]] CError* readChunkHeader(std::uint32_t& nextId, std::uint32_t& size);
    [[nodiscard]] CError* enterChunk(CWaveChunk& chunk, std::uint32_t nextId, std::uint64_t size,
                                     std::uint64_t alignment, bool isPaddingRequired);
    /// Lets the container hold `count` bytes more; nothing happens beyond the range of a size.
    void grow(std::int64_t count) noexcept;

private:
    CPosInputStream* stream = nullptr;
    std::uint64_t position = 0;
    std::int64_t left = 0;
    std::uint32_t id = 0;
    bool isLittle = true;
};

} // namespace tsm
