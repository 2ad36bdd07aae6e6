#include "Tests/Support/CRegistryTree.h"

#include "Audio/CPresetDataIds.h"
#include "Core/CAppData.h"
#include "Tests/Support/CDocumentBytes.h"

namespace tsm {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

constexpr const char* kStart = "Undo history start";

std::vector<std::uint8_t> compressed(const std::vector<std::uint8_t>& bytes, std::uint32_t id)
{
    CWriteSeqBuffer stream;
    EXPECT_OK(stream.writeCompressedData(bytes.data(), static_cast<int>(bytes.size()), id));
    CByteBuffer data;
    stream.takeData(data);
    return {data.data(), data.data() + data.getSize()};
}

/// Notes what a registry tells.
class CRegistryLog : public CRegistryListener {
public:
    ~CRegistryLog() override { attach(nullptr); }
    void onRegistryUpdate(CAudioParamRegistry::EUpdate update, const void* sender) override
    {
        updates.push_back(update);
        lastSender = sender;
    }
    std::vector<CAudioParamRegistry::EUpdate> updates;
    const void* lastSender = nullptr;
};

class CProgramLog : public CProgramChangeListener {
public:
    ~CProgramLog() override { attach(nullptr); }
    void onProgramChange(const void* sender) override { senders.push_back(sender); }
    std::vector<const void*> senders;
};

class ARegistry : public ARegistryTree {
protected:
    void SetUp() override
    {
        ARegistryTree::SetUp();
        CByteList bank;
        bank.text("as saved").u32(3);
        for (const auto& preset :
             {presetBytes("test:A", {{"gain", 1}, {"mode", 10}}),
              presetBytes("test:B", {{"gain", 2}, {"bypass", 1}}), presetBytes("test:C", {})})
            bank.bytes.insert(bank.bytes.end(), preset.begin(), preset.end());
        bankBytes = bank.bytes;
        factory.emplace("TestROM.cbf", compressed(bankBytes, kPresetBankDataId));
        makeRegistry({{"file", "TestROM.cbf"}});
    }
    void TearDown() override
    {
        ARegistryTree::TearDown();
        factory.reset();
    }
    std::vector<std::string> names(bool fromFactory, int& current)
    {
        COwnedArray<CString> found;
        registry->getPresetNames(fromFactory, found, current);
        std::vector<std::string> texts;
        for (const CString& name : found)
            texts.push_back(name.toUtf8());
        return texts;
    }
    std::vector<std::string> programs()
    {
        int current = 0;
        std::vector<std::string> texts = names(false, current);
        texts.push_back("at " + std::to_string(current));
        return texts;
    }

