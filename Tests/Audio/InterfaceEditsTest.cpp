#include "Tests/Support/CInterfaceRig.h"

namespace tsm::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

constexpr const char* kStart = "Undo history start";

class AnEdit : public AnInterface {
protected:
    void change(const CTestClient& client, std::uint32_t listener, std::uint32_t step,
                const char* name, double value)
    {
        EXPECT_OK(client->changeParam(listener, step, shapedLike(param(name), numbers({value}))));
    }
};

TEST_F(AnEdit, IsOneGestureForTheHostAndOneStepToTakeBack)
{
    const CTestClient window(instance->getRoot());
    CRecordingParam gain(*window.client);
    const std::uint32_t listener = window.listen("modReelpath.recgain", gain);
    ASSERT_OK(window.tick());
    EXPECT_THAT(gain.takeNotes(),
                ElementsAre("info", "group 9999 from 0 count 1", "group 0 from 0 count 1"));
    EXPECT_EQ(gain.value(), 1.0);

    const std::uint32_t step = window.openStep("Recording gain change");
    for (const double value : {1.5, 2.0, 2.5})
        change(window, listener, step, "modReelpath.recgain", value);
    EXPECT_THAT(instance->takeNotes(), ElementsAre("begin 1", "edit 1", "edit 1", "edit 1"));
    EXPECT_THAT(history(), ElementsAre(kStart, "at 0"));
    ASSERT_OK(window->submitUndoData(step));
    EXPECT_THAT(instance->takeNotes(), ElementsAre("end 1"));

    EXPECT_THAT(gain.takeNotes(), IsEmpty()) << "nothing comes without a tick";
    ASSERT_OK(window.tick());
    EXPECT_EQ(gain.takeNotes().size(), 3U);
    EXPECT_EQ(gain.value(), 2.5);
    EXPECT_THAT(window.history(), ElementsAre(kStart, "Recording gain change", "at 1"));

    ASSERT_OK(window->setUndoHistoryPos(0));
    EXPECT_EQ(param("modReelpath.recgain").value(0, 0), 1.0);
    ASSERT_OK(window.tick());
    EXPECT_EQ(gain.value(), 1.0);
    EXPECT_THAT(window.history(), ElementsAre(kStart, "Recording gain change", "at 0"));
    ASSERT_OK(window->setUndoHistoryPos(-1));
    ASSERT_OK(window->setUndoHistoryPos(2));
    EXPECT_THAT(history(), ElementsAre(kStart, "Recording gain change", "at 0"));
}

TEST_F(AnEdit, TellsTheEngineAtItsNextSubBlock)
{
    const CTestClient window(instance->getRoot());
    CRecordingParam gain(*window.client);
    const std::uint32_t listener = window.listen("modReelpath.recgain", gain);
    instance->startProcessing();
    change(window, listener, 0, "modReelpath.recgain", 2.0);
    const CAudioParam& engineSide = param("modReelpath.recgain");
    EXPECT_EQ(engineSide.getProcessValues().value(0, 0), 1.0);
    CChannel samples(64, 0.25);
    const void* inputs[] = {samples.data(), samples.data()};
    CChannel left = samples;
    CChannel right = samples;
    void* outputs[] = {left.data(), right.data()};
    instance->processBlock(inputs, outputs, 64);
    EXPECT_EQ(engineSide.getProcessValues().value(0, 0), 2.0);
}

TEST_F(AnEdit, MakesTheStepThatItsMessagesSay)
{
    const CTestClient window(instance->getRoot());
    CRecordingParam gain(*window.client);
    const std::uint32_t listener = window.listen("modReelpath.recgain", gain);

    std::uint32_t step = window.openStep("opened");
    change(window, listener, step, "modReelpath.recgain", 1.5);
    ASSERT_OK(window->submitUndoData(step, "renamed"));
    EXPECT_THAT(history(), ElementsAre(kStart, "renamed", "at 1"));

    step = window.openStep("dropped");
    change(window, listener, step, "modReelpath.recgain", 2.0);
    instance->takeNotes();
    ASSERT_OK(window->removeUndoData(step));
    EXPECT_THAT(instance->takeNotes(), ElementsAre("end 1"));
    EXPECT_EQ(param("modReelpath.recgain").value(0, 0), 2.0);

    change(window, listener, step, "modReelpath.recgain", 2.5);
    EXPECT_THAT(instance->takeNotes(), ElementsAre("edit 1")) << "the step is closed: no gesture";
    EXPECT_EQ(param("modReelpath.recgain").value(0, 0), 2.5);
    EXPECT_THAT(history(), ElementsAre(kStart, "renamed", "at 1"));

    // Two that merge.
    for (const double value : {3.0, 4.0}) {
        ASSERT_OK(window->createUndoData(step, "wheel", true, 7));
        change(window, listener, step, "modReelpath.recgain", value);
        ASSERT_OK(window->submitUndoData(step));
    }
    EXPECT_THAT(history(), ElementsAre(kStart, "renamed", "wheel", "at 2"));
    ASSERT_OK(window->setUndoHistoryPos(1));
    // The first to be recorded behind the dropped changes saw these.
    EXPECT_EQ(param("modReelpath.recgain").value(0, 0), 2.5);
}

