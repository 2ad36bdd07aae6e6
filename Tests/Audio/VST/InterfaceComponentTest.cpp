#include "Audio/VST/CAudioWrapperVST3.h"
#include "Tests/Audio/VST/CComponentRig.h"
#include "Tests/Support/CInterfaceRig.h"

#include <optional>

using namespace Steinberg;
using namespace Steinberg::Vst;

namespace tsm::test {

namespace {

using CNote = CHostHandler::CNote;
using EKind = CHostHandler::EKind;
using testing::ElementsAre;

constexpr ParamID kRecGain = 1;

/// A host with an instance, and a client where the editor would be.
class AHostWithAClient : public testing::Test {
protected:
    void SetUp() override
    {
        rig.initialize();
        rig.setUp(48000.0);
        ASSERT_OK(CApplication::get()->registerCreator(creatorRow<CTestTimer>("test:timer")));
        instance = static_cast<CAudioWrapperVST3*>(rig.processor.get());
        window.emplace(instance->getRoot());
        listener = window->listen("modReelpath.recgain", gain.emplace(*window->client));
        ASSERT_OK(window->tick());
        std::ignore = rig.handler->takeNotes();
    }
    CComponentRig rig;
    CAudioWrapperVST3* instance = nullptr;
    std::optional<CTestClient> window;
    std::optional<CRecordingParam> gain;
    std::uint32_t listener = 0;
};

TEST_F(AHostWithAClient, SeesOneGestureWithNormalizedValues)
{
    const CAudioParam& param =
        *instance->getParamCollector().find("plugin.modMain.modReelpath.recgain");
    const std::uint32_t step = window->openStep("edit");
    for (const double value : {1.5, 2.0})
        ASSERT_OK((*window)->changeParam(listener, step, shapedLike(param, numbers({value}))));
    ASSERT_OK((*window)->submitUndoData(step));
    // From -30 dB to 30 dB, in decibels.
    const std::vector<CNote> notes = rig.handler->takeNotes();
    ASSERT_EQ(notes.size(), 4U);
    EXPECT_EQ(notes[0], (CNote{EKind::Begin, kRecGain, 0.0}));
    EXPECT_EQ(notes[1].kind, EKind::Perform);
    EXPECT_NEAR(notes[1].value, 0.5 + 20.0 * std::log10(1.5) / 60.0, 1e-9);
    EXPECT_EQ(notes[2].kind, EKind::Perform);
    EXPECT_NEAR(notes[2].value, 0.5 + 20.0 * std::log10(2.0) / 60.0, 1e-9);
    EXPECT_EQ(notes[3], (CNote{EKind::End, kRecGain, 0.0}));
    EXPECT_EQ(rig.controller->getParamNormalized(kRecGain), notes[2].value);
}

TEST_F(AHostWithAClient, ReachesTheClientWithItsAutomation)
{
    rig.changes->add(static_cast<int>(kRecGain), 0, 0.75);
    CComponentRig::CChannels block(2, std::vector<double>(64, 0.0));
    ASSERT_EQ(rig.process(block), kResultOk);
    ASSERT_OK(window->tick());
    EXPECT_NEAR(gain->value(), std::pow(10.0, 15.0 / 20.0), 1e-9);
    rig.controller->setParamNormalized(kRecGain, 0.5);
    ASSERT_OK(window->tick());
    EXPECT_NEAR(gain->value(), 1.0, 1e-9);
}

TEST_F(AHostWithAClient, TakesAnUndoAsItsOwnEdit)
{
    const CAudioParam& param =
        *instance->getParamCollector().find("plugin.modMain.modReelpath.recgain");
    const std::uint32_t step = window->openStep("edit");
    ASSERT_OK((*window)->changeParam(listener, step, shapedLike(param, numbers({2.0}))));
    ASSERT_OK((*window)->submitUndoData(step));
    std::ignore = rig.handler->takeNotes();
    ASSERT_OK((*window)->setUndoHistoryPos(0));
    EXPECT_NEAR(rig.controller->getParamNormalized(kRecGain), 0.5, 1e-9);
}

} // namespace
} // namespace tsm::test
