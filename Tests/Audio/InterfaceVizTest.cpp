#include "Audio/CAudioVizCollector.h"
#include "Audio/CAudioVizDataMeter.h"
#include "Audio/CAudioVizReader.h"
#include "Tests/Support/CInterfaceRig.h"

namespace tsm::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

constexpr const char* kMeter = "plugin.modTest"; // of no process: the records are the test's alone

/// Reads what arrives, and keeps the levels.
class CLevelViz : public CAudioInterfaceVizProcessor {
public:
    void startViz() override {}
    void stopViz() override {}
    void clear() override {}
    [[nodiscard]] CError* readVizData(CInputStream& stream) override
    {
        ++streamCount;
        CAudioVizReader reader(stream);
        TSM_TRY(reader.begin(now));
        for (;;) {
            CPtr<CAudioVizData> record;
            TSM_TRY(reader.next(record));
            if (!record)
                return nullptr;
            levels.push_back(dynamic_cast<CAudioVizDataMeter&>(*record).rms);
            source = reader.getSourceName().toUtf8().c_str();
        }
    }
    [[nodiscard]] CError* readExportSlotNames(CInputStream&) override { return nullptr; }

    int streamCount = 0;
    double now = -1.0;
    std::vector<double> levels;
    std::string source;
};

class AMeterClient : public AnInterface {
protected:
    void SetUp() override
    {
        AnInterface::SetUp();
        collector = &instance->getVizCollector();
        source = &collector->getSource(kMeter);
        instance->startProcessing();
    }
    std::unique_ptr<CTestClient> attach()
    {
        return std::make_unique<CTestClient>(instance->getRoot());
    }
    /// What the engine knows of its listeners once a block has begun.
    int listenerCount()
    {
        CChannel left(64, 0.0);
        CChannel right(64, 0.0);
        const void* inputs[] = {left.data(), right.data()};
        void* outputs[] = {left.data(), right.data()};
        instance->processBlock(inputs, outputs, 64);
        return source->getListenerCount();
    }
    void post(double level)
    {
        auto* record = new CAudioVizDataMeter;
        record->rms = level;
        collector->post(*source, CPtr<CAudioVizData>(record));
    }

    CAudioVizCollector* collector = nullptr;
    CAudioVizSource* source = nullptr;
};

TEST_F(AMeterClient, IsCountedAtItsMeterAsLongAsItListens)
{
    auto first = attach();
    auto second = attach();
    std::uint32_t ids[3] = {};
    ASSERT_OK((*first)->listenViz(ids[0], kMeter));
    ASSERT_OK((*second)->listenViz(ids[1], kMeter));
    ASSERT_OK((*second)->listenViz(ids[2], kMeter, 3));
    EXPECT_EQ(ids[0] >> 16, 1U);
    EXPECT_EQ(ids[1] >> 16, 2U);
    EXPECT_EQ(listenerCount(), 2) << "another instance's slot isn't this meter";
    ASSERT_OK((*first)->unlistenViz(ids[0]));
    ASSERT_OK((*first)->unlistenViz(ids[0]));
    EXPECT_EQ(listenerCount(), 1);
    second.reset();
    EXPECT_EQ(listenerCount(), 0);
    ASSERT_OK((*first)->listenViz(ids[0], kMeter));
    EXPECT_EQ(listenerCount(), 1);
    first->connector->releaseLinks();
    EXPECT_EQ(listenerCount(), 0) << "a client that only vanishes";
}

TEST_F(AMeterClient, KeepsTheFirstListenerOfANumber)
{
    const auto client = attach();
    for (const char* name : {kMeter, "plugin.modOther"})
        ASSERT_OK(process(written([&](COutputStream& out) {
            EXPECT_OK(writeFields(out, "listen-viz", 1 << 16 | 5, name, -1));
        })));
    EXPECT_EQ(listenerCount(), 1);
    EXPECT_EQ(collector->getSource("plugin.modOther").getListenerCount(), 0);
}

TEST_F(AMeterClient, GetsWhatWasMeasuredOnRequest)
{
    const auto client = attach();
    CLevelViz viz;
    (*client)->setVizProcessor(&viz);
    std::uint32_t id = 0;
    ASSERT_OK((*client)->listenViz(id, kMeter));
    EXPECT_EQ(listenerCount(), 1);
    post(0.25);
    post(0.5);
    ASSERT_OK(client->tick());
    EXPECT_EQ(viz.streamCount, 0);
    ASSERT_OK((*client)->requestVizData(30.0));
    post(0.75);
    ASSERT_OK(client->tick());
    EXPECT_THAT(viz.levels, ElementsAre(0.25, 0.5));
    EXPECT_EQ(viz.source, kMeter);
    EXPECT_EQ(viz.now, instance->getEnvironment().blockEndTime);
    EXPECT_EQ(instance->getEnvironment().vizRate, 30.0);

    // When processing stops, what waits is void.
    instance->stopProcessing();
    viz.levels.clear();
    ASSERT_OK((*client)->requestVizData(60.0));
    ASSERT_OK(client->tick());
    EXPECT_EQ(viz.streamCount, 2);
    EXPECT_THAT(viz.levels, IsEmpty());
}

TEST_F(AMeterClient, AsksForNoRateThatAMeterCannotHave)
{
    const auto client = attach();
    struct CRow {
        double asked;
        double stored;
    };
    for (const CRow& row : {CRow{30.0, 30.0}, CRow{1e300, 1000.0}, CRow{1e-300, 1.0},
                            CRow{0.0, 1.0}, CRow{std::nan(""), 1.0}, CRow{-5.0, 1.0}}) {
        ASSERT_OK((*client)->requestVizData(row.asked));
        EXPECT_EQ(instance->getEnvironment().vizRate, row.stored) << row.asked;
    }
}

} // namespace
} // namespace tsm::test
