#include "Tests/Support/CInterfaceRig.h"

namespace tsm::test {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

/// Writes down what the meters' receiver is told.
class CRecordingViz : public CAudioInterfaceVizProcessor {
public:
    void startViz() override { notes.push_back("start"); }
    void stopViz() override { notes.push_back("stop"); }
    void clear() override { notes.push_back("clear"); }
    [[nodiscard]] CError* readVizData(CInputStream&) override
    {
        notes.push_back("data");
        return nullptr;
    }
    [[nodiscard]] CError* readExportSlotNames(CInputStream& stream) override
    {
        std::uint32_t count = 0;
        TSM_TRY(readFields(stream, count));
        notes.push_back("slots " + std::to_string(count));
        return nullptr;
    }
    std::vector<std::string> takeNotes() { return std::exchange(notes, {}); }
    std::vector<std::string> notes;
};

/// Writes down the events of a client.
class CEventRecorder : public CObject {
public:
    static void declareClass(CObjectClassInfo& info)
    {
        CObject::declareClass(info);
        info.addEvent("note", &CEventRecorder::onNote);
    }
    std::vector<std::string> notes;

private:
    [[nodiscard]] CError* onNote(CAttrMap& params)
    {
        notes.push_back(params.getString("event-name").toUtf8());
        return nullptr;
    }
};

class AClient : public AnInterface {
protected:
    std::vector<int> channelsOf(const CTestClient& client)
    {
        return {client->getIntChannelCount(), client->getGroupCount(), client->getInChannels(),
                client->getOutChannels(), client->getSidechainChannels()};
    }
    void runBlock(int channels)
    {
        CChannel samples(64, 0.0);
        const std::vector<const void*> inputs(static_cast<std::size_t>(channels), samples.data());
        std::vector<CChannel> outs(static_cast<std::size_t>(channels), samples);
        std::vector<void*> outputs;
        for (CChannel& out : outs)
            outputs.push_back(out.data());
        instance->processBlock(inputs.data(), outputs.data(), 64);
    }
};

TEST_F(AClient, AsksForAllThatItShows)
{
    const CTestClient window(instance->getRoot());
    EXPECT_EQ(window->getClientId(), 1U);
    EXPECT_THAT(channelsOf(window), ElementsAre(2, 2, 2, 2, 0));
    EXPECT_EQ(window->getSampleRate(), 44100.0);
    ASSERT_OK(window.tick());
    EXPECT_THAT(channelsOf(window), ElementsAre(2, 8, 2, 2, 0));
    EXPECT_EQ(window->getSampleRate(), 48000.0);
    EXPECT_EQ(window->getGroupName(7).toUtf8(), "G-8");
    EXPECT_EQ(window->getUndoNames().getCount(), 0) << "the history only on request";
    ASSERT_OK(window->requestUndoHistory());
    ASSERT_OK(window.tick());
    EXPECT_THAT(window.history(), ElementsAre("Undo history start", "at 0"));
}

TEST_F(AClient, IsToldOfTheHostsFormatByEvents)
{
    ASSERT_OK(application.registerCreator(creatorRow<CEventRecorder>("test:recorder")));
    const CTestClient window(instance->getRoot());
    CObject* ui = nullptr;
    ASSERT_OK(window.root->findObjectChecked(ui, "ui"));
    CEventRecorder* recorder = nullptr;
    ASSERT_OK(ui->createChild(recorder, "test:recorder", "recorder", false));
    for (const char* event : {"update-internal-channel-count", "update-group-count",
                              "update-io-channel-counts", "update-sample-rate"})
        recorder->listenObject("ui.interface-client", event, "note");
    ASSERT_OK(window.tick());
    EXPECT_THAT(std::exchange(recorder->notes, {}),
                ElementsAre("update-internal-channel-count", "update-group-count",
                            "update-io-channel-counts", "update-sample-rate"));

    instance->startProcessing();
    instance->setSampleRate(48000.0);
    ASSERT_OK(window.tick());
    EXPECT_THAT(recorder->notes, IsEmpty()) << "it is the same";
    instance->setSampleRate(96000.0);
    instance->setChannelFormat({1, true, false}, {});
    instance->setOutputFormat({1, true, false});
    runBlock(1);
    ASSERT_OK(window.tick());
    EXPECT_THAT(recorder->notes, ElementsAre("update-sample-rate", "update-io-channel-counts"));
    EXPECT_THAT(channelsOf(window), ElementsAre(2, 8, 1, 1, 0));
    EXPECT_EQ(window->getSampleRate(), 96000.0);
}

TEST_F(AClient, KeepsTheRateOfTheHighestNumber)
{
    const CTestClient window(instance->getRoot());
    ASSERT_OK(window.tick());
    struct CRow {
        std::uint32_t number;
        double sent;
        double kept;
    };
    for (const CRow& row :
         {CRow{500, 88200.0, 88200.0}, CRow{499, 22050.0, 88200.0}, CRow{500, 96000.0, 96000.0}}) {
        sendBytes(window->getClientId(), written([&](COutputStream& out) {
                      EXPECT_OK(writeFields(out, "update-sample-rate", row.number, row.sent));
                  }));
        ASSERT_OK(window.tick());
        EXPECT_EQ(window->getSampleRate(), row.kept);
    }
}

TEST_F(AClient, HearsOfTheMetersLife)
{
    const CTestClient window(instance->getRoot());
    CRecordingViz viz;
    window->setVizProcessor(&viz);
    ASSERT_OK(window.tick());
    instance->startProcessing();
    instance->startProcessing();
    ASSERT_OK(window.tick());
    EXPECT_THAT(viz.takeNotes(), ElementsAre("start"));
    instance->stopProcessing();
    ASSERT_OK(window.tick());
    EXPECT_THAT(viz.takeNotes(), ElementsAre("clear")) << "always active in this product";
    base->tellStopViz();
    ASSERT_OK(window->requestExportSlotNames());
    ASSERT_OK(window.tick());
    EXPECT_THAT(viz.takeNotes(), ElementsAre("stop", "slots 0"));
}

TEST_F(AClient, HearsOfTheMetersEndWhereTheyAreNotAlwaysActive)
{
    CObject* project = nullptr;
    ASSERT_OK(instance->getRoot().findObjectChecked(project, "shared::project"));
    ASSERT_OK(project->setAttr("is-viz-always-active", CString("false"), true));
    begin();
    const CTestClient window(instance->getRoot());
    CRecordingViz viz;
    window->setVizProcessor(&viz);
    ASSERT_OK(window.tick());
    instance->startProcessing();
    instance->stopProcessing();
    ASSERT_OK(window.tick());
    EXPECT_THAT(viz.takeNotes(), ElementsAre("start", "clear", "stop"));
}

TEST_F(AClient, HasTheRoutingTakeOverTheHostsNames)
{
    const CTestClient window(instance->getRoot());
    ASSERT_OK(window->importChannelLabels());
    EXPECT_THAT(history(), ElementsAre("Undo history start", "at 0")) << "no names yet";
    CHostChannelNames names;
    for (const char* name : {"Left", "Right"})
        names.main.create() = name;
    instance->setChannelNames(std::move(names));
    // As a button would.
    ASSERT_OK(window.client->runEvent("import-channel-labels"));
    EXPECT_EQ(param("io-params.in-channel-names").text(0, 1).toUtf8(), "Right");
    ASSERT_OK(window->importChannelLabels());
    EXPECT_THAT(history(), ElementsAre("Undo history start", "Channel label import", "at 1"));
}

TEST_F(AClient, HearsOfAParameterThatIsDescribedLater)
{
    const CTestClient window(instance->getRoot());
    CRecordingParam later(*window.client);
    const std::uint32_t listener = window.listen("comes.later", later);
    ASSERT_OK(window.tick());
    EXPECT_THAT(later.takeNotes(), ElementsAre("no info"));
    EXPECT_OK(window->changeParam(listener, 0, numbers({1.0})));
    ASSERT_OK(window.tick());
    EXPECT_THAT(later.takeNotes(), IsEmpty());

    CAudioParamCollector& collector = instance->getParamCollector();
    CAudioParam& made = param("comes.later");
    made.attachInfo(collector.adoptInfo(
        param("modReelpath.recgain").getInfo()->cloneAs("audio.modMain.comes.later")));
    ASSERT_OK(window.tick());
    EXPECT_THAT(later.takeNotes(), ElementsAre("info", "group 9999 from 0 count 1"));
    EXPECT_EQ(later.getInfo()->fullName.toUtf8(), "audio.modMain.comes.later");
    EXPECT_EQ(later.value(), 1.0);
}

TEST_F(AClient, HearsOfAllChangesWhoeverMadeThem)
{
    const CTestClient window(instance->getRoot());
    CRecordingParam gain(*window.client);
    CRecordingParam size(*window.client);
    const std::uint32_t ofGain = window.listen("modReelpath.recgain", gain);
    window.listen("main-window-size", size);
    ASSERT_OK(window.tick());
    gain.takeNotes();
    size.takeNotes();
    param("modReelpath.recgain").setValue(0, 0, 2.0);
    const double wide[] = {1000.0, 250.0};
    param("main-window-size").setValues(0, 0, wide, 2);
    param("modReelpath.recgain").reset(kAllParamGroups, -1);
    ASSERT_OK(window.tick());
    EXPECT_THAT(gain.takeNotes(),
                ElementsAre("group 0 from 0 count 1", "info", "group 9999 from 0 count 1"));
    EXPECT_THAT(size.takeNotes(), ElementsAre("group 0 from 0 count 2"));
    EXPECT_EQ(size.value(1), 250.0);
    ASSERT_OK(window->unlistenParam(ofGain));
    param("modReelpath.recgain").setValue(0, 0, 3.0);
    ASSERT_OK(window.tick());
    EXPECT_THAT(gain.takeNotes(), IsEmpty());
}

TEST_F(AClient, IsOneOfSeveral)
{
    const CTestClient first(instance->getRoot());
    const CTestClient second(instance->getRoot());
    CRecordingParam ofFirst(*first.client);
    CRecordingParam ofSecond(*second.client);
    const std::uint32_t listener = first.listen("modReelpath.recgain", ofFirst);
    EXPECT_EQ(listener >> 16, 1U);
    EXPECT_EQ(second.listen("modReelpath.emphasis", ofSecond) >> 16, 2U);
    ASSERT_OK(first.tick());
    ASSERT_OK(second.tick());
    ofFirst.takeNotes();
    ofSecond.takeNotes();
    const std::uint32_t step = first.openStep("edit");
    const CAudioParamChange change = shapedLike(param("modReelpath.recgain"), numbers({2.0}));
    ASSERT_OK(first->changeParam(listener, step, change));
    ASSERT_OK(first->submitUndoData(step));
    ASSERT_OK(first.tick());
    ASSERT_OK(second.tick());
    EXPECT_THAT(ofFirst.takeNotes(), ElementsAre("group 0 from 0 count 1"));
    EXPECT_THAT(ofSecond.takeNotes(), IsEmpty());
    EXPECT_THAT(first.history(), ElementsAre("Undo history start", "edit", "at 1"));
    EXPECT_EQ(first.history(), second.history());
}

TEST_F(AClient, ThatVanishesInAGestureLeavesNothingBehind)
{
    CAudioParam& gain = param("modReelpath.recgain");
    {
        const CTestClient window(instance->getRoot());
        CRecordingParam heard(*window.client);
        const std::uint32_t listener = window.listen("modReelpath.recgain", heard);
        const std::uint32_t step = window.openStep("edit");
        ASSERT_OK(window->changeParam(listener, step, shapedLike(gain, numbers({2.0}))));
        instance->takeNotes();
    }
    EXPECT_THAT(instance->takeNotes(), ElementsAre("end 1"));
    EXPECT_THAT(history(), ElementsAre("Undo history start", "at 0"));
    EXPECT_EQ(gain.value(0, 0), 2.0);
    gain.setValue(0, 0, 3.0);
    const CTestClient next(instance->getRoot());
    EXPECT_EQ(next->getClientId(), 2U);
    EXPECT_EQ(connector->getBlockCount(1), 0);
}

TEST_F(AClient, ThatOutlivesItsInstanceIsToldSo)
{
    const CTestClient window(instance->getRoot());
    CRecordingParam gain(*window.client);
    const std::uint32_t listener = window.listen("modReelpath.recgain", gain);
    const CAudioParamChange change = shapedLike(param("modReelpath.recgain"), numbers({2.0}));
    instance.reset();
    EXPECT_FAILS_WITH(window->changeParam(listener, 0, change), "No base connector defined.");
    EXPECT_OK(window.tick());
}

TEST_F(AClient, TicksAtTheRateOfItsConnector)
{
    const CTestClient window(instance->getRoot());
    auto* const timer = dynamic_cast<CTestTimer*>(window.timer);
    ASSERT_NE(timer, nullptr);
    EXPECT_EQ(timer->fps, 60.0);
    ASSERT_OK(window.connector->setAttr("fps", CString("25"), true));
    EXPECT_EQ(timer->fps, 25.0);
    EXPECT_EQ(window.connector->getChildren().getCount(), 1);
}

TEST_F(AClient, FailsWithoutTheOtherEnd)
{
    CTreePtr<CObject> root;
    ASSERT_OK(application.initRootObject(root, CString()));
    const std::string message = takeMessage(root->loadXMLData(TSM_CLIENT_DOCUMENT, false));
    EXPECT_EQ(message, "Unable to find object 'plugin.interface-base-connector' "
                       "('plugin.interface-base-connector')")
        << "it is looked for in the own tree when no other is named";
}

TEST_F(AClient, SurvivesTheWearOfItsNumbers)
{
    const CTestClient window(instance->getRoot());
    CRecordingParam kept(*window.client);
    CRecordingParam passing(*window.client);
    const std::uint32_t first = window.listen("modReelpath.recgain", kept);
    std::uint32_t last = 0;
    for (int i = 0; i < 65540; ++i) {
        last = window.openStep("step");
        ASSERT_OK(window->removeUndoData(last));
    }
    EXPECT_EQ(last >> 16, 1U);
    for (int i = 0; i < 65540; ++i) {
        last = window.listen("host-offline", passing);
        ASSERT_NE(last, first);
        ASSERT_OK(window->unlistenParam(last));
        if (i % 1000 == 0) {
            ASSERT_OK(window.tick());
        }
    }
    EXPECT_EQ(last >> 16, 1U);
}

} // namespace
} // namespace tsm::test
