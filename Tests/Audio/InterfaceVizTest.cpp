#include "Tests/Support/CInterfaceRig.h"

#include <map>

namespace tsm::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

/// Counts listeners, and writes which request it is.
class CTestVizCollector : public CObject, public CAudioInterfaceVizProvider {
public:
    static void declareClass(CObjectClassInfo& info) { CObject::declareClass(info); }
    void addVizListener(const CString& name) override { ++counts()[name.toUtf8()]; }
    void removeVizListener(const CString& name) override { --counts()[name.toUtf8()]; }
    [[nodiscard]] CError* writeStream(COutputStream& stream, double rate) override
    {
        if (isBroken)
            TSM_FAIL("Broken.");
        TSM_TRY(writeFields(stream, rate));
        return nullptr;
    }
    static std::map<std::string, int>& counts()
    {
        static std::map<std::string, int> kept; // outlives the instance
        return kept;
    }
    bool isBroken = false;
};

class CRateViz : public CAudioInterfaceVizProcessor {
public:
    void startViz() override {}
    void stopViz() override {}
    void clear() override {}
    [[nodiscard]] CError* readVizData(CInputStream& stream) override
    {
        double rate = 0.0;
        TSM_TRY(readFields(stream, rate));
        rates.push_back(rate);
        return nullptr;
    }
    [[nodiscard]] CError* readExportSlotNames(CInputStream&) override { return nullptr; }
    std::vector<double> rates;
};

/// A second base in the instance, with a collector of the test's own.
class AMeterClient : public AnInterface {
protected:
    void SetUp() override
    {
        AnInterface::SetUp();
        CTestVizCollector::counts().clear();
        ASSERT_OK(application.registerCreator(creatorRow<CTestVizCollector>("test:viz-collector")));
        CObject* plugin = instance->getRoot().findObject("plugin");
        CObject* made = nullptr;
        ASSERT_OK(plugin->createChild(collector, "test:viz-collector", "test-viz", false));
        ASSERT_OK(plugin->createChild(made, "other:param-interface-base-connector-uni",
                                      "test-connector", false));
        CAttrMap attrs;
        attrs.setText("base-connector", "^test-connector");
        attrs.setText("param-collector", "^param-collector");
        attrs.setText("viz-collector", "^test-viz");
        ASSERT_OK(
            plugin->createChild(made, "audio:interface-base", "test-base", false, nullptr, &attrs));
    }
    std::unique_ptr<CTestClient> attach()
    {
        return std::make_unique<CTestClient>(instance->getRoot(), "test:timer",
                                             "plugin.test-connector");
    }
    static int listenersOf(const char* name) { return CTestVizCollector::counts()[name]; }

    CTestVizCollector* collector = nullptr;
};

TEST_F(AMeterClient, IsCountedAtItsMetersAsLongAsItListens)
{
    auto first = attach();
    auto second = attach();
    std::uint32_t out = 0;
    std::uint32_t difference = 0;
    std::uint32_t again = 0;
    std::uint32_t slot = 0;
    ASSERT_OK((*first)->listenViz(out, "out"));
    ASSERT_OK((*first)->listenViz(difference, "difference"));
    ASSERT_OK((*second)->listenViz(again, "out"));
    ASSERT_OK((*second)->listenViz(slot, "out", 3));
    EXPECT_EQ(out >> 16, 1U);
    EXPECT_EQ(again >> 16, 2U);
    EXPECT_EQ(listenersOf("out"), 2) << "another instance's slot isn't this meter";
    EXPECT_EQ(listenersOf("difference"), 1);
    ASSERT_OK((*first)->unlistenViz(out));
    ASSERT_OK((*first)->unlistenViz(out));
    EXPECT_EQ(listenersOf("out"), 1);
    second.reset();
    EXPECT_EQ(listenersOf("out"), 0);
    first->connector->releaseLinks();
    EXPECT_EQ(listenersOf("difference"), 0) << "a client that only vanishes";
}

TEST_F(AMeterClient, KeepsTheFirstListenerOfANumber)
{
    auto client = attach();
    CParamInterfaceBaseConnector* entrance = nullptr;
    ASSERT_OK(instance->getRoot().findObjectChecked(entrance, "plugin.test-connector"));
    for (const char* name : {"out", "difference"}) {
        const CBytes bytes = written([&](COutputStream& stream) {
            EXPECT_OK(writeFields(stream, "listen-viz", 1 << 16 | 5, name, -1));
        });
        CMemoryReader reader(bytes.data(), static_cast<int>(bytes.size()));
        ASSERT_OK(entrance->processClientData(reader));
    }
    EXPECT_EQ(listenersOf("out"), 1);
    EXPECT_EQ(listenersOf("difference"), 0);
    client.reset();
    instance.reset();
    EXPECT_EQ(listenersOf("out"), 0);
}

TEST_F(AMeterClient, AsksForDataAtItsRate)
{
    auto client = attach();
    CRateViz viz;
    (*client)->setVizProcessor(&viz);
    for (const double rate : {30.0, 0.0, 1e9})
        ASSERT_OK((*client)->requestVizData(rate));
    EXPECT_THAT(viz.rates, IsEmpty());
    ASSERT_OK(client->tick());
    EXPECT_THAT(viz.rates, ElementsAre(30.0, 1.0, 1000.0)) << "within what a meter can do";
    EXPECT_FAILS_WITH((*client)->requestVizData(std::nan("")), "Invalid frame rate specified.");
    collector->isBroken = true;
    EXPECT_FAILS_WITH((*client)->requestVizData(30.0), "Broken.");
    viz.rates.clear();
    ASSERT_OK(client->tick());
    EXPECT_THAT(viz.rates, IsEmpty());
}

} // namespace
} // namespace tsm::test