TEST_F(AnEdit, OpenedTwiceUnderOneNumberEndsTheFormerGesture)
{
    const CTestClient window(instance->getRoot());
    CRecordingParam gain(*window.client);
    const std::uint32_t listener = window.listen("modReelpath.recgain", gain);
    const std::uint32_t step = window.openStep("first");
    change(window, listener, step, "modReelpath.recgain", 1.5);
    const CBytes again = written([&](COutputStream& out) {
        EXPECT_OK(writeFields(out, "create-undo-data", step, "second", false, -1));
    });
    ASSERT_OK(process(again));
    change(window, listener, step, "modReelpath.recgain", 2.0);
    ASSERT_OK(window->submitUndoData(step));
    EXPECT_THAT(instance->takeNotes(),
                ElementsAre("begin 1", "edit 1", "end 1", "begin 1", "edit 1", "end 1"));
    EXPECT_THAT(history(), ElementsAre(kStart, "second", "at 1"));
}

TEST_F(AnEdit, OfWhatNoPresetHoldsLeavesNoStep)
{
    const CTestClient window(instance->getRoot());
    CRecordingParam time(*window.client);
    const std::uint32_t listener = window.listen("meter-peaktime", time);
    const std::uint32_t step = window.openStep("time");
    change(window, listener, step, "meter-peaktime", 0.5);
    ASSERT_OK(window->submitUndoData(step));
    EXPECT_EQ(param("meter-peaktime").value(0, 0), 0.5);
    EXPECT_THAT(history(), ElementsAre(kStart, "at 0"));
    EXPECT_THAT(instance->takeNotes(), IsEmpty()) << "the host has no such parameter";
}

TEST_F(AnEdit, OfAPresetGivesItTheUsersName)
{
    const CTestClient window(instance->getRoot());
    CRecordingParam gain(*window.client);
    const std::uint32_t listener = window.listen("modReelpath.recgain", gain);
    const CAudioParam& name = param("preset-name");
    EXPECT_EQ(name.text(0, 0).toUtf8(), "Default");

    // What the host automates doesn't.
    param("modReelpath.recgain").setValue(0, 0, 1.25);
    EXPECT_EQ(name.text(0, 0).toUtf8(), "Default");

    const std::uint32_t step = window.openStep("edit");
    change(window, listener, step, "modReelpath.recgain", 2.0);
    EXPECT_EQ(name.text(0, 0).toUtf8(), "User");
    ASSERT_OK(window->submitUndoData(step));
    // One step for both; taking it back is no edit.
    ASSERT_OK(window->setUndoHistoryPos(0));
    EXPECT_EQ(name.text(0, 0).toUtf8(), "Default");
    EXPECT_EQ(param("modReelpath.recgain").value(0, 0), 1.25);

    // Neither does what presets don't hold.
    CRecordingParam time(*window.client);
    change(window, window.listen("meter-peaktime", time), 0, "meter-peaktime", 0.5);
    CRecordingParam bypass(*window.client);
    change(window, window.listen("bypass-enable", bypass), 0, "bypass-enable", 1.0);
    EXPECT_EQ(param("bypass-enable").value(0, 0), 1.0);
    EXPECT_EQ(name.text(0, 0).toUtf8(), "Default");
}

TEST_F(AnEdit, GoesBackToTheDefault)
{
    const CTestClient window(instance->getRoot());
    CRecordingParam gain(*window.client);
    CRecordingParam grouping(*window.client);
    const std::uint32_t ofGain = window.listen("modReelpath.recgain", gain);
    const std::uint32_t ofGrouping = window.listen("io-params.grouping", grouping);
    CAudioParam& groups = param("io-params.grouping");
    const auto all = [&] {
        std::vector<double> held;
        for (int i = 0; i < 4; ++i)
            held.push_back(groups.value(0, i));
        return held;
    };
    const std::vector<double> edited = {7, 6, 5, 4};
    change(window, ofGain, 0, "modReelpath.recgain", 2.0);
    instance->takeNotes();

    const std::uint32_t step = window.openStep("reset");
    ASSERT_OK(window->resetParam(ofGain, 0, 0, step, false));
    ASSERT_OK(window->submitUndoData(step));
    EXPECT_EQ(param("modReelpath.recgain").value(0, 0), 1.0);
    EXPECT_THAT(instance->takeNotes(), ElementsAre("begin 1", "edit 1", "end 1"));
    EXPECT_THAT(history(), ElementsAre(kStart, "reset", "at 1"));

    groups.setValues(0, 0, edited.data(), 4);
    ASSERT_OK(window->resetParam(ofGrouping, 0, 2, 0, false));
    EXPECT_EQ(all(), (std::vector<double>{7, 6, 1, 4}));
    ASSERT_OK(window->resetParam(ofGrouping, kAllParamGroups, -1, 0, false));
    EXPECT_EQ(all(), (std::vector<double>{0, 0, 1, 1}));
    groups.setValues(0, 0, edited.data(), 4);
    ASSERT_OK(window->resetParam(ofGrouping, 0, 2, 0, true));
    EXPECT_EQ(all(), (std::vector<double>{0, 0, 0, 0})) << "all as the first";
    ASSERT_OK(window.tick());
    EXPECT_EQ(grouping.value(3), 0.0);
}

