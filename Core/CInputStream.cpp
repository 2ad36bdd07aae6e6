#include "Core/CInputStream.h"

#include "Core/CInputZipStream.h"
#include "Core/CText.h"

#include <algorithm>
#include <array>
#include <limits>
#include <lz4.h>
#include <zlib.h>

namespace tsm {
namespace {

constexpr int kSkipPiece = 32768;
constexpr int kFirstStep = 65536;
constexpr std::uint32_t kLargest = std::numeric_limits<std::int32_t>::max();
// An LZ4 block's length bytes stand for at most 255 bytes each, and its other bytes for less.
constexpr std::uint64_t kLargestLZ4Ratio = 255;

CError* readId(CInputStream& from, std::uint32_t expectedId, const char* message)
{
    std::uint32_t id = 0;
    TSM_TRY(from.readValue(id));
    if (id != expectedId)
        TSM_FAIL(message, toString(expectedId), toString(id));
    return nullptr;
}

/// Reads the sizes behind the id, and their check.
template <std::size_t Count>
CError* readHead(CInputStream& from, std::array<std::uint32_t, Count>& sizes, const char* message)
{
    TSM_TRY(from.read(sizes.data(), static_cast<int>(sizeof(sizes))));
    std::uint32_t stored = 0;
    TSM_TRY(from.readValue(stored));
    const auto computed = static_cast<std::uint32_t>(
        adler32(adler32(0, nullptr, 0), reinterpret_cast<const Bytef*>(sizes.data()),
                static_cast<uInt>(sizeof(sizes))));
    if (stored != computed)
        TSM_FAIL(message, toString(stored), toString(computed));
    return nullptr;
}

/// Unpacks one LZ4 block; the bytes are there, the sizes may be anything.
CError* unpackLZ4(CByteBuffer& out, std::uint32_t rawSize, const void* packed, int packedSize)
{
    int unpacked = -1; // the library's word for damaged data
    if (rawSize <= kLargest &&
        rawSize <= kLargestLZ4Ratio * static_cast<std::uint64_t>(packedSize)) {
        out.resize(static_cast<int>(rawSize));
        unpacked =
            LZ4_decompress_safe(static_cast<const char*>(packed),
                                reinterpret_cast<char*>(out.data()), packedSize, out.getSize());
    }
    if (unpacked != static_cast<std::int64_t>(rawSize))
        TSM_FAIL("@tsmstr_CInputStream_readCompressedDataLZ4_InvalidData2 "
                 "Invalid uncompressed data (expected %1 bytes, read %2).",
                 toString(rawSize), toString(unpacked));
    return nullptr;
}

} // namespace

CError* CInputStream::skip(int count)
{
    if (count < 1)
        return nullptr;
    CByteBuffer dropped;
    dropped.resize(std::min(count, kSkipPiece));
    while (count > 0) {
        const int piece = std::min(count, dropped.getSize());
        TSM_TRY(read(dropped.data(), piece));
        count -= piece;
    }
    return nullptr;
}

CError* CInputStream::readStreamed(void* buffer, int& count)
{
    TSM_TRY(read(buffer, count));
    return nullptr;
}

CError* CInputStream::readBytes(CByteBuffer& out, int count)
{
    out.clear();
    while (out.getSize() < count) {
        const int done = out.getSize();
        const int step = std::min(count - done, std::max(kFirstStep, done));
        out.resize(done + step);
        TSM_TRY(read(out.data() + done, step));
    }
    return nullptr;
}

CError* CInputStream::readString(CString& text)
{
    text.clear();
    std::uint32_t size = 0;
    TSM_TRY(readValue(size));
    if (size > kMaxStringBytes)
        TSM_FAIL("@tsmstr_CInputStream_readString_StringDataTooLong "
                 "String length %1 too long in readString().",
                 toString(size));
    if (size == 0)
        return nullptr;
    CByteBuffer bytes;
    bytes.resize(static_cast<int>(size));
    TSM_TRY(read(bytes.data(), bytes.getSize()));
    // Appended, not assigned: the text keeps its room.
    text.append(CString::fromUtf8(reinterpret_cast<const char*>(bytes.data()), bytes.getSize()));
    return nullptr;
}

CError* CInputStream::readCompressedData(CByteBuffer& out, std::uint32_t expectedId)
{
    TSM_TRY(readId(*this, expectedId,
                   "@tsmstr_CInputStream_readCompressedData_InvalidData "
                   "Invalid ID encountered when reading compressed data (expected %1, read %2)."));
    std::array<std::uint32_t, 1> rawSize{};
    TSM_TRY(readHead(*this, rawSize,
                     "@tsmstr_CInputStream_readCompressedData_HeadCRC "
                     "Invalid CRC encountered when reading compressed data "
                     "(expected %1, read %2)."));
    if (rawSize[0] > kLargest)
        TSM_FAIL("@tsmstr_CInputStream_readCompressedData_Greater2GB "
                 "The size of the stream is above allowed 2 GB.");
    CInputZipStream zip;
    TSM_TRY(zip.open(*this));
    TSM_TRY(zip.readBytes(out, static_cast<int>(rawSize[0])));
    TSM_TRY(zip.verifyEnd());
    TSM_TRY(zip.close());
    return nullptr;
}

CError* CInputStream::readCompressedDataLZ4(CByteBuffer& out, std::uint32_t expectedId)
{
    TSM_TRY(readId(*this, expectedId,
                   "@tsmstr_CInputStream_readCompressedDataLZ4_InvalidData "
                   "Invalid ID encountered when reading compressed data (expected %1, read %2)."));
    std::array<std::uint32_t, 2> sizes{};
    TSM_TRY(readHead(*this, sizes,
                     "@tsmstr_CInputStream_readCompressedDataLZ4_HeadCRC "
                     "Invalid CRC encountered when reading compressed data "
                     "(expected %1, read %2)."));
    const auto [rawSize, packedSize] = sizes;
    if (packedSize > kLargest)
        TSM_FAIL("@tsmstr_CInputStream_readCompressedDataLZ4_Greater2GB "
                 "The size of the stream is above allowed 2 GB.");
    const int count = static_cast<int>(packedSize);
    CByteBuffer copy;
    const void* packed = getMemoryPtr();
    // Passed over first: that finds out whether the memory holds all of the block.
    if (packed)
        TSM_TRY(skip(count));
    else
        TSM_TRY(readBytes(copy, count));
    TSM_TRY(unpackLZ4(out, rawSize, packed ? packed : copy.data(), count));
    return nullptr;
}

} // namespace tsm
