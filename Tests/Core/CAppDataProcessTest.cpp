#include "Core/CFileReader.h"
#include "Tests/Support/CTestStore.h"
#include "Tests/Support/CTestTree.h"

#include <csignal>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>

namespace tsm {
namespace {

/// An item that tells whether it is whole: one byte, again and again.
std::string pattern(int number)
{
    return std::string(static_cast<std::size_t>(1 + number * 977 % 40000),
                       static_cast<char>('a' + number % 26));
}

bool isPattern(const std::string& item)
{
    return !item.empty() && item.find_first_not_of(item[0]) == std::string::npos;
}

class AnItemOfTwoProcesses : public testing::Test {
protected:
    void SetUp() override { ASSERT_TRUE(writeItem(store, "key", pattern(0))); }
    /// A child that writes the item over and over.
    pid_t startWriter(int first, int count)
    {
        const pid_t child = fork();
        if (child == 0) {
            CTestStore own(folder / "base");
            bool isGood = true;
            for (int i = 0; i < count; ++i)
                isGood &= writeItem(own, "key", pattern(first + i));
            _exit(isGood ? 0 : 1);
        }
        return child;
    }
    /// As any other program would read it: a damaged file isn't hidden by what is in memory.
    std::string readFile() const
    {
        CFileReader file;
        CByteBuffer item;
        EXPECT_OK(file.open(CString::fromUtf8((folder / "base/user/sub/key").string())));
        EXPECT_OK(file.readCompressedData(item, kRawDataId));
        return toText(item);
    }
    CScratchFolder folder;
    CTestStore store{folder / "base"};
};

TEST_F(AnItemOfTwoProcesses, IsAlwaysWhole)
{
    const pid_t writers[] = {startWriter(1, 150), startWriter(1000, 150)};
    for (int i = 0; i < 200; ++i) {
        ASSERT_TRUE(isPattern(readFile()));
        ASSERT_TRUE(isPattern(readItem(store, "key", true)));
        if (i % 4 == 0) {
            ASSERT_TRUE(writeItem(store, "key", pattern(2000 + i)));
        }
    }
    for (const pid_t writer : writers) {
        int status = 0;
        ASSERT_EQ(waitpid(writer, &status, 0), writer);
        EXPECT_EQ(status, 0);
    }
    EXPECT_TRUE(isPattern(readFile()));
}

TEST_F(AnItemOfTwoProcesses, SurvivesAWritersSuddenEnd)
{
    for (int round = 0; round < 20; ++round) {
        const pid_t writer = startWriter(round, 1000000);
        std::this_thread::sleep_for(std::chrono::microseconds(500 + 700 * round));
        ASSERT_EQ(kill(writer, SIGKILL), 0);
        ASSERT_EQ(waitpid(writer, nullptr, 0), writer);
        ASSERT_TRUE(isPattern(readFile()));
    }
    // What an ended writer left behind doesn't hinder the next.
    EXPECT_TRUE(writeItem(store, "key", pattern(1)));
    EXPECT_EQ(readFile(), pattern(1));
}

TEST(AppDataThreads, ReadWriteAndListenAtTheSameTime)
{
    const CScratchFolder folder;
    CTestStore store(folder / "base");
    std::vector<std::thread> threads;
    for (int thread = 0; thread < 3; ++thread)
        threads.emplace_back([&store, thread] {
            for (int i = 0; i < 60; ++i) {
                const CString key(i % 2 ? "odd" : "even");
                CItemListener listener(store, key);
                EXPECT_TRUE(writeItem(store, key, pattern(thread * 100 + i), &listener));
                listener.detach(); // what another thread tells it comes no more
                EXPECT_FALSE(listener.senders.empty());
                const std::string item = readItem(store, key, i % 5 == 0);
                EXPECT_TRUE(item.empty() || isPattern(item));
                if (i % 16 == 0) {
                    EXPECT_TRUE(store.removeData(key, nullptr));
                }
            }
        });
    for (std::thread& thread : threads)
        thread.join();
}

} // namespace
} // namespace tsm
