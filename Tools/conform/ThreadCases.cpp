#include "Tools/conform/CLivePlugin.h"
#include "Tools/conform/CRenderPlan.h"
#include "Tools/conform/ConformCases.h"
#include "Tools/hostlib/CMemoryStream.h"

#include "Core/CPtr.h"

#include <atomic>
#include <chrono>
#include <memory>
#include <random>
#include <thread>

namespace tsm {

using namespace Steinberg;
using namespace Steinberg::Vst;

namespace {

using CClock = std::chrono::steady_clock;

/// Keeps the audio thread at work until the object's end, as a device does.
class CAudioThread {
public:
    CAudioThread(CLivePlugin& plugin, CFindings& findings)
        : live(plugin), finder(findings), thread([this] { run(); })
    {
    }
    ~CAudioThread()
    {
        isEnding = true;
        thread.join();
    }
    CAudioThread(const CAudioThread&) = delete;
    CAudioThread& operator=(const CAudioThread&) = delete;

    [[nodiscard]] int getBlockCount() const { return blockCount; }

private:
    void run()
    {
        CBlockRun& blocks = live.getRun();
        const CChannels noise = makeNoise(blocks.getInputCount(), 512, 0.25);
        std::mt19937 random(3);
        while (!isEnding) {
            CChannels out;
            const int count = 1 + static_cast<int>(random() % 512);
            blocks.process(noise, 0, count, out);
            finder.expect(isFinite(out), "the output while another thread works", "finite samples",
                          "others");
            ++blockCount;
        }
    }

    CLivePlugin& live;
    CFindings& finder;
    std::atomic<bool> isEnding = false;
    std::atomic<int> blockCount = 0;
    std::thread thread;
};

/// What a host's own thread does with the controller meanwhile.
void useParameters(CLivePlugin& live, unsigned round, CFindings& findings)
{
    IEditController& controller = live.getInstance().getController();
    for (const CParamValue& each : live.drawValues(round)) {
        controller.setParamNormalized(each.id, each.value);
        String128 text = {};
        double read = 0.0;
        findings.expectOk("getParamStringByValue() while sound runs",
                          controller.getParamStringByValue(each.id, each.value, text));
        controller.getParamValueByString(each.id, text, read);
        const double value = controller.getParamNormalized(each.id);
        findings.expect(value >= 0.0 && value <= 1.0, "a parameter while sound runs", "0 to 1",
                        numberText(value));
    }
}

void usePrograms(CLivePlugin& live, unsigned round)
{
    const CVstParam* const program = live.getParams().findProgramParam();
    if (!program || program->stepCount < 1)
        return;
    const double step = round % (static_cast<unsigned>(program->stepCount) + 1);
    live.getParams().setValue(*program, step / program->stepCount);
}

CError* useState(CLivePlugin& live, std::string& state)
{
    std::string now;
    TSM_TRY(live.getInstance().getState(now));
    if (!state.empty())
        TSM_TRY(live.getInstance().setState(state));
    state = now;
    return nullptr;
}

CError* checkControl(CPlugin& plugin, CFindings& findings)
{
    TSM_TRY(plugin.open());
    CLivePlugin live;
    TSM_TRY(live.start(plugin, CRenderPlan().setUp, findings));
    const auto end = CClock::now() + std::chrono::milliseconds(plugin.countRounds(3000, 150));
    unsigned rounds = 0;
    int blocks = 0;
    {
        const CAudioThread audio(live, findings);
        std::string state;
        for (; CClock::now() < end || audio.getBlockCount() < 10; ++rounds) {
            useParameters(live, rounds, findings);
            if (rounds % 4 == 1)
                usePrograms(live, rounds / 4);
            if (rounds % 4 == 3)
                TSM_TRY(useState(live, state));
            live.getInstance().getProcessor().getLatencySamples();
            live.getInstance().getProcessor().getTailSamples();
        }
        blocks = audio.getBlockCount();
    }
    findings.note(std::to_string(rounds) + " rounds beside " + std::to_string(blocks) + " blocks");
    return nullptr;
}

/// Instances that sound at the same time on threads of their own, while others come and go.
CError* checkInstances(CPlugin& plugin, CFindings& findings)
{
    TSM_TRY(plugin.open());
    constexpr int kCount = 3;
    std::vector<std::unique_ptr<CLivePlugin>> lives;
    std::vector<std::unique_ptr<CAudioThread>> threads;
    lives.reserve(kCount);
    for (int i = 0; i < kCount; ++i) {
        lives.push_back(std::make_unique<CLivePlugin>());
        TSM_TRY(lives.back()->start(plugin, CRenderPlan().setUp, findings));
    }
    threads.reserve(kCount);
    for (const auto& live : lives)
        threads.push_back(std::make_unique<CAudioThread>(*live, findings));
    const auto end = CClock::now() + std::chrono::milliseconds(plugin.countRounds(2000, 150));
    int rounds = 0;
    for (; CClock::now() < end; ++rounds) {
        CLivePlugin passing;
        TSM_TRY(passing.start(plugin, CRenderPlan().setUp, findings));
        usePrograms(passing, static_cast<unsigned>(rounds));
        useParameters(passing, static_cast<unsigned>(rounds), findings);
    }
    threads.clear();
    findings.note(std::to_string(rounds) + " instances came and went");
    return nullptr;
}

/// The audio thread starts and stops its work itself, in some hosts.
CError* checkProcessingSwitch(CPlugin& plugin, CFindings& findings)
{
    TSM_TRY(plugin.open());
    CLivePlugin live;
    TSM_TRY(live.start(plugin, CRenderPlan().setUp, findings));
    std::thread([&] {
        CBlockRun& run = live.getRun();
        const CChannels noise = makeNoise(run.getInputCount(), 256, 0.25);
        CChannels out;
        for (int i = 0; i < 20; ++i) {
            live.getInstance().getProcessor().setProcessing(0);
            live.getInstance().getProcessor().setProcessing(1);
            run.process(noise, 0, 256, out);
        }
        findings.expect(isFinite(out) && peakOf(out) > 0.0,
                        "the output behind setProcessing() on the audio thread", "a sound", "none");
    }).join();
    return nullptr;
}

constexpr CConformCase kCases[] = {
    {"threads.control", "values, texts, programs and states on one thread, sound on another",
     checkControl},
    {"threads.instances", "instances on threads of their own, while others come and go",
     checkInstances},
    {"threads.processing", "setProcessing on the audio thread", checkProcessingSwitch},
};

} // namespace

std::span<const CConformCase> threadCases()
{
    return kCases;
}

} // namespace tsm
