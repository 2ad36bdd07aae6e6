#include "Tests/Support/CInterfaceRig.h"

namespace tsm::test {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

constexpr const char* kMaster = "plugin.param-registry";
constexpr const char* kFactoryNames = "Default Drum Saturator Smashed Lows Saturated Highs Guitar "
                                      "Drive Medium Saturation Plain Hard Clip High Sand Moderate "
                                      "Grit Replica";

class ARegistryClient : public AnInterface {
protected:
    void SetUp() override
    {
        AnInterface::SetUp();
        window = std::make_unique<CTestClient>(instance->getRoot());
        id = window->listen(kMaster, programs);
        ASSERT_OK(window->tick());
    }
    void TearDown() override
    {
        window.reset();
        AnInterface::TearDown();
    }
    std::string presetName() const { return param("preset-name").text(0, 0).toUtf8(); }
    CBytes acquired(bool fromFactory, int index)
    {
        return written([&](COutputStream& out) {
            EXPECT_OK(instance->getParamRegistry().acquirePreset(fromFactory, index, -1, out));
        });
    }
    template <class T>
    static CBytes saved(const T& data)
    {
        return written([&](COutputStream& out) { EXPECT_OK(data.save(out)); });
    }

    std::unique_ptr<CTestClient> window;
    CRecordingRegistry programs;
    std::uint32_t id = 0;
};

TEST_F(ARegistryClient, HearsNamesAtOnceAndWithEachChange)
{
    const std::string names = kFactoryNames;
    EXPECT_THAT(programs.takeNotes(),
                ElementsAre("session gplu 0: " + names, "factory gplu -1: " + names));

    ASSERT_OK((*window)->setCurrentProgram(id, 3));
    EXPECT_EQ(instance->getParamRegistry().getCurrentProgram(), 3);
    EXPECT_EQ(presetName(), "Saturated Highs");
    EXPECT_EQ(instance->takeNotes().back(), "program") << "the host hears of it";
    ASSERT_OK(window->tick());
    EXPECT_THAT(programs.takeNotes(), ElementsAre("session gplu 3: " + names));

    ASSERT_OK((*window)->renamePreset(id, 3, "Mine"));
    EXPECT_EQ(presetName(), "Mine");
    EXPECT_EQ(history()[1], "Program name change");
    ASSERT_OK(window->tick());
    EXPECT_THAT(programs.takeNotes().back(), HasSubstr("Smashed Lows Mine Guitar"));

    // What the host does, too.
    instance->getParamRegistry().selectProgram(1, instance.get());
    ASSERT_OK(window->tick());
    EXPECT_THAT(programs.takeNotes().back(), HasSubstr("session gplu 1: "));
    ASSERT_OK((*window)->unlistenRegistry(id));
    instance->getParamRegistry().selectProgram(2, instance.get());
    ASSERT_OK(window->tick());
    EXPECT_THAT(programs.takeNotes(), IsEmpty());
}

TEST_F(ARegistryClient, TakesPresetsAndBanksAndGivesThemBack)
{
    ASSERT_OK((*window)->requestPreset(id, 11, true, 1, -1));
    ASSERT_OK((*window)->requestPreset(id, 12, false, -1, kAllParamGroups));
    ASSERT_OK((*window)->requestBank(id, 13, true));
    programs.takeNotes();
    ASSERT_OK(window->tick());
    EXPECT_THAT(programs.takeNotes(), ElementsAre("preset 11", "preset 12", "bank 13"));
    EXPECT_EQ(saved(programs.preset), acquired(false, -1));
    ASSERT_EQ(programs.bank.presets.getCount(), 10);
    const CAudioPreset& drums = programs.bank.presets[1];
    EXPECT_EQ(saved(drums), acquired(true, 1));

    const double before = param("modReelpath.recgain").value(0, 0);
    ASSERT_OK((*window)->activatePreset(id, -1, drums));
    EXPECT_EQ(presetName(), "Drum Saturator");
    EXPECT_NE(param("modReelpath.recgain").value(0, 0), before);
    EXPECT_EQ(history()[1], "Master preset activate");
    ASSERT_OK((*window)->activateFactoryPreset(id, 2));
    EXPECT_EQ(presetName(), "Smashed Lows");
    EXPECT_EQ(history()[2], "ROM preset activate");
    ASSERT_OK((*window)->activatePreset(id, 0, drums));
    EXPECT_EQ(history()[3], "Master preset activate (STEREO)");

    // Nothing of a step: what new instances would start with.
    const auto steps = history();
    ASSERT_OK((*window)->setDefaultPreset(id, programs.bank.presets[0]));
    EXPECT_EQ(param("modReelpath.recgain").value(0, 0), before);
    EXPECT_EQ(history(), steps);

    CAudioPreset foreign(programs.preset);
    foreign.name = "TMIO:Other";
    EXPECT_FAILS_WITH((*window)->activatePreset(id, -1, foreign), "Incompatible preset.");
    EXPECT_FAILS_WITH((*window)->activateFactoryPreset(id, 10),
                      "Invalid preset index 10 specified.");
    EXPECT_EQ(history(), steps);
}

TEST_F(ARegistryClient, ResetsAndComparesTwoStates)
{
    CAudioParam& gain = param("modReelpath.recgain");
    CRecordingParam heard(*window->client);
    const std::uint32_t ofGain = window->listen("modReelpath.recgain", heard);
    ASSERT_OK((*window)->updateShadowPreset(id));
    const std::uint32_t step = window->openStep("edit");
    ASSERT_OK((*window)->changeParam(ofGain, step, shapedLike(gain, numbers({3.0}))));
    ASSERT_OK((*window)->submitUndoData(step));
    ASSERT_OK((*window)->exchangeShadowPreset(id));
    EXPECT_EQ(gain.value(0, 0), 1.0);
    ASSERT_OK(window->tick());
    EXPECT_THAT(window->history(), ElementsAre("Undo history start", "at 0"));
    ASSERT_OK((*window)->exchangeShadowPreset(id));
    EXPECT_EQ(gain.value(0, 0), 3.0);
    ASSERT_OK(window->tick());
    EXPECT_THAT(window->history(), ElementsAre("Undo history start", "edit", "at 1"));
    EXPECT_EQ(heard.value(), 3.0);

    ASSERT_OK((*window)->activateDefaultPreset(id));
    EXPECT_EQ(gain.value(0, 0), 1.0);
    EXPECT_EQ(history()[2], "Master reset");
}

TEST_F(ARegistryClient, ThatIsNoMasterHasNoNames)
{
    CRecordingRegistry routing;
    const std::uint32_t ofRouting = window->listen("plugin.param-registry-io", routing);
    ASSERT_OK(window->tick());
    EXPECT_THAT(routing.takeNotes(), ElementsAre("session TMIO -1:"));
    EXPECT_FAILS_WITH((*window)->requestBank(ofRouting, 1, false),
                      "Acquiring bank in a non-master registry is an error.");
    ASSERT_OK((*window)->requestPreset(ofRouting, 2, false, -1, -1));
    ASSERT_OK(window->tick());
    EXPECT_THAT(routing.takeNotes(), ElementsAre("preset 2"));
    ASSERT_OK((*window)->activatePreset(ofRouting, -1, routing.preset));
    EXPECT_EQ(history()[1], "Routing preset activate");
}

TEST_F(ARegistryClient, ThatIsUnknownIsAnError)
{
    const std::string unknown = std::to_string((*window)->getClientId() << 16 | 999);
    EXPECT_FAILS_WITH((*window)->setCurrentProgram((*window)->getClientId() << 16 | 999, 1),
                      "No param registry object '" + unknown + "' found.");
    CRecordingRegistry nothing;
    const std::uint32_t ofNothing = window->listen("plugin.no-registry", nothing);
    ASSERT_OK(window->tick());
    EXPECT_THAT(nothing.takeNotes(), IsEmpty());
    EXPECT_FAILS_WITH((*window)->activateDefaultPreset(ofNothing),
                      "Param registry object '" + std::to_string(ofNothing) + "' is NULL.");
}

} // namespace
} // namespace tsm::test
