// A block of the zlib form. Its head may be as the input has it, or made good, so that what lies
// behind the check is reached. The stream is read in small pieces as well.

#include "Core/CByteOrder.h"
#include "Core/CInputZipStream.h"
#include "Core/CMemoryReader.h"
#include "Core/COutputStream.h"
#include "Tests/Fuzz/FuzzTarget.h"

#include <algorithm>
#include <cstring>
#include <vector>
#include <zlib.h>

namespace tsm {
namespace {

constexpr std::uint32_t kId = 0x6b6e6261;
constexpr std::size_t kHeadSize = 12;

void makeHeadGood(std::vector<std::uint8_t>& block)
{
    std::memcpy(block.data(), &kId, sizeof kId);
    const auto check = static_cast<std::uint32_t>(adler32(adler32(0, nullptr, 0), &block[4], 4));
    std::memcpy(&block[8], &check, sizeof check);
}

/// Reads the stream behind the head with reads of `step` bytes: it gives what one read gives.
void readInSteps(const std::vector<std::uint8_t>& block, const CByteBuffer& whole, int step)
{
    CGuardedInput source(block.data() + kHeadSize, block.size() - kHeadSize);
    source.pieceSize = step;
    CInputZipStream zip;
    promise(!hasFailed(zip.open(source)), "a stream that was read once opens again");
    std::vector<std::uint8_t> piece(static_cast<std::size_t>(step));
    for (int done = 0; done < whole.getSize(); done += step) {
        const int count = std::min(step, whole.getSize() - done);
        promise(!hasFailed(zip.read(piece.data(), count)), "small reads go as far as large ones");
        promise(std::memcmp(piece.data(), whole.data() + done, static_cast<std::size_t>(count)) ==
                    0,
                "small reads give what large ones give");
    }
    promise(!hasFailed(zip.verifyEnd()), "the end is where it was");
}

} // namespace

void fuzzOne(const std::uint8_t* data, std::size_t size)
{
    const CFuzzChoice choice(data, size);
    std::vector<std::uint8_t> block(data, data + size);
    if (choice.bit(0) && size >= kHeadSize)
        makeHeadGood(block);
    CGuardedInput source(block.data(), block.size());
    source.pieceSize = 1 + choice.below(200);
    CByteBuffer raw;
    if (hasFailed(source.readCompressedData(raw, kId)))
        return;
    readInSteps(block, raw, 1 + choice.below(97));
    const CByteBuffer again =
        bytesOf([&](COutputStream& stream) { return stream.writeCompressedData(raw, kId); });
    CMemoryReader reader(again);
    CByteBuffer same;
    promise(!hasFailed(reader.readCompressedData(same, kId)), "what is written reads back");
    promise(same == raw, "what is written reads back equal");
}

} // namespace tsm
