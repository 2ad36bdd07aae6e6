#include "Platform/CNativeFile.h"

#include "Tests/Support/CScratchFolder.h"

#include <cerrno>
#include <csignal>
#include <pthread.h>
#include <sys/stat.h>
#include <thread>
#include <unistd.h>

namespace tsm {
namespace {

TEST(ANativeFile, ReadsAndWritesWhereItStands)
{
    const CScratchFolder folder;
    CNativeFile file;
    ASSERT_EQ(file.open((folder / "a").c_str(), CNativeFile::EMode::ReadWrite), 0);
    std::int64_t done = 0, place = 0;
    EXPECT_EQ(file.write("0123456789", 10, done), 0);
    EXPECT_EQ(file.seek(2), 0);
    EXPECT_EQ(file.seekBy(3), 0);
    EXPECT_EQ(file.tell(place), 0);
    EXPECT_EQ(place, 5);
    char bytes[20];
    EXPECT_EQ(file.read(bytes, 20, done), 0);
    EXPECT_EQ(std::string(bytes, static_cast<std::size_t>(done)), "56789");
    EXPECT_EQ(file.seekBy(-11), EINVAL);
    EXPECT_EQ(file.getSize(place), 0);
    EXPECT_EQ(place, 10);
    EXPECT_EQ(file.read(bytes, -1, done), EINVAL);
}

TEST(ANativeFile, ClosesTheFormerOneWhenItOpens)
{
    const CScratchFolder folder;
    folder.write("a", "one");
    folder.write("b", "two");
    CNativeFile file;
    for (int i = 0; i < 5000; ++i) // more than a process may have open, by the usual limit
        ASSERT_EQ(file.open((folder / (i % 2 ? "a" : "b")).c_str(), CNativeFile::EMode::Read), 0);
    EXPECT_EQ(file.close(), 0);
    EXPECT_FALSE(file.isOpen());
    EXPECT_EQ(file.close(), 0);
}

TEST(ANativeFile, OfNoSizeSaysSo)
{
    CNativeFile file;
    ASSERT_EQ(file.open("/dev/null", CNativeFile::EMode::ReadWrite), 0);
    std::int64_t size = 0;
    EXPECT_EQ(file.getSize(size), ESPIPE);
}

/// A pipe gives what is in it, and a signal ends a waiting read: neither may show.
TEST(ANativeFileThreads, ReadsOnAfterPartsAndSignals)
{
    const CScratchFolder folder;
    const std::string path = (folder / "pipe").string();
    ASSERT_EQ(mkfifo(path.c_str(), 0600), 0);
    struct sigaction action {};
    action.sa_handler = [](int) {}; // without SA_RESTART
    struct sigaction former {};
    sigaction(SIGUSR1, &action, &former);

    const pthread_t reader = pthread_self();
    std::thread writer([&] {
        CNativeFile out;
        ASSERT_EQ(out.open(path.c_str(), CNativeFile::EMode::Rewrite), 0);
        for (int i = 0; i < 20; ++i) {
            usleep(2000);
            pthread_kill(reader, SIGUSR1);
            std::int64_t done = 0;
            EXPECT_EQ(out.write("0123456789", 10, done), 0);
        }
    });
    CNativeFile in;
    EXPECT_EQ(in.open(path.c_str(), CNativeFile::EMode::Read), 0);
    char bytes[300];
    std::int64_t done = 0;
    EXPECT_EQ(in.read(bytes, 150, done), 0);
    EXPECT_EQ(done, 150);
    EXPECT_EQ(in.read(bytes, 300, done), 0);
    EXPECT_EQ(done, 50);
    writer.join();
    sigaction(SIGUSR1, &former, nullptr);
}

} // namespace
} // namespace tsm
