#include "Tests/Soak/CSoakInstance.h"

#include <cmath>

namespace tsm::test {

using namespace Steinberg;
using namespace Steinberg::Vst;

namespace {

// Recording gain, its dry share, de-emphasis, output gain and the peak of noise at their most.
constexpr double kHighestSample = 1e5;
constexpr ParamID kProgramId = 999;

int pick(CSoakRandom& random, int count)
{
    return static_cast<int>(random() % static_cast<unsigned>(count));
}

double fraction(CSoakRandom& random)
{
    return static_cast<double>(random()) / 4294967295.0;
}

/// Drops an error: what is asked for at random may be refused, only not done badly.
void allow(CError* error)
{
    const CPtr<CError> dropped(error);
}

/// Reads nothing of what the meters send.
class CSoakMeters : public CAudioInterfaceVizProcessor {
public:
    void startViz() override {}
    void stopViz() override {}
    void clear() override {}
    [[nodiscard]] CError* readVizData(CInputStream&) override { return nullptr; }
    [[nodiscard]] CError* readExportSlotNames(CInputStream&) override { return nullptr; }
};

constexpr const char* kEdited[] = {"modReelpath.recgain", "modReelpath.hardness", "modOutGain.gain",
                                   "modReelpath.flutter", "oversampling"};

} // namespace

/// What an editor would hold of the instance.
struct CSoakInstance::CWindow {
    explicit CWindow(CObject& instance) : client(instance)
    {
        client->setVizProcessor(&meters);
        for (const char* name : kEdited) {
            params.push_back(std::make_unique<CRecordingParam>(*client.client));
            listeners.push_back(client.listen(name, *params.back()));
        }
        registry = client.listen("plugin.param-registry", programs);
        for (const char* meter : {"plugin.modMain.modMeterOut", "plugin.modMain.modMeterIODiff"}) {
            std::uint32_t id = 0;
            allow(client->listenViz(id, meter));
        }
    }

