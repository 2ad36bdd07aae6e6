#include "Core/CDataSet.h"
#include "Core/CFileReader.h"
#include "Core/CFileWriter.h"
#include "Core/CResourceMap.h"
#include "Core/CResourceReader.h"
#include "Tests/Support/CScratchFolder.h"
#include "Tests/Support/CTestStreams.h"
#include "Tests/Support/CTestTree.h"

#include <fcntl.h>
#include <unistd.h>

namespace tsm {
namespace {

class AFile : public testing::Test {
protected:
    CString pathOf(const std::string& name) const
    {
        return CString::fromUtf8((folder / name).string());
    }
    std::string quoted(const std::string& name) const
    {
        return "'" + (folder / name).string() + "'";
    }
    void writeText(const std::string& name, const std::string& text, bool append)
    {
        CFileWriter out;
        ASSERT_OK(out.open(pathOf(name), append));
        EXPECT_OK(out.write(text.data(), static_cast<int>(text.size())));
        EXPECT_OK(out.close());
    }
    CScratchFolder folder;
    char bytes[16] = {};
};

TEST_F(AFile, IsRewrittenOrAppendedTo)
{
    writeText("a", "long first text", false);
    writeText("a", "reel", false);
    EXPECT_EQ(folder.read("a"), "reel");
    writeText("a", "path", true);
    writeText("new", "x", true);
    EXPECT_EQ(folder.read("a") + folder.read("new"), "reelpathx");
}

TEST_F(AFile, AppendedToTellsAndTakesPositions)
{
    writeText("a", "01234567", false);
    CFileWriter out;
    ASSERT_OK(out.open(pathOf("a"), true));
    std::uint64_t position = 0;
    EXPECT_OK(out.getPosition(position));
    EXPECT_EQ(position, 8u);
    EXPECT_OK(out.setPosition(2));
    EXPECT_OK(out.write("xy", 2));
    EXPECT_OK(out.close());
    EXPECT_EQ(folder.read("a"), "01xy4567");
}

TEST_F(AFile, MayHaveAnyName)
{
    const std::string name = "Bänder \u0416\u65e5\u672c.cpf";
    writeText(name, "reel", false);
    EXPECT_EQ(folder.read(name), "reel");
    CFileReader in;
    ASSERT_OK(in.open(pathOf(name)));
    EXPECT_OK(in.read(bytes, 4));
    EXPECT_EQ(std::string(bytes, 4), "reel");
    EXPECT_EQ(in.getName(), pathOf(name));
}

TEST_F(AFile, IsReadFromAnyPlace)
{
    folder.write("a", "0123456789");
    CFileReader in;
    ASSERT_OK(in.open(pathOf("a")));
    EXPECT_OK(in.skip(3));
    EXPECT_OK(in.skip(-2));
    EXPECT_OK(in.read(bytes, 2));
    EXPECT_EQ(std::string(bytes, 2), "34");
    EXPECT_OK(in.setPosition(8));
    int count = 16;
    EXPECT_OK(in.readStreamed(bytes, count));
    EXPECT_EQ(std::string(bytes, static_cast<std::size_t>(count)), "89");
    count = 16;
    EXPECT_OK(in.readStreamed(bytes, count));
    EXPECT_EQ(count, 0);
    EXPECT_OK(in.setPosition(7));
    EXPECT_FAILS_WITH(in.read(bytes, 5), "Unable to read from file " + quoted("a") +
                                             " (required 5 bytes, read 3 bytes).");
}

TEST_F(AFile, ThatIsMissingIsMadeForWriteAccessOnly)
{
    CFileReader in;
    EXPECT_FAILS_WITH(in.open(pathOf("b")), "Unable to open file " + quoted("b") +
                                                " for reading (error " + std::to_string(ENOENT) +
                                                ").");
    ASSERT_OK(in.open(pathOf("b"), true));
    std::uint64_t size = 1;
    EXPECT_OK(in.getSize(size));
    EXPECT_EQ(size, 0u);
}

TEST_F(AFile, IsNoFolder)
{
    const std::string place = "Unable to open file " + quoted("") + " for ";
    const std::string error = " (error " + std::to_string(EISDIR) + ").";
    CFileReader in;
    CFileWriter out;
    EXPECT_FAILS_WITH(in.open(pathOf("")), place + "reading" + error);
    EXPECT_FAILS_WITH(out.open(pathOf("")), place + "rewriting" + error);
    EXPECT_FAILS_WITH(out.open(pathOf(""), true), place + "appending" + error);
}

TEST_F(AFile, ThatIsntOpenFailsInEachOperation)
{
    CFileReader in;
    std::uint64_t place = 0;
    int count = 1;
    const std::string error = " (error " + std::to_string(EBADF) + ").";
    EXPECT_OK(in.close());
    EXPECT_FAILS_WITH(in.read(bytes, 1), "Unable to read from file ''" + error);
    EXPECT_FAILS_WITH(in.readStreamed(bytes, count), "Unable to read from file ''" + error);
    EXPECT_FAILS_WITH(in.skip(5), "Unable to increment file's '' position by 5" + error);
    EXPECT_FAILS_WITH(in.getPosition(place), "Unable to get file's '' position" + error);
    EXPECT_FAILS_WITH(in.getSize(place), "Unable to get file's '' size" + error);
    EXPECT_FAILS_WITH(in.setPosition(7), "Unable to set file's '' position to 7" + error);
}

TEST_F(AFile, OnAFullDiskTellsTheSystemsError)
{
    CFileWriter out;
    ASSERT_OK(out.open("/dev/full"));
    EXPECT_FAILS_WITH(out.write("x", 1), "Unable to write to file '/dev/full' (error " +
                                             std::to_string(ENOSPC) + ").");
}

TEST_F(AFile, Above2GBHas64BitPositions)
{
    folder.write("a", "");
    std::filesystem::resize_file(folder / "a", 0x80000004); // sparse: takes no room
    CFileReader in;
    ASSERT_OK(in.open(pathOf("a")));
    std::int32_t small = 0;
    EXPECT_FAILS_WITH(in.getSizeInt(small), "The size of the stream is above allowed 2 GB.");
    EXPECT_OK(in.setPosition(0x80000000));
    EXPECT_OK(in.read(bytes, 4));
    std::uint64_t position = 0;
    EXPECT_OK(in.getPosition(position));
    EXPECT_EQ(position, 0x80000004u);
}

/// Puts another file into the place of one of the process's streams for a while.
class CRedirection {
public:
    CRedirection(int stream, int by) : redirected(stream), saved(dup(stream)) { dup2(by, stream); }
    ~CRedirection()
    {
        dup2(saved, redirected);
        close(saved);
    }

private:
    int redirected;
    int saved;
};

TEST_F(AFile, NamedByAStarIsAStreamOfTheProcess)
{
    struct CRow {
        int stream;
        const char* name;
        const char* shownName;
    };
    for (const CRow& row : {CRow{1, "*", "stdout"}, CRow{2, "*e", "stderr"}}) {
        folder.write(row.shownName, "");
        const int fd = open((folder / row.shownName).c_str(), O_WRONLY);
        {
            const CRedirection redirection(row.stream, fd);
            for (int i = 0; i < 2; ++i) { // closing doesn't end the process's stream
                CFileWriter out;
                EXPECT_OK(out.open(row.name));
                EXPECT_EQ(out.getName(), row.shownName);
                EXPECT_OK(out.write("reel", 4));
                EXPECT_OK(out.close());
            }
        }
        close(fd);
        EXPECT_EQ(folder.read(row.shownName), "reelreel");
    }
}

TEST_F(AFile, NamedByAStarReadsTheStandardInput)
{
    int ends[2];
    ASSERT_EQ(pipe(ends), 0);
    const CRedirection redirection(0, ends[0]);
    // In two parts, as programs do: a reader gets both.
    ASSERT_EQ(write(ends[1], "reel", 4), 4);
    CFileReader in;
    EXPECT_OK(in.open("*"));
    EXPECT_EQ(in.getName(), "stdin");
    EXPECT_OK(in.read(bytes, 2));
    ASSERT_EQ(write(ends[1], "path", 4), 4);
    close(ends[1]);
    int count = 16;
    EXPECT_OK(in.readStreamed(bytes, count));
    EXPECT_EQ(std::string(bytes, static_cast<std::size_t>(count)), "elpath");
    EXPECT_FAILS_WITH(in.skip(1), "Unable to increment file's 'stdin' position by 1 (error " +
                                      std::to_string(ESPIPE) + ").");
    close(ends[0]);
}

alignas(16) constexpr unsigned char kOne[] = {3, 0, 0, 0, 'o', 'n', 'e'};
alignas(16) constexpr unsigned char kNone[] = {0, 0, 0, 0};
constexpr CResourceEntry kTable[] = {
    {kOne, "stream-test/one"}, {kNone, "stream-test/none"}, {nullptr, nullptr}};

class AResource : public AFile {
protected:
    AResource() { CResourceMap::get().addAll(kTable); }
};

TEST_F(AResource, IsReadInPlace)
{
    CResourceReader in;
    ASSERT_OK(in.open("stream-test/one"));
    EXPECT_EQ(in.getMemoryPtr(), kOne + 4);
    EXPECT_OK(in.skip(1));
    EXPECT_OK(in.read(bytes, 2));
    EXPECT_EQ(std::string(bytes, 2), "ne");
    EXPECT_EQ(in.getMemoryPtr(), nullptr);
    EXPECT_OK(in.setPosition(1));
    std::int32_t position = 0, size = 0;
    EXPECT_OK(in.getPositionInt32(position));
    EXPECT_OK(in.getSizeInt(size));
    EXPECT_EQ(size - position, 2);
    ASSERT_OK(in.open("stream-test/none"));
    EXPECT_EQ(in.getMemoryPtr(), nullptr);
    int count = 5;
    EXPECT_OK(in.readStreamed(bytes, count));
    EXPECT_EQ(count, 0);
}

TEST_F(AResource, PrecedesTheFileOfItsName)
{
    folder.write("one", "file");
    const std::string name = (folder / "one").string();
    CResourceReader in;
    ASSERT_OK(in.open(pathOf("one")));
    EXPECT_EQ(in.getMemoryPtr(), nullptr);
    EXPECT_OK(in.read(bytes, 4));
    EXPECT_EQ(std::string(bytes, 4), "file");

    const CResourceEntry table[] = {{kOne, name.c_str()}, {nullptr, nullptr}};
    CResourceMap::get().addAll(table);
    ASSERT_OK(in.open(pathOf("one")));
    EXPECT_OK(in.read(bytes, 3));
    EXPECT_EQ(std::string(bytes, 3), "one");
}

TEST_F(AResource, LoadsADataSet)
{
    class CSet : public CDataSet {
    public:
        CError* loadFrom(CPosInputStream& stream) override
        {
            TSM_TRY(stream.read(text, 3));
            return nullptr;
        }
        char text[4] = {};
    };
    CSet set;
    EXPECT_OK(set.loadResource("stream-test/one"));
    EXPECT_STREQ(set.text, "one");
    const auto lines = takeLines(set.loadResource("stream-test/none"));
    ASSERT_FALSE(lines.empty());
    EXPECT_EQ(lines.front(),
              "Premature end of memory resource while reading (pos 0, count 3, size 0).");
    EXPECT_THAT(lines.back(), testing::HasSubstr("Core/CDataSet.cpp("));
    EXPECT_FAILS_WITH(set.loadResource(pathOf("absent")),
                      "Unable to open file " + quoted("absent") + " for reading (error " +
                          std::to_string(ENOENT) + ").");
}

} // namespace
} // namespace tsm
