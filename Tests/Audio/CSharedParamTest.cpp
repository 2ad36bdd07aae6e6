#include "Audio/CSharedParam.h"

#include "Tests/Support/CParamTree.h"
#include "Tests/Support/CTestStore.h"

#include <thread>

namespace tsm {

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class ASharedSetting : public AParamTree {
protected:
    /// A further instance of the plug-in.
    struct CInstance {
        CTreePtr<CObject> root;
        CAudioParamCollector* collector = nullptr;
    };
    void makeInstance(CInstance& instance)
    {
        ASSERT_OK(application->initRootObject(instance.root, CString()));
        CObject& plugin = make(*instance.root, "core:object", "plugin");
        make<CAudioEnv>(plugin, "audio:audio-env", "audio-env");
        ASSERT_OK(create(instance.collector, plugin, "audio:param-collector", "param-collector",
                         {{"env", "^audio-env"}}));
    }
    CTestAttrs timeParam()
    {
        return converter("time",
                         {{"min-values", "1"}, {"max-values", "1000"}, {"def-values", "2"}});
    }
    void share(const char* name) { collector->addSharedParam(fullName(name), store, "item"); }
    std::string stored() { return CTestStore(folder / "base").readText("item", "none").toUtf8(); }

    CScratchFolder folder;
    CTestStore store{folder / "base"};
};

} // namespace

TEST_F(ASharedSetting, KeepsANumberAsItsText)
{
    CAudioParam& time = param("time", timeParam());
    share("time");
    EXPECT_EQ(time.value(0, 0), 0.002);
    EXPECT_EQ(stored(), "none") << "a default isn't written";
    time.setValue(0, 0, 0.01234);
    EXPECT_EQ(stored(), "12.3");
    EXPECT_EQ(time.value(0, 0), 0.01234) << "the own writing doesn't come back";
    store.writeText("item", "5", nullptr);
    EXPECT_EQ(time.value(0, 0), 0.005);
    store.writeText("item", "99999", nullptr);
    EXPECT_EQ(time.value(0, 0), 1.0) << "limits hold";
    for (const char* nonsense : {"fast", "", "1e999"}) {
        store.writeText("item", nonsense, nullptr);
        EXPECT_EQ(time.value(0, 0), 1.0);
    }
    store.removeData("item", nullptr);
    EXPECT_EQ(time.value(0, 0), 0.002);
}

TEST_F(ASharedSetting, BeginsWithTheStoredValue)
{
    store.writeText("item", "7.5", nullptr);
    CAudioParam& time = param("time", timeParam());
    share("time");
    EXPECT_EQ(time.value(0, 0), 0.0075);

    CInstance other;
    makeInstance(other);
    CAudioParam& bad = other.collector->findOrCreate(fullName("time"));
    bad.attachInfo(*time.getInfo());
    folder.write("base/user/sub/damaged", "no block");
    other.collector->addSharedParam(fullName("time"), store, "damaged");
    EXPECT_EQ(bad.value(0, 0), 0.002);
}

TEST_F(ASharedSetting, KeepsTextsAndBlocks)
{
    CAudioParam& name = param("name", textParam("Default", {{"is-single-group", "true"}}));
    share("name");
    const CString greek = CString::fromUtf8("\xce\xa9 1");
    name.setText(0, 0, greek);
    EXPECT_EQ(stored(), greek.toUtf8());
    store.writeText("item", "Military", nullptr);
    EXPECT_EQ(name.text(0, 0), "Military");
    name.setText(0, 0, std::string(70000, 'x').c_str());
    EXPECT_EQ(stored(), "Military") << "what couldn't be read again isn't written";

    CAudioParam& palette = param("palette", converter("real", {{"data-type", "raw"}}));
    collector->addSharedParam(fullName("palette"), store, "raw");
    EXPECT_EQ(readItem(store, "raw"), "");
    palette.setRaw(0, 0, "abc", 3);
    EXPECT_EQ(readItem(store, "raw"), "abc");
    writeItem(store, "raw", "defg");
    EXPECT_EQ(palette.raw(0, 0), toBuffer("defg"));
    store.removeData("raw", nullptr);
    EXPECT_EQ(palette.raw(0, 0), toBuffer("defg")) << "no block is no change";
}

TEST_F(ASharedSetting, StoresElementZeroOfGroupZero)
{
    CAudioParam& many = param("many", {{"def-values", "1,2;3,4"}});
    share("many");
    store.writeText("item", "50", nullptr);
    EXPECT_EQ(many.value(0, 0), 50.0);
    EXPECT_EQ(many.value(0, 1), 2.0);
    EXPECT_EQ(many.value(1, 0), 3.0);
}

TEST_F(ASharedSetting, WaitsForItsParametersDescription)
{
    store.writeText("item", "9", nullptr);
    share("time");
    CAudioParam& time = param("time");
    EXPECT_FALSE(time.hasValues());
    store.writeText("item", "8", nullptr);
    EXPECT_FALSE(time.hasValues());
    time.attachInfo(infoOf("time", timeParam()));
    EXPECT_EQ(time.value(0, 0), 0.008) << "a definition's default doesn't replace the user's";
    EXPECT_EQ(stored(), "8");
    store.removeData("item", nullptr);
    EXPECT_EQ(time.value(0, 0), 0.002);
}

