// A block of the LZ4 form, from a plain stream and from memory in place; its head as the input has
// it, or made good.

#include "Core/CMemoryReaderStatic.h"
#include "Core/COutputStream.h"
#include "Tests/Fuzz/FuzzTarget.h"

#include <cstring>
#include <vector>
#include <zlib.h>

namespace tsm {
namespace {

constexpr std::uint32_t kId = 0x6b6e6261;
constexpr std::size_t kHeadSize = 16;

void makeHeadGood(std::vector<std::uint8_t>& block, bool isSizeKnown)
{
    std::memcpy(block.data(), &kId, sizeof kId);
    const auto packedSize = static_cast<std::uint32_t>(block.size() - kHeadSize);
    if (isSizeKnown)
        std::memcpy(&block[8], &packedSize, sizeof packedSize);
    const auto check = static_cast<std::uint32_t>(adler32(adler32(0, nullptr, 0), &block[4], 8));
    std::memcpy(&block[12], &check, sizeof check);
}

} // namespace

void fuzzOne(const std::uint8_t* data, std::size_t size)
{
    const CFuzzChoice choice(data, size);
    std::vector<std::uint8_t> block(data, data + size);
    if (choice.bit(0) && size >= kHeadSize)
        makeHeadGood(block, choice.bit(1));
    CGuardedInput plain(block.data(), block.size());
    CMemoryReaderStatic inPlace(block.data(), static_cast<int>(block.size()));
    CByteBuffer raw;
    CByteBuffer rawInPlace;
    const bool isWrong = hasFailed(plain.readCompressedDataLZ4(raw, kId));
    promise(isWrong == hasFailed(inPlace.readCompressedDataLZ4(rawInPlace, kId)),
            "memory and stream are judged alike");
    if (isWrong)
        return;
    promise(raw == rawInPlace, "memory and stream hold the same");
    const CByteBuffer again =
        bytesOf([&](COutputStream& stream) { return stream.writeCompressedDataLZ4(raw, kId); });
    CMemoryReader reader(again);
    CByteBuffer same;
    promise(!hasFailed(reader.readCompressedDataLZ4(same, kId)), "what is written reads back");
    promise(same == raw, "what is written reads back equal");
}

} // namespace tsm
