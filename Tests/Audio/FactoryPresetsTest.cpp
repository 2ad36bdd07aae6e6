#include "Tests/Audio/CTestInstance.h"
#include "Tests/Support/CTestStreams.h"

#include "Audio/CAudioParamRegistry.h"
#include "Audio/CPresetDataIds.h"
#include "Audio/CPresetItem.h"
#include "Audio/CRoutingPresets.h"
#include "Core/CAppData.h"
#include "Core/CMemoryReader.h"
#include "Core/CResourceReader.h"
#include "Core/CWriteSeqBuffer.h"

namespace tsm {
namespace {

using testing::ElementsAre;

class TheFactoryPresets : public AnInstance {
protected:
    CAudioParamRegistry& registry(const char* name = "plugin.param-registry")
    {
        CAudioParamRegistry* const found =
            CAudioParamRegistry::find(wrapper->getParamCollector(), name);
        EXPECT_NE(found, nullptr);
        return *found;
    }
    static CAudioPreset preset(CAudioParamRegistry& from, bool fromFactory, int index)
    {
        CWriteSeqBuffer stream;
        EXPECT_OK(from.acquirePreset(fromFactory, index, -1, stream));
        CByteBuffer bytes;
        stream.takeData(bytes);
        CMemoryReader reader(bytes);
        CAudioPreset read;
        EXPECT_OK(read.load(reader));
        return read;
    }
    static CAudioPresetBank routingPresets()
    {
        CByteBuffer data;
        CAppData::getStore(CAppData::EStore::Global)
            .readData("routing-presets-sys", data, kPresetListDataId);
        CMemoryReader reader(data);
        CAudioPresetBank bank;
        EXPECT_OK(bank.loadList(reader));
        return bank;
    }
    static std::vector<double> numbers(const CAudioPreset& from, const char* key)
    {
        CString definition;
        CAudioParamStorage values;
        const CByteBuffer* const bytes = from.items.find(key);
        std::vector<double> found;
        if (!bytes)
            return found;
        EXPECT_OK(readPresetItem(*bytes, definition, values));
        for (int i = 0; i < values.getElementCount(0); ++i)
            found.push_back(values.value(0, i));
        return found;
    }
};

TEST_F(TheFactoryPresets, AreTheProgramsOfANewInstance)
{
    COwnedArray<CString> names;
    int current = 0;
    registry().getPresetNames(false, names, current);
    std::vector<std::string> texts;
    for (const CString& name : names)
        texts.push_back(name.toUtf8());
    EXPECT_THAT(texts, ElementsAre("Default", "Drum Saturator", "Smashed Lows", "Saturated Highs",
                                   "Guitar Drive", "Medium Saturation", "Plain Hard Clip",
                                   "High Sand", "Moderate Grit", "Replica"));
    EXPECT_EQ(current, 0);
}

// The values as they stand in the definition of the product's default sound.
TEST_F(TheFactoryPresets, BeginWithTheDefaultSound)
{
    const CAudioPreset first = preset(registry(), true, 0);
    EXPECT_EQ(first.name, "gplu:Default");
    struct CRow {
        const char* key;
        std::vector<double> values;
    };
    const CRow rows[] = {{"bypass-enable", {0}},
                         {"groupsel", {0}},
                         {"io-params.grouping", {0, 0}},
                         {"io-params.in-routing", {1, 2}},
                         {"io-params.out-routing", {1, 2}},
                         {"io-params.show-all-channels", {0}},
                         {"modOutGain.gain", {1}},
                         {"modReelpath.cab-enable", {1}},
                         {"modReelpath.cab-index", {1}},
                         {"modReelpath.emphasis", {10}},
                         {"modReelpath.flutter", {0.5}},
                         {"modReelpath.fluttermode", {1}},
                         {"modReelpath.hardness", {0.2}},
                         {"modReelpath.highgain", {0}},
                         {"modReelpath.mode", {0}},
                         {"modReelpath.recgain", {1}},
                         {"modReelpath.saturation", {1}},
                         {"oversampling", {1}}};
    for (const CRow& row : rows)
        EXPECT_EQ(numbers(first, row.key), row.values) << row.key;
    const char* const texts[] = {"instance-name", "io-params.group-names",
                                 "io-params.in-channel-names", "modReelpath.cab-filename",
                                 "preset-name"};
    for (const char* key : texts)
        EXPECT_TRUE(first.items.contains(key)) << key;
    EXPECT_EQ(first.items.getCount(), static_cast<int>(std::size(rows) + std::size(texts)));
    EXPECT_EQ(wrapper->param("instance-name").text(0, 0), " ");
    EXPECT_EQ(wrapper->param("modReelpath.hardness").value(0, 0), 0.2);
}

TEST_F(TheFactoryPresets, HoldWhatAnInstanceStores)
{
    CAudioParamRegistry& master = registry();
    for (int i = 0; i < 10; ++i) {
        SCOPED_TRACE(i);
        const CAudioPreset wanted = preset(master, true, i);
        EXPECT_OK(master.activateRomPreset(i));
        const CAudioPreset live = preset(master, false, -1);
        EXPECT_EQ(live.name, wanted.name);
        ASSERT_EQ(live.items.getCount(), wanted.items.getCount());
        for (const auto& item : wanted.items) {
            const CByteBuffer* const stored = live.items.find(item.key);
            ASSERT_NE(stored, nullptr) << item.key.toUtf8();
            EXPECT_TRUE(*stored == item.value) << item.key.toUtf8();
        }
    }
}

// Host and window at one instance: the chunk is what a session file keeps.
class TheSavedState : public TheFactoryPresets {
protected:
    /// From here on each activation adapts the routing to these.
    void nameHostChannels()
    {
        CHostChannelNames names;
        names.main.create("Left");
        names.main.create("Right");
        wrapper->setChannelNames(std::move(names));
        wrapper->updateRouting(true, nullptr);
    }
    CBytes save()
    {
        return written([&](COutputStream& stream) { EXPECT_OK(wrapper->saveState(stream)); });
    }
    std::string load(const CBytes& chunk)
    {
        CTrickleInput input(chunk, 97);
        return takeMessage(wrapper->loadState(input));
    }
};

TEST_F(TheSavedState, ComesBackByteByByte)
{
    nameHostChannels();
    std::vector<CBytes> chunks;
    for (int program = 0; program < 10; ++program) {
        registry().selectProgram(program, nullptr);
        CAudioParam& gain = wrapper->param("modOutGain.gain");
        CAudioParamRegistry::noteUserEdit(gain, 0, nullptr);
        gain.setValue(0, 0, 0.5 + 0.1 * program);
        wrapper->param("bypass-enable").setValue(0, 0, program % 2);
        chunks.push_back(save());
    }
    makeInstance();
    nameHostChannels();
    for (const CBytes& chunk : chunks) {
        EXPECT_EQ(load(chunk), "");
        EXPECT_EQ(save(), chunk);
        EXPECT_EQ(wrapper->param("preset-name").text(0, 0), "User");
    }
    EXPECT_EQ(wrapper->param("bypass-enable").value(0, 0), 1.0);
}

TEST_F(TheSavedState, IsLeftAloneByAChunkThatIsNone)
{
    registry().selectProgram(3, nullptr);
    const CBytes other = save();
    registry().selectProgram(7, nullptr);
    const CBytes before = save();
    const auto isBlock = [](const CBytes& chunk) {
        CTrickleInput input(chunk, 97);
        CByteBuffer raw;
        return takeMessage(input.readCompressedData(raw, kPresetDataId)).empty();
    };
    // The compressed data end with a check that nobody needs.
    for (std::size_t size = 0; size + 5 < other.size(); ++size) {
        EXPECT_NE(load(CBytes(other.begin(), other.begin() + static_cast<std::ptrdiff_t>(size))),
                  "");
        ASSERT_EQ(save(), before) << size;
    }
    for (std::size_t at = 0; at < other.size(); ++at) {
        SCOPED_TRACE(at);
        CBytes chunk = other;
        chunk[at] ^= 0x10;
        const std::string message = load(chunk);
        if (!isBlock(chunk)) {
            EXPECT_NE(message, "");
            ASSERT_EQ(save(), before);
            continue;
        }
        EXPECT_EQ(load(save()), "") << "whatever it was, the instance goes on";
        ASSERT_EQ(load(before), "");
        ASSERT_EQ(save(), before);
    }
}

TEST_F(TheFactoryPresets, OfTheRoutingAreUsableWhereTheyFit)
{
    const CAudioPresetBank bank = routingPresets();
    ASSERT_EQ(bank.presets.getCount(), 15);
    EXPECT_EQ(bank.name, "");
    std::vector<std::string> withoutBoth;
    std::vector<std::string> withMidSide;
    for (const CAudioPreset& each : bank.presets) {
        EXPECT_EQ(each.getId(), "TMIO");
        if (!isRoutingPresetUsable(each, false, false))
            withoutBoth.push_back(each.getDisplayName().toUtf8());
        if (!isRoutingPresetUsable(each, true, false))
            withMidSide.push_back(each.getDisplayName().toUtf8());
        EXPECT_TRUE(isRoutingPresetUsable(each, true, true));
    }
    EXPECT_THAT(withoutBoth, ElementsAre("Mid-Side Stereo", "Mid-Side Linked", "Stereo Side-Chain",
                                         "Mono Side-Chain"));
    EXPECT_THAT(withMidSide, ElementsAre("Stereo Side-Chain", "Mono Side-Chain"));
}

TEST_F(TheFactoryPresets, OfTheRoutingAreActivatedByTheirOwnRegistry)
{
    CAudioParamRegistry& io = registry("plugin.param-registry-io");
    COwnedArray<CString> names;
    io.getStoredPresetNames(names);
    ASSERT_EQ(names.getCount(), 15);
    const auto activate = [&](CAudioParamRegistry& target, int index) {
        CWriteSeqBuffer stream;
        EXPECT_OK(io.acquireStoredPreset(index, stream));
        CByteBuffer bytes;
        stream.takeData(bytes);
        CMemoryReader reader(bytes);
        return target.activatePreset(reader, false, -1);
    };
    EXPECT_FAILS_WITH(activate(registry(), 0), "Incompatible preset.");
    for (int i = 0; i < names.getCount(); ++i)
        EXPECT_OK(activate(io, i));
    EXPECT_EQ(wrapper->param("io-params.group-names").text(0, 0), "S-To-M");
    EXPECT_EQ(wrapper->param("io-params.in-routing").value(0, 1), 1.0);
    EXPECT_EQ(wrapper->param("io-params.out-routing").value(0, 1), 1.0);
    EXPECT_EQ(wrapper->param("modReelpath.hardness").value(0, 0), 0.2) << "none of the routing's";
    const CAudioParam* const bare =
        wrapper->getParamCollector().find("plugin.modMain.io-params.ms-pairs");
    ASSERT_NE(bare, nullptr);
    EXPECT_FALSE(bare->hasValues());
}

} // namespace
} // namespace tsm