    std::vector<std::uint8_t> bankBytes;
    std::optional<CTestResource> factory;
};

TEST_F(ARegistry, WritesThePresetFormat)
{
    gain->setValue(1, 0, 7);
    bypass->setValue(0, 0, 1);
    CByteList expected;
    const auto head = [&](const char* key, std::uint32_t size, std::uint32_t type,
                          std::uint32_t groups) {
        expected.text(key).u32(size).text(std::string("audio.modMain.") + key).u32(1).u32(1);
        expected.u32(type).u32(groups);
    };
    expected.text("test:A").u32(6);
    head("bypass", 24 + 16 + 4 + 8, 0, 1);
    expected.u32(1).f64(0x3ff0000000000000);
    head("gain", 22 + 16 + 24, 0, 2);
    expected.u32(1).f64(0x4049000000000000).u32(1).f64(0x401c000000000000);
    head("group-names", 29 + 16 + 4 + 2 * 12 + 9 + 12, 1, 1);
    expected.u32(2).u32(1).u32(1).text("Front").u32(2).u32(1).text("Rear").u32(2).u32(1).u32(2);
    head("io.labels", 27 + 16 + 4 + 2 * 13 + 12, 1, 1);
    expected.u32(2).u32(1).u32(1).text("L").u32(2).u32(1).text("R").u32(2).u32(1).u32(2);
    head("mode", 22 + 16 + 12, 0, 1);
    expected.u32(1).f64(0);
    head("preset-name", 29 + 16 + 4 + 12 + 7 + 8, 1, 1);
    expected.u32(1).u32(1).u32(1).text("Default").u32(1).u32(1);
    EXPECT_EQ(state(), expected.bytes);
}

TEST_F(ARegistry, BeginsWithTheFactoryBankAsItsSession)
{
    int current = 0;
    EXPECT_THAT(names(true, current), ElementsAre("A", "B", "C"));
    EXPECT_EQ(current, -1);
    EXPECT_THAT(programs(), ElementsAre("A", "B", "C", "at 0"));
    EXPECT_EQ(gain->value(0, 0), 50.0) << "nothing is applied yet";
    registry->applyInitial();
    EXPECT_EQ(gain->value(0, 0), 1.0);
    EXPECT_EQ(textOf(*presetName), "A");
    EXPECT_THAT(steps(), ElementsAre(kStart, "at 0"));

    std::vector<std::uint8_t> expected = CByteList().text("Factory ROM").bytes;
    const std::size_t nameSize = CByteList().text("as saved").bytes.size();
    expected.insert(expected.end(), bankBytes.begin() + static_cast<std::ptrdiff_t>(nameSize),
                    bankBytes.end());
    EXPECT_EQ(bytesOf([&](COutputStream& stream) { return registry->acquireBank(true, stream); }),
              expected);
}

TEST_F(ARegistry, MakesAnEmptyPresetWithoutABank)
{
    makeRegistry();
    EXPECT_THAT(programs(), ElementsAre("Default", "at 0"));
    const CLogCollector log;
    makeRegistry({{"file", "no such resource"}});
    EXPECT_THAT(programs(), ElementsAre("Default", "at 0"));
    EXPECT_THAT(log.lines, testing::Not(IsEmpty()));
}

TEST_F(ARegistry, RefusesBadAttributes)
{
    EXPECT_FAILS_WITH(tryRegistry("r1", {{"def-name-remap", "a=b plugin"}}),
                      "Invalid remapping string 'plugin' defined.");
    EXPECT_NE(takeMessage(tryRegistry("r2", {{"param-collector", "plugin.modMain"}})), "");
    EXPECT_NE(takeMessage(tryRegistry("r3", {{"param-undo", "plugin.nothing"}})), "");
}

TEST_F(ARegistry, ActivatesAPresetAsOneStep)
{
    gain->setValue(0, 0, 20);
    gain->setValue(2, 1, 30);
    mode->setValue(0, 0, 4);
    bypass->setValue(0, 0, 1);
    meter->setValue(0, 0, 9);
    const auto before = state();
    ASSERT_OK(activate(presetBytes("test:Loud", {{"gain", 90}, {"bypass", 0}, {"meter", 1}})));
    EXPECT_EQ(gain->value(0, 0), 90.0);
    EXPECT_EQ(gain->getValues().getElementCount(2), 0);
    EXPECT_EQ(mode->value(0, 0), 0.0) << "what a preset doesn't name goes to its default";
    EXPECT_EQ(bypass->value(0, 0), 1.0);
    EXPECT_EQ(meter->value(0, 0), 9.0);
    EXPECT_EQ(textOf(*presetName), "Loud");
    EXPECT_THAT(programs(), ElementsAre("Loud", "B", "C", "at 0"));
    EXPECT_THAT(steps(), ElementsAre(kStart, "Test preset activate", "at 1"));

    undo->setPosition(0, true);
    EXPECT_EQ(gain->value(0, 0), 20.0);
    EXPECT_EQ(gain->value(2, 1), 30.0);
    EXPECT_EQ(mode->value(0, 0), 4.0);
    EXPECT_EQ(textOf(*presetName), "Default");
    takeChanges();
    EXPECT_EQ(gain->getProcessValues().value(2, 1), 30.0);
}

TEST_F(ARegistry, AppliesInPartOrWithWhatOnlyTheHostKeeps)
{
    gain->setValue(0, 0, 20);
    ASSERT_OK(activate(presetBytes("test:Part", {{"mode", 3}, {"bypass", 1}}), true));
    EXPECT_EQ(mode->value(0, 0), 3.0);
    EXPECT_EQ(gain->value(0, 0), 20.0);
    EXPECT_EQ(bypass->value(0, 0), 0.0);
    ASSERT_OK(activate(presetBytes("test:Host", {{"bypass", 1}}), false, -1, true));
    EXPECT_EQ(bypass->value(0, 0), 1.0);
    EXPECT_EQ(gain->value(0, 0), 50.0);
}

TEST_F(ARegistry, GivesTheSameBytesForAStateThatItHasTaken)
{
    gain->setValue(3, 2, 1.25);
    labels->setText(0, 3, CString::fromUtf8("Lautst\xc3\xa4rke \xcf\x80"));
    bypass->setValue(0, 0, 1);
    const auto saved = state();
    gain->reset(kAllParamGroups, -1);
    labels->setText(0, 0, "other");
    bypass->setValue(0, 0, 0);
    presetName->setText(0, 0, "other");
    ASSERT_OK(activate(saved, false, -1, true));
    EXPECT_EQ(state(), saved);
    ASSERT_OK(activate(saved, false, -1, true));
    EXPECT_EQ(state(), saved);
}

TEST_F(ARegistry, ActivatesASingleGroup)
{
    gain->setValue(0, 0, 20);
    mode->setValue(0, 0, 4);
    labels->setText(0, 0, "mine");
    const auto preset = presetBytes("test:Loud", {{"gain", 90}});
    ASSERT_OK(activate(preset, false, 1));
    EXPECT_EQ(gain->value(0, 0), 20.0);
    EXPECT_EQ(gain->value(1, 0), 90.0);
    EXPECT_EQ(mode->value(0, 0), 4.0) << "it belongs to all groups";
    EXPECT_EQ(textOf(*labels), "mine");
    ASSERT_OK(activate(preset, false, 6));
    groupNames->setText(0, 6, "");
    ASSERT_OK(activate(preset, false, 6));
    EXPECT_THAT(steps(),
                ElementsAre(kStart, "Test preset activate (Rear)", "Test preset activate (Front)",
                            "Test preset activate (7)", "at 3"));
    EXPECT_FAILS_WITH(activate(preset, false, kMaxParamGroups), "Invalid group 32 specified.");

    // What is stored of one group goes into another one.
    gain->setValue(1, 0, 77);
    ASSERT_OK(activate(state(1), false, 4));
    EXPECT_EQ(gain->value(4, 0), 77.0);
    EXPECT_EQ(gain->value(0, 0), 20.0);
}

TEST_F(ARegistry, KeepsItsHandsOffWhatItDoesNotKnow)
{
    CByteList preset;
    preset.text("test:Odd").u32(2);
    for (const char* key : {"io.unknown", "unknown"})
        preset.text(key).u32(5).text("x");
    registry->renameProgram(0, "Odd", nullptr);
    const auto before = state();
    ASSERT_OK(activate(preset.bytes, true));
    const CAudioParam* const bare = collector->find("plugin.modMain.io.unknown");
    ASSERT_NE(bare, nullptr);
    EXPECT_EQ(bare->getInfo(), nullptr);
    EXPECT_EQ(bare->value(0, 0, -1.0), -1.0);
    EXPECT_EQ(state(), before);
}

TEST_F(ARegistry, FindsTheDefinitionOfAParameterThatNobodyHasMadeYet)
{
    CAudioParamDef* def = nullptr;
    ASSERT_OK(define(def, "late", {{"def-values", "5"}}));
    ASSERT_OK(activate(presetBytes("test:Late", {{"late", 8}})));
    EXPECT_EQ(param("late").value(0, 0), 8.0);
}

TEST_F(ARegistry, ChangesNothingForAPresetOfAnotherProduct)
{
    const auto before = state();
    for (const char* name : {"gplu:Loud", "Loud", "tes:Loud"})
        EXPECT_FAILS_WITH(activate(presetBytes(name, {{"gain", 90}})), "Incompatible preset.");
    EXPECT_EQ(state(), before);
    EXPECT_THAT(steps(), ElementsAre(kStart, "at 0"));
}

TEST_F(ARegistry, EndsAnActivationAtADamagedItem)
{
    auto preset = presetBytes("test:Bad", {{"gain", 90}, {"mode", 3}, {"preset-name", 1}});
    mode->setValue(0, 0, 4);
    EXPECT_FAILS_WITH(
        activate(preset),
        "Unsupported storage format (esize=1, dtype=0; should be: esize=1, dtype=1).");
    EXPECT_EQ(gain->value(0, 0), 90.0);
    EXPECT_EQ(mode->value(0, 0), 3.0);
    EXPECT_EQ(textOf(*presetName), "Default");
    EXPECT_THAT(programs(), ElementsAre("A", "B", "C", "at 0"));
    takeChanges();
    EXPECT_EQ(gain->getProcessValues().value(0, 0), 90.0) << "what was read has been sent";
    undo->setPosition(0, true);
    EXPECT_EQ(mode->value(0, 0), 4.0);
}

TEST_F(ARegistry, BringsSavedNumbersInsideTheirLimits)
{
    ASSERT_OK(activate(presetBytes("test:Loud", {{"gain", 1e300}, {"mode", -1e300}})));
    EXPECT_EQ(gain->value(0, 0), 100.0);
    EXPECT_EQ(mode->value(0, 0), 0.0);
}

TEST_F(ARegistry, SelectsPrograms)
{
    registry->applyInitial();
    CRegistryLog log;
    CProgramLog host;
    log.listen(*registry);
    host.listen(*registry);
    edit(*gain, 33, "edit of A");
    registry->selectProgram(1, this);
    EXPECT_THAT(programs(), ElementsAre("A", "B", "C", "at 1"));
    EXPECT_EQ(gain->value(0, 0), 2.0);
    EXPECT_EQ(bypass->value(0, 0), 0.0) << "the host's own";
    EXPECT_EQ(textOf(*presetName), "B");
    EXPECT_THAT(steps(), ElementsAre(kStart, "at 0"));
    EXPECT_THAT(log.updates, ElementsAre(CAudioParamRegistry::kProgramChange));
    EXPECT_THAT(host.senders, ElementsAre(this));

    edit(*gain, 44, "edit of B");
    registry->selectProgram(0, nullptr);
    EXPECT_EQ(gain->value(0, 0), 33.0) << "as it was left";
    EXPECT_THAT(steps(), ElementsAre(kStart, "edit of A", "at 1"));
    undo->setPosition(0, true);
    EXPECT_EQ(gain->value(0, 0), 1.0);

    log.updates.clear();
    for (const int none : {0, -1, 3})
        registry->selectProgram(none, nullptr);
    EXPECT_THAT(log.updates, IsEmpty());
    registry->selectProgram(1, nullptr);
    EXPECT_THAT(steps(), ElementsAre(kStart, "edit of B", "at 1"));
}

TEST_F(ARegistry, RenamesPrograms)
{
    CRegistryLog log;
    CProgramLog host;
    log.listen(*registry);
    host.listen(*registry);
    registry->renameProgram(0, "Mine", this);
    EXPECT_EQ(textOf(*presetName), "Mine");
    EXPECT_THAT(steps(), ElementsAre(kStart, "Program name change", "at 1"));
    registry->renameProgram(2, "Last", nullptr);
    registry->renameProgram(3, "None", nullptr);
    EXPECT_EQ(textOf(*presetName), "Mine");
    EXPECT_THAT(programs(), ElementsAre("Mine", "B", "Last", "at 0"));
    EXPECT_THAT(log.updates, ElementsAre(CAudioParamRegistry::kProgramRename,
                                         CAudioParamRegistry::kProgramRename));
    EXPECT_EQ(host.senders.size(), 2u);
    CAudioPreset saved;
    const auto bytes = state();
    CMemoryReader reader(bytes.data(), static_cast<int>(bytes.size()));
    ASSERT_OK(saved.load(reader));
    EXPECT_EQ(saved.name, "test:Mine");
}

TEST_F(ARegistry, ResetsAllAsOneStep)
{
    ASSERT_OK(registry->activateRomPreset(0));
    bypass->setValue(0, 0, 1);
    gain->setValue(2, 0, 8);
    registry->masterReset();
    EXPECT_EQ(gain->value(0, 0), 50.0);
    EXPECT_EQ(gain->value(2, 0), 50.0);
    EXPECT_EQ(bypass->value(0, 0), 1.0);
    EXPECT_EQ(textOf(*presetName), "Default");
    EXPECT_THAT(steps(), ElementsAre(kStart, "ROM preset activate", "Master reset", "at 2"));
    undo->setPosition(1, true);
    EXPECT_EQ(gain->value(2, 0), 8.0);
    EXPECT_EQ(textOf(*presetName), "A");
    EXPECT_FAILS_WITH(registry->activateRomPreset(3), "Invalid preset index 3 specified.");
}

TEST_F(ARegistry, HandsOutPresetsAndBanks)
{
    registry->applyInitial();
    const auto acquire = [&](bool fromFactory, int index) {
        return bytesOf([&](COutputStream& stream) {
            return registry->acquirePreset(fromFactory, index, -1, stream);
        });
    };
    EXPECT_EQ(acquire(true, 1), presetBytes("test:B", {{"gain", 2}, {"bypass", 1}}));
    EXPECT_EQ(acquire(false, 2), presetBytes("test:C", {}));
    gain->setValue(0, 0, 12);
    EXPECT_EQ(acquire(false, 0), state());
    CWriteSeqBuffer none;
    for (const int index : {-2, 3})
        EXPECT_FAILS_WITH(registry->acquirePreset(false, index, -1, none),
                          "Invalid preset index " + std::to_string(index) + " specified.");
    EXPECT_FAILS_WITH(registry->acquirePreset(true, -1, -1, none),
                      "Invalid preset index -1 specified.");

    // The whole session goes to another one.
    const auto bank =
        bytesOf([&](COutputStream& stream) { return registry->acquireBank(false, stream); });
    edit(*gain, 13);
    registry->selectProgram(2, nullptr);
    registry->renameProgram(1, "Lost", nullptr);
    CMemoryReader reader(bank.data(), static_cast<int>(bank.size()));
    ASSERT_OK(registry->loadBank(reader, nullptr));
    EXPECT_THAT(programs(), ElementsAre("A", "B", "C", "at 0"));
    EXPECT_EQ(gain->value(0, 0), 12.0);
    EXPECT_THAT(steps(), ElementsAre(kStart, "at 0"));
    registry->selectProgram(1, nullptr);
    registry->selectProgram(0, nullptr);
    EXPECT_THAT(steps(), ElementsAre(kStart, "at 0"));
}

TEST_F(ARegistry, ChangesNothingForABankOfAnotherProduct)
{
    auto foreign = CByteList().text("").u32(2).bytes;
    for (const auto& preset : {presetBytes("test:X", {}), presetBytes("TMIO:Y", {})})
        foreign.insert(foreign.end(), preset.begin(), preset.end());
    CMemoryReader reader(foreign.data(), static_cast<int>(foreign.size()));
    EXPECT_FAILS_WITH(registry->loadBank(reader, nullptr), "Incompatible preset.");
    EXPECT_THAT(programs(), ElementsAre("A", "B", "C", "at 0"));
}

TEST_F(ARegistry, ComparesTwoStates)
{
    registry->applyInitial();
    edit(*gain, 10, "A1");
    const auto before = state();
    registry->exchangeShadowPreset();
    EXPECT_EQ(state(), before) << "the first one exchanges with a copy";
    EXPECT_THAT(steps(), ElementsAre(kStart, "A1", "at 1"));

    edit(*gain, 20, "B1");
    edit(*mode, 3, "B2");
    presetName->setText(0, 0, "User");
    registry->exchangeShadowPreset();
    EXPECT_EQ(state(), before);
    EXPECT_THAT(steps(), ElementsAre(kStart, "A1", "at 1"));
    registry->exchangeShadowPreset();
    EXPECT_EQ(gain->value(0, 0), 20.0);
    EXPECT_EQ(mode->value(0, 0), 3.0);
    EXPECT_EQ(textOf(*presetName), "User");
    EXPECT_THAT(steps(), ElementsAre(kStart, "A1", "B1", "B2", "at 3"));
    undo->setPosition(1, true);
    EXPECT_EQ(gain->value(0, 0), 10.0);

    registry->updateShadowPreset();
    edit(*gain, 70, "C");
    registry->exchangeShadowPreset();
    EXPECT_EQ(gain->value(0, 0), 10.0);
    EXPECT_THAT(steps(), ElementsAre(kStart, "A1", "B1", "B2", "at 1"));
}

TEST_F(ARegistry, CallsAnEditedPresetUser)
{
    registry->applyInitial();
    const auto userEdit = [&](CAudioParam& target, double value) {
        CPtr<CAudioParamUndoData> step(new CAudioParamUndoData("edit"));
        CAudioParamContext context;
        context.undo = step.get();
        {
            const CAudioParamLock lock(target);
            CAudioParamRegistry::noteUserEdit(target, 0, &context);
            target.setValue(0, 0, value, nullptr, &context);
        }
        undo->commit(std::move(step));
    };
    userEdit(*meter, 3);
    userEdit(*bypass, 1);
    EXPECT_EQ(textOf(*presetName), "A") << "no preset holds these";
    gain->setValue(0, 0, 5);
    EXPECT_EQ(textOf(*presetName), "A") << "nor is this an edit";
    userEdit(*gain, 6);
    EXPECT_EQ(textOf(*presetName), "User");
    undo->setPosition(1, true);
    EXPECT_EQ(textOf(*presetName), "A");
    EXPECT_EQ(gain->value(0, 0), 5.0);
    EXPECT_EQ(CAudioParamRegistry::find(*collector, "plugin.param-registry"), registry);
    EXPECT_EQ(CAudioParamRegistry::find(*collector, "plugin.param-registry-io"), nullptr);
}

class CRoutingStub : public CAudioRoutingInfoProvider {
public:
    explicit CRoutingStub(CAudioParam& names) : target(names) {}
    void updateRouting(CAudioParamContext* context) override
    {
        ++calls;
        target.setText(0, 0, "Host", this, context);
    }
    int calls = 0;

private:
    CAudioParam& target;
};

TEST_F(ARegistry, HasTheRoutingAdaptedInTheSameStep)
{
    CRoutingStub routing(*labels);
    registry->setRoutingProvider(&routing);
    ASSERT_OK(activate(presetBytes("test:Loud", {{"gain", 90}})));
    EXPECT_EQ(textOf(*labels), "Host");
    undo->setPosition(0, true);
    EXPECT_EQ(textOf(*labels), "L");
    registry->selectProgram(1, nullptr);
    EXPECT_EQ(routing.calls, 2);
    registry->setRoutingProvider(nullptr);
}

TEST_F(ARegistry, StoresTheStateThatInstancesBeginWith)
{
    gain->setValue(0, 0, 12);
    registry->renameProgram(0, "House", nullptr);
    EXPECT_FALSE(registry->isDefaultPresetLoaded());
    ASSERT_OK(registry->saveDefaultPreset());
    const CAudioParamRegistry* const first = registry;
    gain->setValue(0, 0, 13);
    makeRegistry({{"file", "TestROM.cbf"}});
    ASSERT_NE(registry, first);
    EXPECT_TRUE(registry->isDefaultPresetLoaded());
    EXPECT_THAT(programs(), ElementsAre("House", "B", "C", "at 0"));
    registry->applyInitial();
    EXPECT_EQ(gain->value(0, 0), 12.0);
    registry->clearDefaultPreset();
    EXPECT_FALSE(registry->isDefaultPresetLoaded());
    makeRegistry({{"file", "TestROM.cbf"}});
    EXPECT_THAT(programs(), ElementsAre("A", "B", "C", "at 0"));
}

TEST_F(ARegistry, SetsWhatADefaultPresetNames)
{
    gain->setValue(0, 0, 20);
    const auto preset = presetBytes("test:Some", {{"mode", 3}});
    CMemoryReader reader(preset.data(), static_cast<int>(preset.size()));
    ASSERT_OK(registry->setDefaultPreset(reader));
    EXPECT_EQ(mode->value(0, 0), 3.0);
    EXPECT_EQ(gain->value(0, 0), 20.0);
    EXPECT_EQ(textOf(*presetName), "Default");
    EXPECT_THAT(steps(), ElementsAre(kStart, "at 0"));
}

TEST_F(ARegistry, ThatIsNoMasterHasAListAndNoPrograms)
{
    const auto listOf = [&](const char* name) {
        auto list = CByteList().u32(1).text("").u32(1).bytes;
        const auto preset = presetBytes(name, {{"labels", 1}});
        list.insert(list.end(), preset.begin(), preset.end());
        return list;
    };
    const auto storedNames = [&] {
        makeRegistry({{"is-master", "false"},
                      {"hierarchy", "plugin.modMain.io"},
                      {"preset-name-param", ""},
                      {"store-name", "/test-list"}});
        COwnedArray<CString> found;
        registry->getStoredPresetNames(found);
        return found.isEmpty() ? std::string() : found[0].toUtf8();
    };
    EXPECT_EQ(storedNames(), "");
    CAppData& store = CAppData::getStore(CAppData::EStore::Global);
    const CTestResource comesWithIt("AppDataGlobal_test-list-sys",
                                    compressed(listOf("test:Maker's"), kPresetListDataId));
    EXPECT_EQ(storedNames(), "Maker's");
    const auto own = listOf("test:Own");
    store.writeData("test-list", {own.data(), static_cast<int>(own.size())}, nullptr,
                    kPresetListDataId);
    EXPECT_EQ(storedNames(), "Own");
    EXPECT_EQ(
        bytesOf([&](COutputStream& stream) { return registry->acquireStoredPreset(0, stream); }),
        presetBytes("test:Own", {{"labels", 1}}));

    EXPECT_THAT(programs(), ElementsAre("at -1"));
    registry->selectProgram(0, nullptr);
    registry->masterReset();
    registry->exchangeShadowPreset();
    CWriteSeqBuffer none;
    EXPECT_FAILS_WITH(registry->acquireBank(false, none),
                      "Acquiring bank in a non-master registry is an error.");
    // Its presets are made on the spot, of what stands below its path.
    CByteList live;
    live.text("test:").u32(1).text("labels").u32(27 + 16 + 4 + 2 * 13 + 12);
    live.text("audio.modMain.io.labels").u32(1).u32(1).u32(1).u32(1);
    live.u32(2).u32(1).u32(1).text("L").u32(2).u32(1).text("R").u32(2).u32(1).u32(2);
    EXPECT_EQ(state(), live.bytes);
    store.removeData("test-list", nullptr);
}

} // namespace
} // namespace tsm
