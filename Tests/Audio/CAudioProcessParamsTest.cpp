#include "Audio/CAudioParam.h"
#include "Tests/Support/CGraphTree.h"

namespace tsm::test {

namespace {

const CAttrs kGlobal = {{"is-global", "true"}};
const CAttrs kStorable = {{"is-storable", "true"}};

CTestNode remap(const char* orig, const char* target)
{
    return node("audio:param-remap", "", {{"orig", orig}, {"new", target}});
}

class AProcessTree : public AGraph {
protected:
    double value(const char* name)
    {
        const CAudioParam* found = collector->find(name);
        return found ? found->value(0, 0, -1.0) : -2.0;
    }
};

} // namespace

TEST_F(AProcessTree, RegistersParametersWithStorageAndThoseOfScopes)
{
    startGraph(chain({param("kept", "1", kStorable), param("local", "2"),
                      node("core:object", "io", {},
                           {param("deep", "3", kGlobal), param("plain", "4"),
                            node("core:object", "deeper", {}, {param("lost", "5", kGlobal)})})}));
    EXPECT_EQ(value("plugin.modMain.kept"), 1.0);
    EXPECT_EQ(value("plugin.modMain.local"), -2.0);
    EXPECT_EQ(value("plugin.modMain.io.deep"), 3.0);
    EXPECT_EQ(value("plugin.modMain.io.plain"), -2.0);
    EXPECT_EQ(value("plugin.modMain.io.deeper.lost"), -2.0);
}

TEST_F(AProcessTree, KeepsWhatTheCollectorHas)
{
    load(chain({param("kept", "1", kStorable)}));
    static_cast<void>(
        collector->findOrCreate("plugin.modMain.kept")); // bare, as a preset may leave it
    build();
    EXPECT_EQ(value("plugin.modMain.kept"), 1.0);
    set("kept", 8.0);
    CPtr<CAudioProcessBase> again;
    ASSERT_OK(create(again, "shared::audio.modMain"));
    EXPECT_EQ(value("plugin.modMain.kept"), 8.0);
}

TEST_F(AProcessTree, SendsNamesOnThroughEveryAncestor)
{
    // The inner process sends to the outer one's name, which the outer one sends on.
    const CTestNode inner = node("audio:process-def", "inner", {{"is-auto-links", "true"}},
                                 {remap("g.gain", "level"), gain("g", "2")});
    startGraph(chain({param("top", "7", kGlobal), remap("inner.level", "^modMain.top"), inner}));
    EXPECT_EQ(run(constant(5)), constant(5, 7.0));
    set("top", 3.0);
    EXPECT_EQ(run(constant(5)), constant(5, 3.0));
    EXPECT_EQ(value("plugin.modMain.inner.g.gain"), -2.0);
}

TEST_F(AProcessTree, TakesTheProcessesOwnDefinitionWhereNoRemapSendsTheName)
{
    startGraph(chain({gain("g", "6"), gain("abs", "6")}));
    EXPECT_EQ(run(constant(5)), constant(5, 36.0));
    ASSERT_NE(collector->find("plugin.modMain.g.gain"), nullptr);
    EXPECT_FALSE(collector->find("plugin.modMain.g.gain")->getInfo()->isStorable);
}

TEST_F(AProcessTree, FindsLocalDefinitionsOfProcessesThatStandElsewhere)
{
    load(chain({gain("g", "6")}));
    build();
    CAudioProcessDefBase* def = nullptr;
    ASSERT_OK(root->findObjectChecked(def, CString("shared::audio.modMain.g")));
    CPtr<CAudioProcessBase> elsewhere;
    ASSERT_OK(createProcess(elsewhere, *def, context, main.get(), "plugin.modMain.other.name"));
    EXPECT_EQ(value("plugin.modMain.other.name.gain"), 6.0);
}

TEST_F(AProcessTree, TakesStoredSettingsBeforeItsFilters)
{
    CAppData& store = CAppData::getStore(CAppData::EStore::Group);
    store.writeText("process-test-solo", "1", nullptr);
    store.writeText("process-test-deep", "8", nullptr);
    const auto shared = [](const char* name, const char* key) {
        return node("audio:param-shared-storage", "",
                    {{"param", name}, {"data-name", key}, {"storage-type", "group"}});
    };
    startGraph(chain({node("audio:testFilter", "", {{"src", "solo"}, {"dst", "bypass"}}),
                      shared("solo", "process-test-solo"), shared("bare", "process-test-bare"),
                      node("core:object", "io", {},
                           {param("deep", "3", kGlobal), shared("deep", "process-test-deep")}),
                      param("solo", "0", kGlobal), param("bypass", "1", kGlobal)}));
    EXPECT_EQ(value("plugin.modMain.solo"), 1.0);
    EXPECT_EQ(value("plugin.modMain.bypass"), 0.0);
    EXPECT_EQ(value("plugin.modMain.io.deep"), 8.0);
    ASSERT_NE(collector->find("plugin.modMain.bare"), nullptr);
    EXPECT_FALSE(collector->find("plugin.modMain.bare")->hasValues());
    set("solo", 0.0);
    EXPECT_EQ(store.readText("process-test-solo", ""), "0");
}

TEST_F(AProcessTree, MakesItsFiltersAndEndsThem)
{
    startGraph(chain({param("solo", "0", kGlobal), param("bypass", "0", kGlobal),
                      node("audio:testFilter", "", {{"src", "solo"}, {"dst", "bypass"}}),
                      state("35", "bypass"), gain("g", "2", {{"bypass-state-id", "35"}})}));
    EXPECT_EQ(value("plugin.modMain.bypass"), 1.0) << "computed at the start";
    EXPECT_EQ(run(constant(5)), constant(5, 1.0));
    set("solo", 1.0);
    EXPECT_EQ(run(constant(5)), constant(5, 2.0));
    endMain();
    collector->find("plugin.modMain.solo")->setValue(0, 0, 0.0);
    EXPECT_EQ(value("plugin.modMain.bypass"), 0.0) << "the filter has gone with its process";
}

TEST_F(AProcessTree, TellsWhichDefinitionCannotRun)
{
    load(chain({node("audio:testFailing", "bad")}));
    build();
    CAudioProcessDefBase* def = nullptr;
    ASSERT_OK(root->findObjectChecked(def, CString("shared::audio.modMain.bad")));
    CPtr<CAudioProcessBase> process;
    const auto lines = takeLines(createProcess(process, *def, context, nullptr, "plugin.bad"));
    ASSERT_FALSE(lines.empty());
    EXPECT_EQ(lines[0], "This process can't start.");
    EXPECT_THAT(lines.back(), ::testing::HasSubstr("audio.modMain.bad"));
    EXPECT_FALSE(process);
}

TEST_F(AProcessTree, LeavesNoSubscriptionBehind)
{
    startGraph(chain({param("off", "0", kGlobal), state("1", "off"),
                      gain("g", "2", {{"bypass-state-id", "1"}}),
                      gain("s", "2", {{"is-stacked", "true"}, {"stack-param", "^off"}})}));
    run(constant(5));
    endMain();
    output.reset();
    // A change reaches nobody; the sanitizers tell if it does.
    collector->find("plugin.modMain.off")->setValue(0, 0, 1.0);
    collector->find("plugin.modMain.g.gain")->setValue(0, 0, 1.0);
    const CLockScope hold(env->lock);
    collector->takeQueue();
    collector->applyQueue();
    EXPECT_EQ(collector->find("plugin.modMain.off")->getProcessValues().value(0, 0), 1.0);
}

} // namespace tsm::test
