#pragma once

#include "Core/CByteBuffer.h"
#include "Core/CError.h"
#include "Core/CString.h"

#include <bit>
#include <cstdint>
#include <type_traits>

namespace tsm {

/// Data in reading order: a file, memory, a host's stream, or what a filter makes of another one.
/// Numbers in stored data are little-endian. After a failed read, what was to be filled is
/// undefined. A stream has one user thread at a time.
class CInputStream : public CCheckedObject {
public:
    CInputStream() = default;
    virtual ~CInputStream() = default;
    CInputStream(const CInputStream&) = delete;
    CInputStream& operator=(const CInputStream&) = delete;

    /// The unread data when they lie in memory that outlives the stream, else null. They aren't
    /// consumed: skip() does that.
    [[nodiscard]] virtual const void* getMemoryPtr() const noexcept { return nullptr; }
    /// Passes `count` bytes over; nothing for a count below 1.
    [[nodiscard]] virtual CError* skip(int count);
    /// Reads exactly `count` bytes. Errors: fewer are left, the source's own.
    [[nodiscard]] virtual CError* read(void* buffer, int count) = 0;
    /// Reads up to `count` bytes and sets `count` to what came, which is fewer at the end of the
    /// data only, and 0 behind it. A stream that can't tell its end reads exactly `count`.
    [[nodiscard]] virtual CError* readStreamed(void* buffer, int& count);

    /// Reads the bytes of a number.
    template <class T>
    [[nodiscard]] CError* readValue(T& value)
    {
        static_assert(std::is_arithmetic_v<T> && std::endian::native == std::endian::little);
        TSM_TRY(read(&value, static_cast<int>(sizeof(T))));
        return nullptr;
    }

    /// Reads `count` bytes in place of what `out` holds. Memory is taken in steps that grow with
    /// what has come, so that a count from damaged data costs no more than twice what the stream
    /// holds. Errors: fewer are left, the source's own.
    [[nodiscard]] CError* readBytes(CByteBuffer& out, int count);

    /// Reads a u32 byte count, at most kMaxStringBytes, and that much UTF-8. Errors: too long a
    /// text, cut data.
    [[nodiscard]] CError* readString(CString& text);

    /// Reads a block of the zlib form: u32 id, u32 raw size, u32 Adler-32 of the raw size's bytes,
    /// a zlib stream (RFC 1950). The stream's end is read ahead of, so the block must be the last
    /// thing in its source. Memory grows with what the data really yield, whatever the raw size
    /// claims. Errors: other id, damaged head, data that are damaged or cut or more than the raw
    /// size, more than 2 GB.
    [[nodiscard]] CError* readCompressedData(CByteBuffer& out, std::uint32_t expectedId);

    /// Reads a block of the LZ4 form: u32 id, u32 raw size, u32 compressed size, u32 Adler-32 of
    /// both sizes' bytes, one LZ4 block. Leaves the stream exactly behind it. Errors as above.
    [[nodiscard]] CError* readCompressedDataLZ4(CByteBuffer& out, std::uint32_t expectedId);

    static constexpr std::uint32_t kMaxStringBytes = 61440;
};

} // namespace tsm
