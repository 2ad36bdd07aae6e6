#include "Core/CAppDataGlobal.h"
#include "Core/CResourceMap.h"
#include "Tests/Support/CTestStore.h"
#include "Tests/Support/CTestTree.h"

#include <csignal>
#include <random>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

namespace tsm {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class AStore : public testing::Test {
protected:
    std::unique_ptr<CTestStore> open() const
    {
        return std::make_unique<CTestStore>(folder / "base");
    }
    void put(const std::string& place, const std::string& content,
             std::uint32_t id = kRawDataId) const
    {
        folder.write("base/" + place, itemFile(content, id));
    }
    std::vector<std::string> filesIn(const std::string& place) const
    {
        std::vector<std::string> names;
        for (const auto& entry : std::filesystem::directory_iterator(folder / ("base/" + place)))
            names.push_back(entry.path().filename().string());
        return names;
    }
    static std::string noise(int count)
    {
        std::mt19937 random(1);
        std::string bytes;
        while (static_cast<int>(bytes.size()) < count)
            bytes.push_back(static_cast<char>(random()));
        return bytes;
    }
    CScratchFolder folder;
};

TEST_F(AStore, TakesTheFirstSourceThatOpens)
{
    static const std::string resource = [] {
        const std::string file = itemFile("resource");
        const auto size = static_cast<std::uint32_t>(file.size());
        return std::string(reinterpret_cast<const char*>(&size), sizeof(size)) + file;
    }();
    const CResourceEntry table[] = {
        {reinterpret_cast<const std::uint8_t*>(resource.data()), "Prefix_key"}, {nullptr, nullptr}};
    CResourceMap::get().addAll(table);
    std::vector<std::string> places{"user/sub/key", "common/sub/key", "user/alt/key",
                                    "module/mod/key"};
    for (const std::string& place : places)
        put(place, place);
    places.emplace_back("resource");
    for (const std::string& place : places) {
        EXPECT_EQ(readItem(*open(), "key"), place);
        std::filesystem::remove(folder / ("base/" + place));
    }
    // The first write makes the user's file, which counts from then on.
    EXPECT_TRUE(writeItem(*open(), "key", "user's"));
    EXPECT_EQ(readItem(*open(), "key"), "user's");
    CResourceMap::get().remove("Prefix_key");
    std::filesystem::remove(folder / "base/user/sub/key");
    EXPECT_EQ(readItem(*open(), "key"), "");
}

TEST_F(AStore, EndsItsSearchAtADamagedItem)
{
    put("common/sub/key", "common");
    folder.write("base/user/sub/key", "no block");
    EXPECT_EQ(readItem(*open(), "key"), "");
    put("user/sub/key", "text", kTextDataId);
    EXPECT_EQ(readItem(*open(), "key"), "");
    // A folder is no item.
    std::filesystem::remove(folder / "base/user/sub/key");
    std::filesystem::create_directories(folder / "base/user/sub/key");
    EXPECT_EQ(readItem(*open(), "key"), "common");
}

TEST_F(AStore, AsksTheDiskOnceUnlessForced)
{
    const auto store = open();
    put("user/sub/key", "one");
    EXPECT_EQ(readItem(*store, "key"), "one");
    put("user/sub/key", "two");
    EXPECT_EQ(readItem(*store, "key"), "one");
    EXPECT_EQ(readItem(*store, "key", true), "two");
    folder.write("base/user/sub/key", "damaged");
    EXPECT_EQ(readItem(*store, "key", true), "two");
    std::filesystem::remove(folder / "base/user/sub/key");
    EXPECT_EQ(readItem(*store, "key", true), "two");
    // Of what is in memory the type counts, whatever lies on the disk.
    put("user/sub/key", "text", kTextDataId);
    EXPECT_EQ(readItem(*store, "key", false, kTextDataId), "");
    EXPECT_EQ(readItem(*store, "key", true, kTextDataId), "text");
    EXPECT_EQ(readItem(*store, "key"), "");
}

TEST_F(AStore, TellsTheListenersOfAnItem)
{
    const auto store = open();
    CItemListener listener(*store, "key");
    CItemListener other(*store, "other");
    EXPECT_TRUE(writeItem(*store, "key", "a", &other));
    EXPECT_TRUE(store->removeData("key", this));
    EXPECT_THAT(listener.senders, ElementsAre(&other, this));
    EXPECT_THAT(other.senders, IsEmpty());
    EXPECT_EQ(store->getKeyId("key"), store->getKeyId("key"));
    EXPECT_NE(store->getKeyId("key"), store->getKeyId("other"));
    EXPECT_GE(store->getKeyId("key"), 1u);
}

TEST_F(AStore, MayEndBeforeItsListeners)
{
    auto gone = open();
    const auto next = open();
    CAppData* address = gone.get();
    CItemListener listener(*gone, "key");
    gone.reset();
    EXPECT_FALSE(listener.isAttached());
    listener.attach(address, "key");
    EXPECT_FALSE(listener.isAttached());
    listener.attach(next.get(), "key");
    writeItem(*next, "key", "a");
    EXPECT_THAT(listener.senders, ElementsAre(nullptr));
}

TEST_F(AStore, GoesBackToTheNextSourceWhenAnItemIsRemoved)
{
    put("common/sub/key", "common");
    const auto store = open();
    EXPECT_TRUE(writeItem(*store, "key", "mine"));
    EXPECT_TRUE(store->removeData("key", nullptr));
    EXPECT_EQ(readItem(*store, "key"), "common");
    EXPECT_THAT(filesIn("user/sub"), IsEmpty());
    EXPECT_TRUE(store->removeData("key", nullptr)) << "what isn't there is gone";
    std::filesystem::create_directories(folder / "base/user/sub/stuck/inside");
    EXPECT_FALSE(store->removeData("stuck", nullptr));
}

TEST_F(AStore, TakesFileNamesAsKeysOnly)
{
    const auto store = open();
    folder.write("base/user/outside", itemFile("outside"));
    EXPECT_TRUE(writeItem(*store, "a", "a"));
    CString withZero("a\0b", 3);
    CString dropped; // a lone surrogate leaves nothing in UTF-8
    dropped.appendChar(0xd800);
    for (const CString& key : {CString(), CString("."), CString(".."), CString("../outside"),
                               CString("sub/x"), CString("/x"), withZero, dropped}) {
        SCOPED_TRACE(testing::PrintToString(key));
        EXPECT_EQ(readItem(*store, key), "");
        EXPECT_FALSE(writeItem(*store, key, "x"));
        EXPECT_FALSE(store->removeData(key, nullptr));
    }
    EXPECT_FALSE(writeItem(*store, std::string(300, 'k').c_str(), "x"));
    EXPECT_TRUE(writeItem(*store, std::string(255, 'k').c_str(), "x"));
    EXPECT_TRUE(writeItem(*store, CString::fromUtf8("\xd0\xba\xd0\xbb\xd1\x8e\xd1\x87 *"), "x"));
    EXPECT_EQ(filesIn("user/sub").size(), 3u);
    EXPECT_EQ(readItem(*open(), CString::fromUtf8("\xd0\xba\xd0\xbb\xd1\x8e\xd1\x87 *")), "x");
}

TEST_F(AStore, WithoutAFolderFailsForGood)
{
    put("common/sub/key", "common");
    folder.write("base/user", "a file where the folder should be");
    const auto store = open();
    EXPECT_EQ(readItem(*store, "key"), "common") << "reading needs no folder";
    CItemListener listener(*store, "key");
    EXPECT_FALSE(writeItem(*store, "key", "mine"));
    std::filesystem::remove(folder / "base/user");
    EXPECT_FALSE(writeItem(*store, "key", "mine"));
    EXPECT_EQ(readItem(*store, "key"), "");
    EXPECT_EQ(readItem(*store, "key", true), "");
    EXPECT_FALSE(store->removeData("key", nullptr));
    EXPECT_THAT(listener.senders, IsEmpty());

    CTestStore homeless{std::filesystem::path()};
    EXPECT_EQ(readItem(homeless, "key"), "");
    EXPECT_FALSE(writeItem(homeless, "key", "mine"));
}

TEST_F(AStore, KeepsAWriteThatTheDiskRefusesInMemory)
{
    const auto store = open();
    CItemListener listener(*store, "key");
    std::filesystem::create_directories(folder / "base/user/sub/key/inside");
    EXPECT_FALSE(writeItem(*store, "key", "mine"));
    EXPECT_EQ(readItem(*store, "key"), "mine");
    EXPECT_THAT(listener.senders, IsEmpty());
    EXPECT_THAT(filesIn("user/sub"), ElementsAre("key")) << "no temporary file stays";
}

TEST_F(AStore, KeepsTheFormerItemWhenTheDiskIsFull)
{
    const auto store = open();
    ASSERT_TRUE(writeItem(*store, "key", "former"));
    rlimit unlimited{};
    ASSERT_EQ(getrlimit(RLIMIT_FSIZE, &unlimited), 0);
    rlimit limited = unlimited;
    limited.rlim_cur = 50000;
    const auto formerHandler = std::signal(SIGXFSZ, SIG_IGN); // the write fails instead
    ASSERT_EQ(setrlimit(RLIMIT_FSIZE, &limited), 0);
    const bool isWritten = writeItem(*store, "key", noise(100000));
    ASSERT_EQ(setrlimit(RLIMIT_FSIZE, &unlimited), 0);
    std::signal(SIGXFSZ, formerHandler);
    EXPECT_FALSE(isWritten);
    EXPECT_EQ(readItem(*open(), "key"), "former");
    EXPECT_THAT(filesIn("user/sub"), ElementsAre("key"));
}

TEST_F(AStore, KeepsTheFormerItemInAFolderThatCantBeWritten)
{
    ASSERT_TRUE(writeItem(*open(), "key", "former"));
    const auto path = folder / "base/user/sub";
    using std::filesystem::perms;
    std::filesystem::permissions(path, perms::owner_read | perms::owner_exec | perms::others_read |
                                           perms::others_exec);
    const pid_t child = fork();
    if (child == 0) {
        // Nothing is read-only for root.
        if (geteuid() == 0 && setuid(65534) != 0)
            _exit(1);
        const auto store = open();
        const bool isRefused =
            !writeItem(*store, "key", "new") && !store->removeData("key", nullptr);
        _exit(isRefused && readItem(*store, "key") == "new" ? 0 : 2);
    }
    int status = 0;
    ASSERT_EQ(waitpid(child, &status, 0), child);
    EXPECT_EQ(status, 0);
    std::filesystem::permissions(path, perms::owner_all);
    EXPECT_EQ(readItem(*open(), "key"), "former");
}

TEST_F(AStore, KeepsTexts)
{
    const auto store = open();
    EXPECT_EQ(store->readText("key", "default"), "default");
    const CString text = CString::fromUtf8("\xce\xa9 caf\xc3\xa9");
    EXPECT_TRUE(store->writeText("key", text, nullptr));
    EXPECT_EQ(open()->readText("key", "default"), text);
    EXPECT_TRUE(store->writeText("empty", CString(), nullptr));
    EXPECT_EQ(open()->readText("empty", "default"), "");
    put("user/sub/cut", std::string("\5\0\0\0Gra", 7), kTextDataId);
    EXPECT_EQ(store->readText("cut", "default"), "");
    // The longest text that can be read again, and one more.
    EXPECT_TRUE(store->writeText("long", std::string(61440, 'x').c_str(), nullptr));
    EXPECT_FALSE(store->writeText("long", std::string(61441, 'x').c_str(), nullptr));
    EXPECT_EQ(open()->readText("long", "").getLength(), 61440);
}

TEST_F(AStore, ReadsNothingWrongFromADamagedItem)
{
    const std::string content = noise(300) + std::string(3000, 'a');
    const std::string whole = itemFile(content);
    const auto readFile = [&](const std::string& bytes) {
        folder.write("base/user/sub/key", bytes);
        return readItem(*open(), "key");
    };
    for (std::size_t size = 0; size < whole.size(); ++size) {
        EXPECT_EQ(readFile(whole.substr(0, size)), "") << size;
    }
    for (std::size_t i = 0; i < whole.size(); ++i) {
        std::string bytes = whole;
        bytes[i] = static_cast<char>(bytes[i] ^ (1 << (i % 8)));
        // Some bits of the stream's head mean nothing for reading.
        const std::string read = readFile(bytes);
        EXPECT_TRUE(read.empty() || read == content) << i;
    }
    // Two gigabytes are claimed, with the head's check right (RFC 1950, section 9): the memory
    // goes with what comes.
    std::string claim = whole;
    claim.replace(4, 4, "\xff\xff\xff\x7f");
    std::uint32_t a = 1, b = 0;
    for (int i = 4; i < 8; ++i) {
        a = (a + static_cast<std::uint8_t>(claim[static_cast<std::size_t>(i)])) % 65521;
        b = (b + a) % 65521;
    }
    const std::uint32_t check = b << 16 | a;
    claim.replace(8, 4, std::string(reinterpret_cast<const char*>(&check), 4));
    EXPECT_EQ(readFile(claim), "");
}

TEST(TheStores, LieInTheUsersDataFolder)
{
    EXPECT_EQ(&CAppData::getStore(CAppData::EStore::Global), CAppData::findStore("global"));
    EXPECT_EQ(CAppData::findStore("Global"), nullptr);
    const std::filesystem::path base = std::getenv("XDG_DATA_HOME");
    const std::pair<const char*, const char*> stores[] = {
        {"global", "Tessmark"},
        {"group", "Tessmark/Audio Plug-Ins"},
        {"local", "Tessmark/Audio Plug-Ins/Ferrit Reelpath"}};
    for (const auto& [word, place] : stores) {
        EXPECT_TRUE(CAppData::findStore(word)->writeText("the-stores-test", word, nullptr));
        EXPECT_TRUE(std::filesystem::is_regular_file(base / place / "the-stores-test"));
    }
    // The global store finds what lies in the group's folder.
    CAppDataGlobal fresh;
    std::filesystem::remove(base / "Tessmark/the-stores-test");
    EXPECT_EQ(fresh.readText("the-stores-test", ""), "group");
    for (const auto& [word, place] : stores)
        EXPECT_TRUE(CAppData::findStore(word)->removeData("the-stores-test", nullptr));
}

} // namespace
} // namespace tsm
