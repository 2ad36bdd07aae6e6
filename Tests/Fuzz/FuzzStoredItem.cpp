// Stored items, as their file and as what their readers find in a good one. The first byte says
// which item it is.

#include "Audio/CAudioCCTable.h"
#include "Audio/CPresetDataIds.h"
#include "Core/CAppData.h"
#include "Tests/Fuzz/CFuzzWrapper.h"

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <memory>

namespace tsm {
namespace {

constexpr std::uint32_t kIds[] = {kTextDataId, kRawDataId, kPresetDataId, kPresetListDataId};
constexpr const char* kKeys[] = {"ccmap", "uicolor-palette", "uicolor-name", "integration-time",
                                 "lp-oversampling-enable"};

CAppData& store()
{
    return CAppData::getStore(CAppData::EStore::Local);
}

/// The file of an item of this product, in the folder that the process has for itself.
std::filesystem::path itemPath(const char* key)
{
    const char* folder = std::getenv("XDG_DATA_HOME");
    promise(folder != nullptr, "the process has a data folder of its own");
    return std::filesystem::path(folder) / "Tessmark/Audio Plug-Ins/Ferrit Reelpath" / key;
}

void writeFile(const char* key, const void* bytes, std::size_t size)
{
    const std::filesystem::path path = itemPath(key);
    std::filesystem::create_directories(path.parent_path());
    std::ofstream(path, std::ios::binary)
        .write(static_cast<const char*>(bytes), static_cast<std::streamsize>(size));
}

/// Reads the bytes as the whole file of an item, as each type.
void readAsFile(const std::uint8_t* data, std::size_t size)
{
    writeFile("fuzz-file", data, size);
    for (const std::uint32_t id : kIds) {
        CByteBuffer item;
        store().readData("fuzz-file", item, id, true);
    }
    (void)store().readText("fuzz-file", "otherwise");
}

/// Has the readers of an item in an instance take these bytes. The file is written from outside,
/// as another process does, since the store's own way waits for the disk each time.
void readAsItem(const char* key, std::uint32_t id, const CByteBuffer& bytes)
{
    static std::unique_ptr<CFuzzWrapper> wrapper;
    if (!wrapper) {
        (void)fuzzProduct();
        wrapper = std::make_unique<CFuzzWrapper>();
        promise(!hasFailed(wrapper->init()), "an instance begins");
    }
    const CByteBuffer block =
        bytesOf([&](COutputStream& stream) { return stream.writeCompressedData(bytes, id); });
    writeFile(key, block.data(), static_cast<std::size_t>(block.getSize()));
    CByteBuffer read;
    store().readData(key, read, id, true);
    promise(read == bytes, "what is stored reads back equal");
    store().tellChange(key, nullptr);
    CObject* plugin = wrapper->getParamCollector().getParent();
    auto* table = dynamic_cast<CAudioCCTable*>(plugin->findChild("cctable"));
    promise(table != nullptr, "the instance has a table of controllers");
    for (int controller = -1; controller <= CAudioCCTable::kControllerCount; ++controller)
        (void)table->findParam(controller);
}

} // namespace

void fuzzOne(const std::uint8_t* data, std::size_t size)
{
    const CFuzzChoice choice(data, size);
    if (choice.below(3) == 0)
        readAsFile(data, size);
    else
        readAsItem(kKeys[choice.below(5)], kIds[choice.below(4)],
                   CByteBuffer(data, static_cast<int>(size)));
}

} // namespace tsm
