#include "Audio/CAudioCCTable.h"
#include "Tests/Support/CParamTree.h"

namespace tsm {

namespace {

class AControllerTable : public AParamTree {
protected:
    void SetUp() override
    {
        AParamTree::SetUp();
        ASSERT_TRUE(store.removeData("ccmap", nullptr));
        CObject& plugin = *root->findChild("plugin");
        ASSERT_OK(create(table, plugin, "audio:cctable", "cctable", {}));
        ASSERT_OK(create(gain, plugin, "audio:ext-param", "gain",
                         {{"param-collector", "plugin.param-collector"},
                          {"param-name", "plugin.modMain.gain"},
                          {"ext-name", "Gain"}}));
    }
    void writeMap(const CByteList& item)
    {
        const CByteBuffer buffer(item.bytes.data(), static_cast<int>(item.bytes.size()));
        ASSERT_TRUE(store.writeData("ccmap", buffer, nullptr, kRawDataId));
    }
    CAppData& store = CAppData::getStore(CAppData::EStore::Local);
    CAudioCCTable* table = nullptr;
    CAudioExtParam* gain = nullptr;
};

} // namespace

TEST_F(AControllerTable, FollowsItsItem)
{
    EXPECT_EQ(table->findParam(7), nullptr);
    writeMap(CByteList()
                 .u32(4)
                 .u32(7)
                 .text("plugin.gain")
                 .u32(128)
                 .text("plugin.gain")
                 .u32(8)
                 .text("plugin.modMain.gain")
                 .u32(0)
                 .text("^gain"));
    EXPECT_EQ(table->findParam(7), &gain->getParam());
    EXPECT_EQ(table->findParam(0), &gain->getParam());
    EXPECT_EQ(table->findParam(8), nullptr);
    for (const int number : {-1, 128, 1 << 30})
        EXPECT_EQ(table->findParam(number), nullptr);
    writeMap(CByteList().u32(1).u32(9).text("plugin.gain"));
    EXPECT_EQ(table->findParam(7), nullptr);
    EXPECT_EQ(table->findParam(9), &gain->getParam());
    gain->destroyTree();
    EXPECT_EQ(table->findParam(9), nullptr);
}

TEST_F(AControllerTable, KeepsWhatStandsBeforeADamage)
{
    CLogCollector log;
    const CByteList whole =
        CByteList().u32(0xffffffff).u32(7).text("plugin.gain").u32(8).text("plugin.gain");
    for (std::size_t size = 0; size <= whole.bytes.size(); ++size) {
        CByteList cut = whole;
        cut.bytes.resize(size);
        writeMap(cut);
        EXPECT_EQ(table->findParam(7) != nullptr, size >= 23u) << size;
        EXPECT_EQ(table->findParam(8) != nullptr, size >= 42u) << size;
    }
    EXPECT_FALSE(log.lines.empty());
}

} // namespace tsm
