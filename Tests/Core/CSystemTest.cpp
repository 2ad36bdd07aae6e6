#include "Core/CSystem.h"

#include "Core/CFileMask.h"
#include "Tests/Support/CScratchFolder.h"
#include "Tests/Support/CTestTree.h"

#include <cstdlib>
#include <sys/stat.h>

namespace tsm {
namespace {

using testing::IsEmpty;
using testing::UnorderedElementsAre;

TEST(TheSystem, BringsFolderPathsIntoOneForm)
{
    struct CRow {
        const char* path;
        bool endWithSlash;
        const char* expected;
    };
    for (const CRow& row :
         {CRow{"", false, "/"}, CRow{"\\\\a\\b//c", false, "/a/b/c"}, CRow{"a/b", true, "/a/b/"},
          CRow{"  /a b", false, "/a b"}, CRow{"/a/", true, "/a/"}, CRow{"c:", false, "c:/"},
          CRow{"c:a\\b", true, "c:/a/b/"}, CRow{"c:\\a", false, "c:/a"},
          CRow{"/media/a:b", false, "/media/a:b"}}) {
        SCOPED_TRACE(row.path);
        EXPECT_EQ(CSystem::normalizeFolderPath(row.path, row.endWithSlash), row.expected);
    }
}

TEST(TheSystem, ReadsIdentifiersInTheOrderOfTheirFields)
{
    std::uint8_t bytes[16] = {};
    ASSERT_TRUE(CSystem::parseUUID("00112233-4455-6677-8899-aAbBcCdDeEfF, and more", bytes));
    const std::uint8_t expected[16] = {0x33, 0x22, 0x11, 0x00, 0x55, 0x44, 0x77, 0x66,
                                       0x88, 0x99, 0xaa, 0xbb, 0xcc, 0xdd, 0xee, 0xff};
    EXPECT_THAT(bytes, testing::ElementsAreArray(expected));
    EXPECT_FALSE(CSystem::parseUUID("00112233-4455-6677-8899-aabbccddeef", bytes));
    EXPECT_FALSE(CSystem::parseUUID("00112233-4455-6677-8899-aabbccddeegf", bytes));
}

TEST(TheSystem, MatchesMasks)
{
    struct CRow {
        const char* name;
        const char* mask;
        bool isMatch;
    };
    for (const CRow& row :
         {CRow{"a.wav", "*.wav", true}, CRow{"a.wave", "*.wav", false}, CRow{"", "*", true},
          CRow{"", "?", false}, CRow{"a.b.wav", "a*b*wav", true}, CRow{"aab", "*a?", true},
          CRow{"ab", "ab*", true}, CRow{"ab", "a", false}, CRow{"A", "a", false},
          CRow{"aaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaab", "*a*a*a*a*a*a*a*a*a*c", false}}) {
        SCOPED_TRACE(std::string(row.name) + " " + row.mask);
        EXPECT_EQ(matchesMask(row.name, row.mask), row.isMatch);
    }
}

class TheSystemsFiles : public testing::Test {
protected:
    CString path(const std::string& name) const
    {
        return CString::fromUtf8((folder / name).string());
    }
    std::vector<std::string> collect(const std::string& name, bool isRecursive, bool addFolders,
                                     std::initializer_list<const char*> include = {},
                                     std::initializer_list<const char*> exclude = {}) const
    {
        COwnedArray<CString> includeMasks, excludeMasks;
        for (const char* mask : include)
            includeMasks.create(mask);
        for (const char* mask : exclude)
            excludeMasks.create(mask);
        COwnedArray<CFileListEntry> list;
        EXPECT_OK(CSystem::collectFiles(path(name), isRecursive, addFolders, list, includeMasks,
                                        excludeMasks));
        std::vector<std::string> found;
        for (const CFileListEntry& entry : list)
            found.push_back(folder.shorten(entry.path.toUtf8()) + (entry.isFolder ? "/" : ""));
        return found;
    }
    CScratchFolder folder;
};

TEST_F(TheSystemsFiles, AreCollectedByMasks)
{
    for (const char* name : {"d/One.WAV", "d/two.wav", "d/three.txt", "d/.hidden.wav",
                             "d/sub/four.wav", "d/sub/deep/five.aif", "d/.git/six.wav"})
        folder.write(name, "");
    mkfifo((folder / "d/pipe.wav").c_str(), 0600);
    EXPECT_THAT(collect("d", false, false),
                UnorderedElementsAre("d/One.WAV", "d/two.wav", "d/three.txt"));
    EXPECT_THAT(collect("d/", true, true, {"*.wav", "*.aif"}, {"two*"}),
                UnorderedElementsAre("d/One.WAV", "d/sub/", "d/sub/four.wav", "d/sub/deep/",
                                     "d/sub/deep/five.aif"));
    folder.write("none/.a", "");
    EXPECT_THAT(collect("none", true, true), IsEmpty());
}

TEST_F(TheSystemsFiles, AreCollectedOnceInARingOfLinks)
{
    folder.write("d/a/x", "");
    std::filesystem::create_directory_symlink(folder / "d", folder / "d/a/up");
    std::filesystem::create_directory_symlink(folder / "d/a", folder / "d/again");
    const auto files = collect("d", true, false);
    EXPECT_EQ(files.size(), 1u);
}

TEST_F(TheSystemsFiles, AreReportedWhenTheirFolderIsMissing)
{
    COwnedArray<CFileListEntry> list;
    EXPECT_FAILS_WITH(CSystem::collectFiles(path("no"), false, false, list),
                      "Error 2 while collecting files list in '" + (folder / "no/").string() +
                          "' path.");
}

TEST_F(TheSystemsFiles, GetTheirFoldersStepByStep)
{
    EXPECT_FALSE(CSystem::makeDirs(CString()));
    EXPECT_TRUE(CSystem::isDirectory(CString()));
    EXPECT_TRUE(CSystem::makeDirs(path("a/b//c/")));
    EXPECT_TRUE(CSystem::makeDirs(path("a\\b\\d")));
    EXPECT_TRUE(CSystem::isDirectory(path("a/b/c")));
    EXPECT_TRUE(CSystem::isDirectory(path("a/b/d")));
    folder.write("file", "");
    EXPECT_FALSE(CSystem::isDirectory(path("file")));
    EXPECT_FALSE(CSystem::makeDirs(path("file/x")));
}

TEST_F(TheSystemsFiles, KnowTheirModule)
{
    const std::filesystem::path program = std::filesystem::read_symlink("/proc/self/exe");
    EXPECT_EQ(CSystem::getModulePath().toUtf8(), program.string());
    EXPECT_EQ(CSystem::getModuleFolder().toUtf8(), program.parent_path().string() + "/");
}

TEST(TheDataFolders, AreThoseOfTheXDGSpecification)
{
    struct CVariables {
        CVariables()
        {
            for (const char* name : {"HOME", "XDG_DATA_HOME", "XDG_DATA_DIRS"})
                former.emplace_back(name, std::getenv(name) ? std::getenv(name) : "");
        }
        ~CVariables()
        {
            for (const auto& [name, value] : former)
                setenv(name.c_str(), value.c_str(), 1);
        }
        std::vector<std::pair<std::string, std::string>> former;
    } restoredAtTheEnd;
    setenv("HOME", "/h/", 1);
    for (const auto& [value, expected] :
         {std::pair{"/x//", "/x"}, {"rel/x", "/h/.local/share"}, {"", "/h/.local/share"}}) {
        setenv("XDG_DATA_HOME", value, 1);
        EXPECT_EQ(CSystem::getUserDataFolder(), expected);
    }
    unsetenv("HOME"); // the password database has one
    EXPECT_TRUE(CSystem::getUserDataFolder().startsWith("/"));
    for (const auto& [value, expected] :
         {std::pair{"rel:/a/:/b", "/a"}, {"::", "/usr/local/share"}, {"", "/usr/local/share"}}) {
        setenv("XDG_DATA_DIRS", value, 1);
        EXPECT_EQ(CSystem::getCommonDataFolder(), expected);
    }
}

} // namespace
} // namespace tsm
