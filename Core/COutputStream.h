#pragma once

#include "Core/CByteBuffer.h"
#include "Core/CError.h"
#include "Core/CString.h"

#include <bit>
#include <cstdint>
#include <type_traits>

namespace tsm {

/// A taker of data: a file, memory, a host's stream, or a filter in front of another one. The forms
/// are those that `CInputStream` reads. A stream has one user thread at a time.
class COutputStream : public CCheckedObject {
public:
    COutputStream() = default;
    virtual ~COutputStream() = default;
    COutputStream(const COutputStream&) = delete;
    COutputStream& operator=(const COutputStream&) = delete;

    /// Writes all `count` bytes. Errors: the target's own.
    [[nodiscard]] virtual CError* write(const void* buffer, int count) = 0;

    /// Writes the bytes of a number, little-endian.
    template <class T>
    [[nodiscard]] CError* writeValue(T value)
    {
        static_assert(std::is_arithmetic_v<T> && std::endian::native == std::endian::little);
        TSM_TRY(write(&value, static_cast<int>(sizeof(T))));
        return nullptr;
    }

    /// Writes a u32 byte count and the text, up to its first zero, in UTF-8; surrogates are
    /// dropped. Texts of more than CInputStream::kMaxStringBytes can't be read back.
    [[nodiscard]] CError* writeString(const CString& text);

    /// Writes a block of the zlib form, at the library's default level.
    [[nodiscard]] CError* writeCompressedData(const void* data, int size, std::uint32_t id);
    [[nodiscard]] CError* writeCompressedData(const CByteBuffer& data, std::uint32_t id)
    {
        return writeCompressedData(data.data(), data.getSize(), id);
    }

    /// Writes a block of the LZ4 form, at the highest compression. Errors: more data than LZ4
    /// takes at once (0x7E000000 bytes), the target's own.
    [[nodiscard]] CError* writeCompressedDataLZ4(const void* data, int size, std::uint32_t id);
    [[nodiscard]] CError* writeCompressedDataLZ4(const CByteBuffer& data, std::uint32_t id)
    {
        return writeCompressedDataLZ4(data.data(), data.getSize(), id);
    }
};

} // namespace tsm
