#pragma once

#include "Tests/Support/CTestStreams.h"

#include <cstdint>
#include <initializer_list>
#include <string>

namespace tsm {

/// Builds sound files by hand, for what no library would write.
class CChunkBytes {
public:
    enum class EOrder { Little, Big };
    explicit CChunkBytes(EOrder byteOrder = EOrder::Little) : order(byteOrder) {}

    CChunkBytes& number(std::uint64_t value, int byteCount)
    {
        for (int i = 0; i < byteCount; ++i) {
            const int place = order == EOrder::Little ? i : byteCount - 1 - i;
            bytes.push_back(static_cast<std::uint8_t>(value >> (8 * place)));
        }
        return *this;
    }
    CChunkBytes& u16(std::uint64_t value) { return number(value, 2); }
    CChunkBytes& u32(std::uint64_t value) { return number(value, 4); }
    CChunkBytes& u64(std::uint64_t value) { return number(value, 8); }
    CChunkBytes& text(const std::string& characters)
    {
        bytes.insert(bytes.end(), characters.begin(), characters.end());
        return *this;
    }
    CChunkBytes& raw(const CBytes& more)
    {
        bytes.insert(bytes.end(), more.begin(), more.end());
        return *this;
    }
    CChunkBytes& zeros(std::size_t count) { return raw(CBytes(count, 0)); }
    /// A chunk with its size, and a pad byte behind an odd one.
    CChunkBytes& chunk(const char* id, const CBytes& data)
    {
        text(id).u32(data.size()).raw(data);
        return data.size() % 2 ? zeros(1) : *this;
    }
    /// Everything so far, as the contents of a file of this id and form.
    [[nodiscard]] CBytes file(const char* id, const char* form) const
    {
        return CChunkBytes(order).text(id).u32(bytes.size() + 4).text(form).raw(bytes).bytes;
    }

    CBytes bytes;

private:
    EOrder order;
};

/// The data of a "fmt " chunk.
inline CBytes waveFormat(int tag, int channelCount, int frameSize, int realBits)
{
    return CChunkBytes()
        .u16(static_cast<std::uint64_t>(tag))
        .u16(static_cast<std::uint64_t>(channelCount))
        .u32(44100)
        .u32(44100U * static_cast<unsigned>(frameSize))
        .u16(static_cast<std::uint64_t>(frameSize))
        .u16(static_cast<std::uint64_t>(realBits))
        .bytes;
}

} // namespace tsm