TEST_F(AnEdit, OfTextArrivesAsText)
{
    const CTestClient window(instance->getRoot());
    CRecordingParam names(*window.client);
    const std::uint32_t listener = window.listen("io-params.group-names", names);
    CAudioParamChange change;
    change.shape = param("io-params.group-names").getInfo()->shape;
    change.firstElement = 1;
    for (const char* text : {"Drums", "\xC3\x84"})
        change.addItem(
            CPtr<CAudioParamDataItem>(new CAudioParamDataItemString(CString::fromUtf8(text))));
    const std::uint32_t step = window.openStep("names");
    ASSERT_OK(window->changeParam(listener, step, change));
    ASSERT_OK(window->submitUndoData(step));
    EXPECT_EQ(param("io-params.group-names").text(0, 1).toUtf8(), "Drums");
    ASSERT_OK(window.tick());
    EXPECT_EQ(names.text(1), "Drums");
    EXPECT_EQ(names.text(2), "\xC3\x84");
    EXPECT_EQ(names.text(3), "G-4");
    EXPECT_EQ(window->getGroupName(1).toUtf8(), "Drums") << "the client listens itself";
    ASSERT_OK(window->setUndoHistoryPos(0));
    ASSERT_OK(window.tick());
    EXPECT_EQ(names.text(1), "G-2");
}

TEST_F(AnEdit, ThatDoesNotFitIsIgnored)
{
    const CTestClient window(instance->getRoot());
    CRecordingParam gain(*window.client);
    const std::uint32_t listener = window.listen("modReelpath.recgain", gain);
    const CBytes before = state();
    CAudioParamChange text;
    text.shape.dataType = EAudioParamType::String;
    text.addItem(CPtr<CAudioParamDataItem>(new CAudioParamDataItemString("2.0")));
    EXPECT_OK(window->changeParam(listener, 0, text));
    CAudioParamChange wide = numbers({2.0, 2.0});
    wide.elementCount = 1;
    wide.shape.elementSize = 2;
    EXPECT_OK(window->changeParam(listener, 0, wide));
    const CAudioParamChange fitting = shapedLike(param("modReelpath.recgain"), numbers({2.0}));
    EXPECT_OK(window->changeParam(listener + 1, 0, fitting)) << "no such listener";
    EXPECT_EQ(state(), before);
}

TEST_F(AnEdit, StaysInsideTheLimits)
{
    const CTestClient window(instance->getRoot());
    CRecordingParam gain(*window.client);
    const std::uint32_t listener = window.listen("modReelpath.recgain", gain);
    const CAudioParamInfo& info = *param("modReelpath.recgain").getInfo();
    change(window, listener, 0, "modReelpath.recgain", 1e300);
    EXPECT_EQ(param("modReelpath.recgain").value(0, 0), info.maxValues[0]);
    change(window, listener, 0, "modReelpath.recgain", std::nan(""));
    EXPECT_EQ(param("modReelpath.recgain").value(0, 0), info.maxValues[0]) << "as it was";
}

TEST_F(AnEdit, MayBeMadeInsideOfTheHostsAnswerToAnother)
{
    const CTestClient window(instance->getRoot());
    CRecordingParam gain(*window.client);
    const std::uint32_t listener = window.listen("modReelpath.recgain", gain);
    const std::uint32_t step = window.openStep("outer");
    instance->whileBegun = [&] { EXPECT_OK(window->removeUndoData(step)); };
    change(window, listener, step, "modReelpath.recgain", 2.0);
    EXPECT_THAT(instance->takeNotes(), ElementsAre("begin 1", "end 1", "edit 1"));
    EXPECT_THAT(history(), ElementsAre(kStart, "at 0"));
    EXPECT_EQ(param("modReelpath.recgain").value(0, 0), 2.0);
}

} // namespace
} // namespace tsm::test