    CSoakMeters meters;
    CRecordingRegistry programs;
    CTestClient client;
    std::vector<std::unique_ptr<CRecordingParam>> params;
    std::vector<std::uint32_t> listeners;
    std::uint32_t registry = 0;
};

CSoakInstance::CSoakInstance(unsigned seed) : soundRandom(seed)
{
    rig.initialize();
    wrapper = static_cast<CAudioWrapperVST3*>(rig.processor.get());
    rig.setUp(rate);
    startSound();
}

CSoakInstance::~CSoakInstance()
{
    window.reset();
    stopSound();
}

void CSoakInstance::startSound()
{
    isPlaying = true;
    audio = std::thread([this] { play(); });
}

void CSoakInstance::stopSound()
{
    isPlaying = false;
    if (audio.joinable())
        audio.join();
}

void CSoakInstance::play()
{
    while (isPlaying) {
        playBlock(soundRandom);
        // Hosts leave the processor to others as well.
        std::this_thread::sleep_for(std::chrono::microseconds(pick(soundRandom, 500)));
    }
}

void CSoakInstance::playBlock(CSoakRandom& random)
{
    constexpr int kSizes[] = {0, 1, 7, 31, 32, 64, 100, 128, 255, 256, 480, 512, 513, 1024, 4096};
    const auto size = static_cast<std::size_t>(kSizes[pick(random, std::size(kSizes))]);
    CComponentRig::CChannels block(static_cast<std::size_t>(channels), std::vector<double>(size));
    const double level = pick(random, 8) == 0 ? 0.0 : 2.0 * fraction(random);
    for (std::vector<double>& channel : block)
        for (double& sample : channel)
            sample = level * (2.0 * fraction(random) - 1.0);
    for (int i = pick(random, 4); i > 0 && size > 0; --i)
        rig.changes->add(pick(random, 12), pick(random, static_cast<int>(size)), fraction(random));
    bool isFine = rig.process(block) == kResultOk;
    for (const std::vector<double>& channel : block)
        for (const double sample : channel)
            isFine = isFine && std::abs(sample) < kHighestSample; // not-a-number fails
    clean = clean && isFine;
}

void CSoakInstance::act(CSoakRandom& random, std::vector<std::string>& states)
{
    switch (pick(random, 12)) {
    case 0:
        changeFormat(random);
        break;
    case 1:
    case 2:
        changeState(random, states);
        break;
    case 3:
        changeTape(random);
        break;
    case 4:
    case 5:
        changeParams(random);
        break;
    default:
        useWindow(random);
    }
}

void CSoakInstance::changeFormat(CSoakRandom& random)
{
    constexpr double kRates[] = {8000.0, 44100.0, 44104.0, 48000.0, 96000.0, 192000.0};
    stopSound();
    rig.processor->setProcessing(false);
    rig.component->setActive(false);
    rate = kRates[pick(random, std::size(kRates))];
    channels = 1 + pick(random, 2);
    rig.setUp(rate, channels);
    startSound();
}

void CSoakInstance::changeParams(CSoakRandom& random)
{
    const auto id = static_cast<ParamID>(pick(random, 12));
    rig.controller->setParamNormalized(pick(random, 4) == 0 ? kProgramId : id, fraction(random));
    String128 text = {};
    rig.controller->getParamStringByValue(id, fraction(random), text);
    double value = 0.0;
    rig.controller->getParamValueByString(id, text, value);
    std::ignore = rig.processor->getLatencySamples();
}

void CSoakInstance::changeTape(CSoakRandom& random)
{
    struct CRow {
        const char* name;
        int count; // of values from 0
    };
    constexpr CRow kRows[] = {{"oversampling", 5},
                              {"lp-oversampling-enable", 2},
                              {"modReelpath.cab-index", 10},
                              {"modReelpath.cab-enable", 2},
                              {"bypass-enable", 2}};
    const CRow& row = kRows[pick(random, std::size(kRows))];
    if (CAudioParam* param =
            wrapper->getParamCollector().find("plugin.modMain." + CString(row.name)))
        param->setValue(0, 0, pick(random, row.count));
}

void CSoakInstance::changeState(CSoakRandom& random, std::vector<std::string>& states)
{
    constexpr std::size_t kKept = 20;
    if (states.empty() || pick(random, 2) == 0) {
        const std::string state = rig.getState();
        if (states.size() < kKept)
            states.push_back(state);
        else
            states[static_cast<std::size_t>(pick(random, kKept))] = state;
        return;
    }
    std::string state =
        states[static_cast<std::size_t>(pick(random, static_cast<int>(states.size())))];
    if (pick(random, 4) == 0)
        state.resize(static_cast<std::size_t>(pick(random, static_cast<int>(state.size()))));
    else if (pick(random, 4) == 0)
        state[static_cast<std::size_t>(pick(random, static_cast<int>(state.size())))] ^= 0x10;
    rig.setState(state);
}

void CSoakInstance::useWindow(CSoakRandom& random)
{
    if (!window) {
        window = std::make_unique<CWindow>(wrapper->getRoot());
        return;
    }
    if (pick(random, 20) == 0) {
        window.reset(); // now and then in mid-gesture
        return;
    }
    edit(random);
    allow(window->client->requestVizData(1.0 + pick(random, 100)));
    if (pick(random, 10) != 0) // a window may be slow
        allow(window->client.tick());
    for (const auto& param : window->params)
        std::ignore = param->takeNotes();
    std::ignore = window->programs.takeNotes();
}

void CSoakInstance::edit(CSoakRandom& random)
{
    CAudioInterfaceClient& client = *window->client.client;
    const int which = pick(random, std::size(kEdited));
    const std::uint32_t listener = window->listeners[static_cast<std::size_t>(which)];
    switch (pick(random, 9)) {
    case 0:
        allow(client.setUndoHistoryPos(pick(random, 12)));
        break;
    case 1:
        allow(client.exchangeShadowPreset(window->registry));
        break;
    case 2:
        allow(client.updateShadowPreset(window->registry));
        break;
    case 3:
        allow(client.activateFactoryPreset(window->registry, pick(random, 12)));
        break;
    case 4:
        allow(client.requestBank(window->registry, 1, pick(random, 2) == 0));
        break;
    case 5:
        allow(client.setCurrentProgram(window->registry, pick(random, 12)));
        break;
    default: {
        const CString name = "plugin.modMain." + CString(kEdited[which]);
        const CAudioParam* param = wrapper->getParamCollector().find(name);
        const std::uint32_t step = window->client.openStep("edit");
        for (int i = pick(random, 4); i >= 0 && param; --i)
            allow(client.changeParam(listener, step,
                                     shapedLike(*param, numbers({4.0 * fraction(random)}))));
        if (pick(random, 8) != 0)
            allow(client.submitUndoData(step));
    }
    }
}

} // namespace tsm::test
