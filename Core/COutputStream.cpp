#include "Core/COutputStream.h"

#include "Core/COutputZipStream.h"
#include "Core/CText.h"

#include <array>
#include <cassert>
#include <lz4.h>
#include <lz4hc.h>
#include <string>
#include <zlib.h>

namespace tsm {
namespace {

constexpr int kLZ4Level = 12;

/// Writes what stands in front of both kinds of packed data: id, sizes, the sizes' check.
template <std::size_t Count>
CError* writeHead(COutputStream& to, std::uint32_t id,
                  const std::array<std::uint32_t, Count>& sizes)
{
    TSM_TRY(to.writeValue(id));
    TSM_TRY(to.write(sizes.data(), static_cast<int>(sizeof(sizes))));
    const uLong check =
        adler32(adler32(0, nullptr, 0), reinterpret_cast<const Bytef*>(sizes.data()),
                static_cast<uInt>(sizeof(sizes)));
    TSM_TRY(to.writeValue(static_cast<std::uint32_t>(check)));
    return nullptr;
}

} // namespace

CError* COutputStream::writeString(const CString& text)
{
    std::string bytes = text.toUtf8();
    // A stored text ends at its terminator; in UTF-8 nothing else has a zero byte.
    if (const std::size_t end = bytes.find('\0'); end != std::string::npos)
        bytes.resize(end);
    TSM_TRY(writeValue(static_cast<std::uint32_t>(bytes.size())));
    TSM_TRY(write(bytes.data(), static_cast<int>(bytes.size())));
    return nullptr;
}

CError* COutputStream::writeCompressedData(const void* data, int size, std::uint32_t id)
{
    assert(size >= 0);
    TSM_TRY(writeHead<1>(*this, id, {static_cast<std::uint32_t>(size)}));
    COutputZipStream zip;
    TSM_TRY(zip.open(*this, Z_DEFAULT_COMPRESSION));
    TSM_TRY(zip.write(data, size));
    TSM_TRY(zip.close());
    return nullptr;
}

CError* COutputStream::writeCompressedDataLZ4(const void* data, int size, std::uint32_t id)
{
    assert(size >= 0);
    CByteBuffer packed;
    packed.resize(LZ4_compressBound(size)); // 0 for more than the library takes
    const int packedSize =
        LZ4_compress_HC(data ? static_cast<const char*>(data) : "",
                        reinterpret_cast<char*>(packed.data()), size, packed.getSize(), kLZ4Level);
    if (packedSize <= 0)
        TSM_FAIL("@tsmstr_COutputStream_writeCompressedDataLZ4_Compress "
                 "Unable to compress %1 bytes of data.",
                 toString(size));
    TSM_TRY(writeHead<2>(
        *this, id, {static_cast<std::uint32_t>(size), static_cast<std::uint32_t>(packedSize)}));
    TSM_TRY(write(packed.data(), packedSize));
    return nullptr;
}

} // namespace tsm