TEST_F(ASharedSetting, IsTheSameInAllInstances)
{
    CInstance other;
    makeInstance(other);
    CAudioParam& here = param("time", timeParam());
    CAudioParam& there = other.collector->findOrCreate(fullName("time"));
    there.attachInfo(*here.getInfo());
    share("time");
    share("time"); // the same tie again
    other.collector->addSharedParam(fullName("time"), store, "item");
    CItemListener writes(store, "item");
    int changesThere = 0;
    CListenerRecorder listener([&](CAudioParam&, const CAudioParamChange&) { ++changesThere; });
    there.addListener(listener);
    here.setValue(0, 0, 0.005);
    EXPECT_EQ(there.value(0, 0), 0.005);
    EXPECT_EQ(changesThere, 1);
    EXPECT_EQ(writes.senders.size(), 1u) << "it doesn't bounce back";
    there.setValue(0, 0, 0.25);
    EXPECT_EQ(here.value(0, 0), 0.25);
    EXPECT_EQ(writes.senders.size(), 2u);
    other.root.reset();
    here.setValue(0, 0, 0.5);
    EXPECT_EQ(stored(), "500");
}

TEST_F(ASharedSetting, HidesNoChangeFromItsOwnHost)
{
    // A store that can't write keeps a setting in its own instance.
    folder.write("base/user", "a file where the folder should be");
    CAudioParam& time = param("time", timeParam());
    share("time");
    int changes = 0;
    CListenerRecorder listener([&](CAudioParam&, const CAudioParamChange&) { ++changes; });
    time.addListener(listener);
    time.setValue(0, 0, 0.5);
    EXPECT_EQ(changes, 1);
    EXPECT_EQ(time.value(0, 0), 0.5);
}

TEST_F(ASharedSetting, IsDefinedWithParameterItemAndStore)
{
    CAudioParamSharedStorage* def = nullptr;
    const auto define = [&](const char* name, const char* data, const char* word) {
        return create(def, *definitions, "audio:param-shared-storage", "s",
                      {{"param", name}, {"data-name", data}, {"storage-type", word}});
    };
    ASSERT_OK(define("a.b", "item", "group"));
    EXPECT_EQ(&def->getStore(), CAppData::findStore("group"));
    EXPECT_FAILS_WITH(define("", "item", "local"), "Invalid parameter name specified.");
    EXPECT_FAILS_WITH(define("a", "", "local"), "Invalid shared data name specified.");
    EXPECT_FAILS_WITH(define("a", "item", "Local"), "Invalid storage type \"Local\" specified.");
}

class SharedSettingThreads : public ASharedSetting {};

TEST_F(SharedSettingThreads, EndWithOneValueInAllInstances)
{
    CInstance others[2];
    CAudioParam* params[3] = {&param("time", timeParam())};
    share("time");
    for (int i = 0; i < 2; ++i) {
        makeInstance(others[i]);
        params[i + 1] = &others[i].collector->findOrCreate(fullName("time"));
        params[i + 1]->attachInfo(*params[0]->getInfo());
        others[i].collector->addSharedParam(fullName("time"), store, "item");
    }
    for (int round = 0; round < 8; ++round) {
        std::vector<std::thread> threads;
        for (int thread = 0; thread < 3; ++thread)
            threads.emplace_back([&, thread] {
                for (int i = 0; i < 25; ++i) {
                    params[thread]->setValue(0, 0, 0.001 * (1 + (i * 7 + thread * 31) % 900));
                    if (i % 8 == thread)
                        store.writeText("item", "77.0", nullptr);
                }
            });
        for (std::thread& thread : threads)
            thread.join();
        const CString text = store.readText("item", "");
        for (CAudioParam* each : params) {
            CString shown;
            const CAudioParamInfo& info = *each->getInfo();
            info.getConverter(0).format(shown, info, 0, each->value(0, 0),
                                        EAudioParamFormat::Normal);
            EXPECT_EQ(shown, text);
        }
    }
}

TEST_F(SharedSettingThreads, LetInstancesComeAndGoDuringChanges)
{
    CAudioParam& time = param("time", timeParam());
    share("time");
    std::atomic<bool> isDone = false;
    std::thread writer([&] {
        for (int i = 0; !isDone.load(); ++i)
            time.setValue(0, 0, 0.001 * (1 + i % 900));
    });
    for (int i = 0; i < 60; ++i) {
        CInstance shortLived;
        makeInstance(shortLived);
        CAudioParam& there = shortLived.collector->findOrCreate(fullName("time"));
        there.attachInfo(*time.getInfo());
        shortLived.collector->addSharedParam(fullName("time"), store, "item");
        if (i % 2)
            there.setValue(0, 0, 0.95);
        EXPECT_GT(there.value(0, 0), 0.0);
    }
    isDone = true;
    writer.join();
}

} // namespace tsm
