#include "Core/CDataId.h"
#include "Core/COutputStream.h"
#include "Tests/Fuzz/CSeedFolder.h"
#include "Tests/Fuzz/FuzzTarget.h"
#include "Tests/Support/CChunkBytes.h"

#include <cstring>

namespace tsm {
namespace {

// The targets' first bytes: the head is made good, and in LZ4's case the compressed size.
constexpr int kAsItIs = 0;
constexpr int kGoodHead = 3;

void addBlocks(CSeedFolder& seeds, const std::string& name, const CBytes& content)
{
    constexpr std::uint32_t kId = dataId("abnk");
    const CByteBuffer raw(content.data(), static_cast<int>(content.size()));
    const CByteBuffer zlib =
        bytesOf([&](COutputStream& stream) { return stream.writeCompressedData(raw, kId); });
    const CByteBuffer lz4 =
        bytesOf([&](COutputStream& stream) { return stream.writeCompressedDataLZ4(raw, kId); });
    for (const int choice : {kAsItIs, kGoodHead}) {
        seeds.add("zlib_block", name + "-" + std::to_string(choice), zlib, choice);
        seeds.add("lz4_block", name + "-" + std::to_string(choice), lz4, choice);
    }
}

CBytes storedText(const char* text)
{
    return CChunkBytes().u32(std::strlen(text)).text(text).bytes;
}

} // namespace

void addStoredSeeds(CSeedFolder& seeds)
{
    CBytes mixed;
    for (unsigned i = 0; i < 300; ++i)
        mixed.push_back(static_cast<std::uint8_t>(i * i % 251));
    addBlocks(seeds, "mixed", mixed);
    addBlocks(seeds, "even", CBytes(1000, 7));
    addBlocks(seeds, "empty", {});

    const CBytes controllers = CChunkBytes()
                                   .u32(2)
                                   .u32(7)
                                   .raw(storedText("plugin.ext-param-list.ext-param"))
                                   .u32(200)
                                   .raw(storedText("x"))
                                   .bytes;
    // First bytes that are no multiples of 3 name an item and a type by their rests.
    for (const int choice : {1, 2, 5, 7, 10, 25, 28, 41, 55})
        seeds.add("stored_item", "controllers-" + std::to_string(choice), controllers, choice);
    for (const int choice : {4, 8, 32, 44, 52})
        seeds.add("stored_item", "number-" + std::to_string(choice), storedText("12.5"), choice);
    for (const std::uint32_t id : {kTextDataId, kRawDataId}) {
        const CBytes text = storedText("stored");
        const CByteBuffer file = bytesOf([&](COutputStream& stream) {
            return stream.writeCompressedData(text.data(), static_cast<int>(text.size()), id);
        });
        seeds.add("stored_item", "file-" + std::to_string(id), file, 0);
    }
}

} // namespace tsm
