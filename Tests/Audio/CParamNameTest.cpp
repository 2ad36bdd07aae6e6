#include "Audio/CParamName.h"
#include "Audio/CParamRemapTable.h"
#include "Tests/Support/CTestTree.h"

namespace tsm {

TEST(ParamName, IsResolvedAgainstAPath)
{
    struct CRow {
        const char* name;
        const char* path;
        const char* full;
    };
    for (const CRow& row :
         {CRow{"gain", "plugin.modMain.modOutGain", "plugin.modMain.modOutGain.gain"},
          CRow{"^oversampling", "plugin.modMain.modUpsampler", "plugin.modMain.oversampling"},
          CRow{"^^x", "a.b.c", "a.x"},
          CRow{"/plugin.modMain.meter-rmstime", "anything", "plugin.modMain.meter-rmstime"},
          CRow{".gain", "a.b", "a.b.gain"}, CRow{"^.gain", "a.b", "a.gain"},
          CRow{"^", "a.b.c", "a.b"}, CRow{"^^", "a", ""}, CRow{"^^^x", "a.b", "x"},
          CRow{"/", "a.b", ""}}) {
        SCOPED_TRACE(row.name);
        EXPECT_EQ(resolveName(row.name, row.path), CString(row.full));
    }
}

TEST(ParamRemapTable, ForwardsOnlyWhatStandsBelowItsPath)
{
    CParamRemapTable table;
    table.begin("plugin.modMain.modReelpath");
    table.add("modBankedConvolver.index", "cab-index");
    table.add("mode", "^oversampling");

    CString name = "plugin.modMain.modReelpath.modBankedConvolver.index";
    EXPECT_TRUE(table.apply(name));
    EXPECT_EQ(name, CString("plugin.modMain.modReelpath.cab-index"));
    name = "plugin.modMain.modReelpath.mode";
    EXPECT_TRUE(table.apply(name));
    EXPECT_EQ(name, CString("plugin.modMain.oversampling"));

    for (const char* other :
         {"plugin.modMain.mode", "plugin.modMain.modReelpath",
          "plugin.modMain.modReelpathPost.mode", "plugin.modMain.modReelpath.mode2", "mode", ""}) {
        SCOPED_TRACE(other);
        name = other;
        EXPECT_FALSE(table.apply(name));
        EXPECT_EQ(name, CString(other));
    }
}

} // namespace tsm
