#pragma once

#include "Core/CMemoryReader.h"
#include "Core/CWriteSeqBuffer.h"

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <string>
#include <utility>
#include <vector>

namespace tsm {

using CBytes = std::vector<std::uint8_t>;

inline CBytes toBytes(const CByteBuffer& buffer)
{
    return CBytes(buffer.data(), buffer.data() + buffer.getSize());
}

inline CBytes toBytes(const std::string& text)
{
    return CBytes(text.begin(), text.end());
}

/// What `write` puts into a stream.
template <class Write>
CBytes written(Write&& write)
{
    CWriteSeqBuffer out;
    write(static_cast<COutputStream&>(out));
    CByteBuffer data;
    out.takeData(data);
    return toBytes(data);
}

inline void appendU32(CBytes& to, std::uint32_t value)
{
    for (int shift = 0; shift < 32; shift += 8)
        to.push_back(static_cast<std::uint8_t>(value >> shift));
}

/// A stream that offers reading and nothing else, as a host's stream may; reads what it holds in a
/// block of exactly that size, so that the sanitizer sees a step behind its end.
class CPlainInput : public CInputStream {
public:
    explicit CPlainInput(CBytes bytes) : data(std::move(bytes)) {}

    CError* read(void* buffer, int count) override
    {
        largestRead = std::max(largestRead, count);
        if (count > static_cast<int>(data.size()) - position)
            TSM_FAIL("@tsmstr_CPlainInput_read The plain stream has ended.");
        if (count > 0)
            std::memcpy(buffer, data.data() + position, static_cast<std::size_t>(count));
        position += count;
        return nullptr;
    }

    CBytes data;
    int position = 0;
    int largestRead = 0;
};

/// As `CPlainInput`, and it gives at most `piece` bytes to a streamed read.
class CTrickleInput : public CPlainInput {
public:
    CTrickleInput(CBytes bytes, int piece) : CPlainInput(std::move(bytes)), pieceSize(piece) {}

    CError* readStreamed(void* buffer, int& count) override
    {
        count = std::min({count, pieceSize, static_cast<int>(data.size()) - position});
        return read(buffer, count);
    }

private:
    int pieceSize;
};

/// Notes the sizes of what is written, and fails from the write of index `failAt` on.
class CRecordingOutput : public COutputStream {
public:
    CError* write(const void* buffer, int count) override
    {
        if (static_cast<int>(sizes.size()) == failAt)
            TSM_FAIL("@tsmstr_CRecordingOutput_write The disk is full.");
        sizes.push_back(count);
        const auto* from = static_cast<const std::uint8_t*>(buffer);
        data.insert(data.end(), from, from + count);
        return nullptr;
    }

    std::vector<int> sizes;
    CBytes data;
    int failAt = -1;
};

} // namespace tsm
