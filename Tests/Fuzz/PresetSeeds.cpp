#include "Audio/CAudioParam.h"
#include "Audio/CAudioParamInfo.h"
#include "Audio/CAudioParamRegistry.h"
#include "Audio/CAudioPresetBank.h"
#include "Audio/CPresetDataIds.h"
#include "Core/CMemoryReader.h"
#include "Core/CResourceMap.h"
#include "Tests/Fuzz/CFuzzWrapper.h"
#include "Tests/Fuzz/CSeedFolder.h"

namespace tsm {
namespace {

// How the target of states reads its input, by the first byte.
constexpr int kAsChunk = 0;
constexpr int kPartly = 1;
constexpr int kOneGroup = 2;
constexpr int kAsBank = 3;
constexpr int kAsDefault = 4;
constexpr int kAsPreset = 5;
constexpr int kWithSound = 8;

std::string fileName(const CString& text)
{
    std::string name = text.toUtf8();
    for (char& letter : name)
        if (letter == '/' || letter == ':' || letter == ' ')
            letter = '-';
    return name;
}

CByteBuffer resource(const char* name, std::uint32_t id)
{
    const CResourceMap::CResource* found = CResourceMap::get().find(name);
    promise(found != nullptr, "the product carries its banks");
    CMemoryReader reader(found->data, found->size);
    CByteBuffer data;
    promise(!hasFailed(reader.readCompressedData(data, id)), "the product's banks can be read");
    return data;
}

void addPreset(CSeedFolder& seeds, const CAudioPreset& preset)
{
    const CByteBuffer bytes = bytesOf([&](COutputStream& stream) { return preset.save(stream); });
    const std::string name = fileName(preset.name);
    seeds.add("preset", name, bytes);
    for (const int choice : {kAsPreset, kAsPreset + kWithSound, kPartly, kOneGroup, kAsDefault})
        seeds.add("state", name + "-" + std::to_string(choice), bytes, choice);
    for (const auto& item : preset.items)
        seeds.add("preset_values", name + "-" + fileName(item.key), item.value);
}

void addBank(CSeedFolder& seeds, const char* name, const CByteBuffer& bytes, bool isList)
{
    seeds.add("bank", name, bytes, isList ? 1 : 0);
    if (!isList)
        seeds.add("state", name, bytes, kAsBank);
    CMemoryReader reader(bytes);
    CAudioPresetBank bank;
    promise(!hasFailed(isList ? bank.loadList(reader) : bank.load(reader)), "a bank can be read");
    for (const CAudioPreset& preset : bank.presets)
        addPreset(seeds, preset);
}

void addState(CSeedFolder& seeds, CFuzzWrapper& wrapper, const char* name)
{
    const CByteBuffer state =
        bytesOf([&](COutputStream& stream) { return wrapper.saveState(stream); });
    seeds.add("state", name, state, kAsChunk);
    CMemoryReader reader(state);
    CByteBuffer raw;
    promise(!hasFailed(reader.readCompressedData(raw, kPresetDataId)), "a state can be read");
    CMemoryReader rawReader(raw);
    CAudioPreset preset;
    promise(!hasFailed(preset.load(rawReader)), "a state is a preset");
    preset.name = preset.name + " " + name;
    addPreset(seeds, preset);
}

} // namespace

void addPresetSeeds(CSeedFolder& seeds)
{
    addBank(seeds, "factory", resource("FactoryROM.cbf", kPresetBankDataId), false);
    addBank(seeds, "routing", resource("AppDataGlobal_routing-presets-sys", kPresetListDataId),
            true);
    CFuzzWrapper wrapper;
    promise(!hasFailed(wrapper.init()), "an instance begins");
    wrapper.afterInit();
    addState(seeds, wrapper, "initial");

    CArray<CAudioParam*> params;
    wrapper.getParamCollector().listParams(params);
    for (CAudioParam* param : params) {
        const CAudioParamInfo* info = param->getInfo();
        if (!info)
            continue;
        seeds.add("param_info", fileName(param->getName()),
                  bytesOf([&](COutputStream& stream) { return info->save(stream); }));
        if (info->shape.dataType == EAudioParamType::String)
            param->setText(0, 0, "A text of the user's");
        else if (info->shape.dataType == EAudioParamType::Number)
            param->setValue(1, 0, info->maxValues[0]);
    }
    addState(seeds, wrapper, "edited");
}

} // namespace tsm
