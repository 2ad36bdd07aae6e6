#include "Tests/Audio/VST/CComponentRig.h"

#include <atomic>
#include <cmath>
#include <thread>

using namespace Steinberg;
using namespace Steinberg::Vst;

namespace tsm::test {

namespace {

constexpr ParamID kProgramId = 999;

/// An instance whose sound runs on a thread of its own, with automation, while the test works.
class ComponentThreads : public testing::Test {
protected:
    void SetUp() override
    {
        rig.initialize();
        rig.setUp(44100.0);
        audio = std::thread([this] { play(); });
        while (blocks == 0)
            std::this_thread::yield();
    }
    void TearDown() override
    {
        isDone = true;
        audio.join();
        EXPECT_TRUE(isClean);
    }
    CComponentRig rig;
    std::atomic<int> blocks = 0;

private:
    void play()
    {
        while (!isDone) {
            CComponentRig::CChannels block(2, std::vector<double>(256, 0.25));
            const int at = blocks % 100;
            rig.changes->add(1, at, at / 100.0);
            rig.changes->add(9, 0, 0.5);
            bool isFine = rig.process(block) == kResultOk;
            for (const double sample : block[0])
                isFine &= std::isfinite(sample);
            isClean = isClean && isFine;
            ++blocks;
        }
    }
    std::atomic<bool> isDone = false;
    std::atomic<bool> isClean = true;
    std::thread audio;
};

TEST_F(ComponentThreads, SaveLoadAndAskWhileSoundRuns)
{
    const std::string saved = rig.getState();
    for (int i = 0; i < 200; ++i) {
        rig.controller->setParamNormalized(static_cast<ParamID>(i % 12), i / 200.0);
        rig.controller->setParamNormalized(kProgramId, i % 10 / 9.0);
        EXPECT_EQ(rig.setState(i % 2 ? saved : rig.getState()), kResultOk);
        EXPECT_FALSE(rig.textOf(3, rig.controller->getParamNormalized(3)).empty());
        String128 name;
        EXPECT_EQ(rig.units->getProgramName(999, i % 10, name), kResultOk);
    }
    for (const CHostHandler::CNote& note : rig.handler->takeNotes())
        EXPECT_TRUE(note.value >= 0.0 && note.value <= 1.0);
}

TEST_F(ComponentThreads, SetUpAnewWhileSoundRuns)
{
    for (int i = 0; i < 300; ++i) {
        ProcessSetup setup{kRealtime, kSample64, 256, i % 2 ? 48000.0 : 96000.0};
        EXPECT_EQ(rig.processor->setupProcessing(setup), kResultOk);
        SpeakerArrangement speakers = i % 3 ? 3 : 0x80000;
        rig.processor->setBusArrangements(&speakers, 1, &speakers, 1);
        rig.processor->getLatencySamples();
        rig.processor->setProcessing(i % 4 != 0);
    }
}

TEST_F(ComponentThreads, LetTwoInstancesLiveAndDieBeside)
{
    for (int i = 0; i < 20; ++i) {
        CComponentRig other;
        other.initialize();
        other.setUp(48000.0);
        CComponentRig::CChannels block(2, std::vector<double>(64, 0.1));
        EXPECT_EQ(other.process(block), kResultOk);
        EXPECT_EQ(other.setState(rig.getState()), kResultOk);
    }
}

} // namespace

} // namespace tsm::test
