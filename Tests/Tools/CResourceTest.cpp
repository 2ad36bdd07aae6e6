#include "Core/CResourceEntry.h"
#include "Tests/Support/CScratchFolder.h"
#include "Tools/defc/CDefCompiler.h"
#include "Tools/resc/CResourceManifest.h"
#include "Tools/resc/CResourceSource.h"

#include <cstdint>
#include <map>

#include <gmock/gmock.h>

namespace tsm {
namespace {

using testing::HasSubstr;

TEST(TheResourceTable, HoldsTheCompiledDocument)
{
    std::map<std::string, std::string> found;
    for (const CResourceEntry* entry = kResourceTable; entry->data; ++entry) {
        EXPECT_EQ(reinterpret_cast<std::uintptr_t>(entry->data) % 16, 0u) << entry->name;
        const unsigned char* d = entry->data;
        const std::size_t size = d[0] + 256u * (d[1] + 256u * (d[2] + 256u * d[3]));
        const std::string content(reinterpret_cast<const char*>(d + 4), size);
        EXPECT_TRUE(found.emplace(entry->name, content).second) << entry->name;
    }
    CDefCompiler compiler({});
    std::string compiled;
    ASSERT_TRUE(compiler.compile(std::string(TSM_DATA_FOLDER) + "/SharedData.xml", compiled));
    EXPECT_TRUE(found["SharedData.xml"] == compiled);
}

TEST(AManifest, ListsNamesWithTheirFiles)
{
    const CScratchFolder folder;
    folder.write("a file", "x");
    CResourceManifest manifest;
    std::string error;
    ASSERT_TRUE(
        manifest.parse("# comment\n\n../../../Gfx/a b.is = a file\n", folder / "list", error))
        << error;
    ASSERT_EQ(manifest.getItems().size(), 1u);
    EXPECT_EQ(manifest.getItems()[0].name, "../../../Gfx/a b.is");
    EXPECT_EQ(manifest.getItems()[0].file, folder / "a file");
}

TEST(AManifest, RefusesLinesOfAnotherForm)
{
    const CScratchFolder folder;
    folder.write("f", "x");
    struct CRow {
        const char* text;
        const char* problem;
    };
    for (const CRow& row : {CRow{"f", "list:1: 'name = file' expected"},
                            CRow{"\n = f", "list:2: 'name = file' expected"},
                            CRow{"a = f\na = f", "list:2: resource 'a' is listed twice"},
                            CRow{"a = .", "list:1: no file"}}) {
        SCOPED_TRACE(row.text);
        CResourceManifest manifest;
        std::string error;
        EXPECT_FALSE(manifest.parse(row.text, folder / "list", error));
        EXPECT_THAT(error, HasSubstr(row.problem));
    }
}

TEST(AResourceSource, QuotesWhatTheLanguagesWouldRead)
{
    const CResourceSource::CItems items{{"a\"b\\c", "/x\"y"}};
    EXPECT_THAT(CResourceSource::makeTable(items), HasSubstr(R"("a\"b\\c")"));
    EXPECT_THAT(CResourceSource::makeAssembly(items), HasSubstr(R"(.incbin "/x\"y")"));
}

} // namespace
} // namespace tsm
