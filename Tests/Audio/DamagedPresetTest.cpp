#include "Tests/Support/CRegistryTree.h"

#include "Audio/CPresetDataIds.h"
#include "Core/CAppData.h"
#include "Tests/Support/CDocumentBytes.h"
#include "Tests/Support/CTestStreams.h"

#include <cmath>

namespace tsm {
namespace {

constexpr int kLargestStep = 65536; // what a reader may ask for before the data have shown up

/// Presets, banks and lists as they come out of broken files, fed to a registry in use.
class ADamagedPreset : public ARegistryTree {
protected:
    void SetUp() override
    {
        ARegistryTree::SetUp();
        makeRegistry();
        gain->setValue(1, 1, 30);
        labels->setText(0, 2, "a text that is longer than fits inline");
        good = state();
        gain->setValue(0, 0, 99);
        mode->setValue(0, 0, 5);
        before = state();
    }
    /// Activates the bytes from a stream that notes how much it was asked for.
    std::string tryActivate(const CBytes& bytes)
    {
        CPlainInput input(bytes);
        const std::string message = takeMessage(registry->activatePreset(input, false, -1, true));
        EXPECT_LE(input.largestRead, kLargestStep);
        return message;
    }
    static bool isWhole(const CBytes& bytes)
    {
        CAudioPreset preset;
        CPlainInput input(bytes);
        return takeMessage(preset.load(input)).empty() && preset.getId() == "test";
    }
    /// Whatever came of damaged data, the values are such as a user could have made.
    void expectUsable()
    {
        for (const CAudioParam* number : {gain, mode, bypass})
            for (int group = 0; group < number->getValues().getGroupCount(); ++group)
                for (int i = 0; i < number->getValues().getElementCount(group); ++i) {
                    const double value = number->getValues().value(group, i);
                    EXPECT_TRUE(value >= 0.0 && value <= 100.0) << value;
                }
        takeChanges();
        EXPECT_OK(activate(state(), false, -1, true));
    }
    void restore()
    {
        ASSERT_OK(activate(before, false, -1, true));
        ASSERT_EQ(state(), before);
    }
    /// Tries `bytes`: what isn't a preset changes nothing.
    void tryDamaged(const CBytes& bytes)
    {
        const bool mayChange = isWhole(bytes);
        const std::string message = tryActivate(bytes);
        if (mayChange) {
            expectUsable();
            restore();
        } else {
            EXPECT_NE(message, "");
            ASSERT_EQ(state(), before);
        }
    }

