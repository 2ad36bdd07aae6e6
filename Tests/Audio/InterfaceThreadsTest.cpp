#include "Tests/Support/CInterfaceRig.h"

#include <atomic>
#include <chrono>
#include <thread>

namespace tsm::test {
namespace {

constexpr int kRounds = 60;

/// Sound, host and windows at the same time.
class InterfaceThreads : public AnInterface {
protected:
    /// The host's audio thread, with automation, until the test is done.
    void play(CNotingWrapper& target, const std::atomic<bool>& isDone)
    {
        CAudioParam& automated = target.param("modReelpath.hardness");
        CChannel left(128);
        CChannel right(128);
        for (int i = 0; !isDone; ++i) {
            left.assign(128, 0.25);
            right.assign(128, 0.25);
            const void* inputs[] = {left.data(), right.data()};
            void* outputs[] = {left.data(), right.data()};
            automated.setValue(0, 0, i % 100 / 100.0);
            target.processBlock(inputs, outputs, 128);
        }
    }
    /// One window's life: it attaches, edits, listens and goes.
    static void useWindow(CNotingWrapper& target, int round)
    {
        const CTestClient window(target.getRoot());
        CRecordingParam gain(*window.client);
        CRecordingParam hardness(*window.client);
        CRecordingRegistry programs;
        const std::uint32_t ofGain = window.listen("modReelpath.recgain", gain);
        window.listen("modReelpath.hardness", hardness);
        const std::uint32_t registry = window.listen("plugin.param-registry", programs);
        std::uint32_t meter = 0;
        EXPECT_OK(window->listenViz(meter, "plugin.modMain.modMeterOut"));
        const std::uint32_t step = window.openStep("edit");
        const CAudioParamChange change =
            shapedLike(target.param("modReelpath.recgain"), numbers({1.0 + round % 10 / 10.0}));
        EXPECT_OK(window->changeParam(ofGain, step, change));
        EXPECT_OK(window.tick());
        EXPECT_OK(window->setCurrentProgram(registry, round % 10));
        EXPECT_OK(window->setUndoHistoryPos(round % 2));
        if (round % 3) {
            EXPECT_OK(window->submitUndoData(step));
        }
        EXPECT_OK(window->requestPreset(registry, 1, false, -1, -1));
        EXPECT_OK(window->exchangeShadowPreset(registry));
        EXPECT_OK(window->requestVizData(20.0 + round % 40));
        EXPECT_OK(window.tick());
        if (round % 2) {
            EXPECT_OK(window->unlistenParam(ofGain));
        }
    }
    /// The same beside an instance that may end at any moment: the first error, if there is one.
    [[nodiscard]] static CError* tryWindow(CObject* root, const CAudioParamChange& change,
                                           CTestClient& window,
                                           std::unique_ptr<CRecordingParam>& gain)
    {
        TSM_TRY(window.attach(root));
        gain = std::make_unique<CRecordingParam>(*window.client);
        std::uint32_t id = 0;
        std::uint32_t step = 0;
        TSM_TRY(window->listenParam(id, "plugin.modMain.modReelpath.recgain", *gain));
        for (int i = 0; i < 10; ++i) {
            TSM_TRY(window->createUndoData(step, "edit"));
            TSM_TRY(window->changeParam(id, step, change));
            TSM_TRY(window->requestVizData(30.0));
            TSM_TRY(window.tick());
            TSM_TRY(window->submitUndoData(step));
        }
        return nullptr;
    }
};

TEST_F(InterfaceThreads, ServeWindowsWhileSoundAndHostGoOn)
{
    std::atomic<bool> isDone = false;
    instance->startProcessing();
    std::thread audio([&] { play(*instance, isDone); });
    std::thread host([&] {
        for (int i = 0; !isDone; ++i) {
            instance->getParamRegistry().selectProgram(i % 10, instance.get());
            const CBytes saved = state();
            CMemoryReader reader(saved.data(), static_cast<int>(saved.size()));
            EXPECT_OK(instance->getParamRegistry().activatePreset(reader, false, -1, true));
            EXPECT_GE(instance->queryLatency(), 0);
        }
    });
    // Two windows, each on a thread of its own, come and go.
    std::thread other([&] {
        for (int i = 0; i < kRounds; ++i)
            useWindow(*instance, i);
    });
    for (int i = 0; i < kRounds; ++i)
        useWindow(*instance, i + 1);
    other.join();
    isDone = true;
    host.join();
    audio.join();
    instance->stopProcessing();

    // What a window sees at the end is what is.
    const CTestClient window(instance->getRoot());
    CRecordingParam gain(*window.client);
    window.listen("modReelpath.recgain", gain);
    ASSERT_OK(window.tick());
    EXPECT_EQ(gain.value(), param("modReelpath.recgain").value(0, 0));
    EXPECT_EQ(gain.value(), param("modReelpath.recgain").getProcessValues().value(0, 0));
}

TEST_F(InterfaceThreads, KeepWindowsUpToDateWhoeverChangesWhat)
{
    const CTestClient window(instance->getRoot());
    CRecordingParam gain(*window.client);
    CRecordingRegistry programs;
    const std::uint32_t ofGain = window.listen("modReelpath.recgain", gain);
    window.listen("plugin.param-registry", programs);
    std::atomic<bool> isDone = false;
    instance->startProcessing();
    std::thread audio([&] { play(*instance, isDone); });
    std::thread host([&] {
        for (int i = 0; i < 20 * kRounds; ++i) {
            param("modReelpath.recgain").setValue(0, 0, 1.0 + i % 100 / 100.0);
            if (i % 50 == 0)
                instance->getParamRegistry().selectProgram(i / 50 % 10, instance.get());
            if (i % 70 == 0)
                instance->setSampleRate(i % 140 ? 44100.0 : 48000.0);
        }
    });
    for (int i = 0; i < 10 * kRounds; ++i) {
        const CAudioParamChange change =
            shapedLike(param("modReelpath.recgain"), numbers({1.0 + i % 10 / 10.0}));
        EXPECT_OK(window->changeParam(ofGain, 0, change));
        EXPECT_OK(window.tick());
    }
    host.join();
    isDone = true;
    audio.join();
    ASSERT_OK(window.tick());
    EXPECT_EQ(gain.value(), param("modReelpath.recgain").value(0, 0));
    EXPECT_EQ(window->getSampleRate(), instance->getSampleRate());
    const std::string current = std::to_string(instance->getParamRegistry().getCurrentProgram());
    EXPECT_EQ(programs.notes.back().rfind("session gplu " + current + ":", 0), 0U);
}

TEST_F(InterfaceThreads, BringEchoesByTheTimerOfTheWindow)
{
    const CTestClient window(instance->getRoot(), "core:timer");
    CRecordingParam gain(*window.client);
    CRecordingParam hardness(*window.client);
    const std::uint32_t ofGain = window.listen("modReelpath.recgain", gain);
    window.listen("modReelpath.hardness", hardness);
    std::atomic<bool> isDone = false;
    instance->startProcessing();
    std::thread audio([&] { play(*instance, isDone); });
    const std::uint32_t step = window.openStep("edit");
    ASSERT_OK(window->changeParam(ofGain, step,
                                  shapedLike(param("modReelpath.recgain"), numbers({2.5}))));
    ASSERT_OK(window->submitUndoData(step));
    EXPECT_EQ(gain.value(), -1.0);
    // The loop of a window; the time is only what a hung test takes.
    const auto end = std::chrono::steady_clock::now() + std::chrono::seconds(20);
    while (std::chrono::steady_clock::now() < end &&
           (gain.value() != 2.5 || hardness.notes.size() < 50 || window.history().size() < 3)) {
        CMessageQueue::wait(100);
        CMessageQueue::dispatchPending();
    }
    EXPECT_EQ(gain.value(), 2.5);
    EXPECT_GE(hardness.notes.size(), 50U);
    EXPECT_EQ(window.history()[1], "edit");
    isDone = true;
    audio.join();
}

TEST_F(InterfaceThreads, ServeInstancesThatComeAndGoBesideEachOther)
{
    const auto live = [this](int offset) {
        for (int i = 0; i < 12; ++i) {
            CNotingWrapper own;
            ASSERT_OK(own.init());
            own.setSampleRate(48000.0);
            own.setChannelFormat({2, true, false}, {});
            own.setOutputFormat({2, true, false});
            own.afterInit();
            own.startProcessing();
            std::atomic<bool> isDone = false;
            std::thread audio([&] { play(own, isDone); });
            for (int n = 0; n < 5; ++n)
                useWindow(own, offset + i + n);
            isDone = true;
            audio.join();
        }
    };
    std::thread other([&] { live(3); });
    live(0);
    other.join();
}

TEST_F(InterfaceThreads, RefuseWindowsOfAnInstanceThatEndsOnAnother)
{
    const CAudioParamChange change = shapedLike(param("modReelpath.recgain"), numbers({1.5}));
    for (int round = 0; round < 10; ++round) {
        CObject* const root = &instance->getRoot();
        std::atomic<int> begun = 0;
        const auto use = [&] {
            for (bool isOver = false; !isOver; ++begun) {
                std::unique_ptr<CRecordingParam> gain;
                CTestClient window;
                CPtr<CError> error(tryWindow(root, change, window, gain));
                isOver = static_cast<bool>(error);
                if (error) {
                    EXPECT_THAT(error->getMessage().toUtf8(),
                                testing::AnyOf(testing::HasSubstr("No base connector defined."),
                                               testing::HasSubstr("Unable to find object")));
                }
                // What it still sends goes nowhere.
                if (error && window.client) {
                    CPtr<CError> late(window->requestUndoHistory());
                    EXPECT_TRUE(late);
                    EXPECT_OK(window.tick());
                }
            }
        };
        std::thread first(use);
        std::thread second(use);
        while (begun < 2 + 2 * round)
            std::this_thread::yield();
        instance.reset();
        first.join();
        second.join();
        begin();
    }
}

} // namespace
} // namespace tsm::test