    CBytes good;
    CBytes before;
};

TEST_F(ADamagedPreset, ChangesNothingWhereverItIsCut)
{
    for (std::size_t size = 0; size < good.size(); ++size) {
        SCOPED_TRACE(size);
        const CBytes cut(good.begin(), good.begin() + static_cast<std::ptrdiff_t>(size));
        EXPECT_NE(tryActivate(cut), "");
        ASSERT_EQ(state(), before);
    }
    EXPECT_EQ(tryActivate(good), "");
    EXPECT_EQ(state(), good);
}

TEST_F(ADamagedPreset, DoesNoHarmWhereverAByteIsWrong)
{
    for (std::size_t at = 0; at < good.size(); ++at)
        for (const int mask : {0x01, 0x80, 0xff}) {
            SCOPED_TRACE(std::to_string(at) + " ^ " + std::to_string(mask));
            CBytes bytes = good;
            bytes[at] ^= static_cast<std::uint8_t>(mask);
            tryDamaged(bytes);
        }
}

TEST_F(ADamagedPreset, TakesNoMemoryForSizesThatItDoesNotHold)
{
    for (std::size_t at = 0; at + 4 <= good.size(); ++at)
        for (const std::uint32_t size : {0xffffffffu, 0x7fffffffu, 0x10000000u, 61441u}) {
            SCOPED_TRACE(std::to_string(at) + " = " + std::to_string(size));
            CBytes bytes = good;
            for (std::size_t i = 0; i < 4; ++i)
                bytes[at + i] = static_cast<std::uint8_t>(size >> (8 * i));
            tryDamaged(bytes);
        }
}

TEST_F(ADamagedPreset, HoldsNoNumberThatIsNone)
{
    for (const double odd : {std::nan(""), HUGE_VAL, -HUGE_VAL, -0.0, 1e-310}) {
        ASSERT_OK(activate(presetBytes("test:Odd", {{"gain", odd}, {"mode", odd}})));
        expectUsable();
    }
}

TEST_F(ADamagedPreset, MakesNoSecondParameterByAnotherSpellingOfItsName)
{
    for (const char* key : {"gain#0", "gain#", "io.labels.^^gain", "gain.^gain"}) {
        SCOPED_TRACE(key);
        ASSERT_OK(activate(presetBytes("test:Odd", {{key, 5.0}}), true));
        const CAudioParam* made = collector->find(fullName(key));
        ASSERT_NE(made, nullptr);
        EXPECT_EQ(made->getInfo(), nullptr);
    }
    EXPECT_EQ(gain->value(0, 0), 99.0);
}

TEST_F(ADamagedPreset, MayNotHoldMoreItemsOrPresetsThanAnyProductHas)
{
    CByteList items;
    items.text("test:Many").u32(CAudioPreset::kMaxItems + 1);
    CByteList presets;
    presets.text("Bank").u32(CAudioPresetBank::kMaxPresets + 1);
    for (std::uint32_t i = 0; i <= CAudioPreset::kMaxItems; ++i) {
        items.text("k" + std::to_string(i)).u32(0);
        presets.text("").u32(0);
    }
    EXPECT_EQ(tryActivate(items.bytes), "The preset 'test:Many' claims 65537 items.");
    CPlainInput bank(presets.bytes);
    EXPECT_FAILS_WITH(registry->loadBank(bank, nullptr), "The bank 'Bank' claims 65537 presets.");
    EXPECT_EQ(state(), before);
}

TEST_F(ADamagedPreset, InAListIsFoundWhereverItIsCut)
{
    CBytes list = CByteList().u32(1).text("").u32(1).bytes;
    list.insert(list.end(), good.begin(), good.end());
    const auto read = [](const CBytes& bytes) {
        CAudioPresetBank bank;
        CPlainInput input(bytes);
        return takeMessage(bank.loadList(input));
    };
    for (std::size_t size = 0; size < list.size(); ++size)
        EXPECT_NE(read(CBytes(list.begin(), list.begin() + static_cast<std::ptrdiff_t>(size))), "")
            << size;
    EXPECT_EQ(read(list), "");
    EXPECT_EQ(read({0, 0, 0, 0}), "") << "an empty one";
}

TEST_F(ADamagedPreset, StoredAsTheDefaultOneIsLeftOut)
{
    CAppData& store = CAppData::getStore(CAppData::EStore::Local);
    for (const CBytes& bytes :
         {CBytes(good.begin(), good.end() - 1), presetBytes("TMIO:No", {}), CBytes{1}}) {
        store.writeData("default-preset", {bytes.data(), static_cast<int>(bytes.size())}, nullptr,
                        kPresetDataId);
        makeRegistry();
        EXPECT_FALSE(registry->isDefaultPresetLoaded());
        CString name;
        EXPECT_TRUE(registry->getProgramName(0, name));
        EXPECT_EQ(name, "Default");
        registry->clearDefaultPreset();
    }
}

TEST_F(ADamagedPreset, InABankLeavesTheFormerOne)
{
    CByteList list;
    list.text("Bank").u32(2);
    CBytes bank = list.bytes;
    for (int i = 0; i < 2; ++i)
        bank.insert(bank.end(), good.begin(), good.end());
    for (std::size_t size = 0; size < bank.size(); ++size) {
        CPlainInput input(CBytes(bank.begin(), bank.begin() + static_cast<std::ptrdiff_t>(size)));
        EXPECT_NE(takeMessage(registry->loadBank(input, nullptr)), "") << size;
    }
    for (std::size_t at = 0; at < 32; ++at) {
        CBytes bytes = bank;
        bytes[at] ^= 0xff;
        CPlainInput input(bytes);
        CAudioPresetBank read;
        handleError(read.load(input));
        EXPECT_LE(input.largestRead, kLargestStep);
    }
    ASSERT_EQ(state(), before);
    EXPECT_EQ(registry->getProgramCount(), 1);
    CPlainInput whole(bank);
    ASSERT_OK(registry->loadBank(whole, nullptr));
    EXPECT_EQ(registry->getProgramCount(), 2);
    EXPECT_EQ(gain->value(1, 1), 30.0);
}

TEST_F(ADamagedPreset, InTheFactoryBankLeavesAnInstanceThatWorks)
{
    CByteList list;
    list.text("Bank").u32(1);
    CBytes bank = list.bytes;
    bank.insert(bank.end(), good.begin(), good.end());
    const CBytes block = written([&](COutputStream& stream) {
        EXPECT_OK(stream.writeCompressedData(bank.data(), static_cast<int>(bank.size()),
                                             kPresetBankDataId));
    });
    for (std::size_t at = 0; at < block.size(); ++at) {
        SCOPED_TRACE(at);
        CBytes bytes = block;
        bytes[at] ^= 0x55;
        const CTestResource resource("Damaged.cbf", bytes);
        makeRegistry({{"file", "Damaged.cbf"}});
        ASSERT_GE(registry->getProgramCount(), 1);
        registry->applyInitial();
        expectUsable();
        registry->destroyTree();
    }
    makeRegistry();
}

} // namespace
} // namespace tsm
