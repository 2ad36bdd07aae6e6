#include "Tools/conform/CBareInstance.h"
#include "Tools/conform/CBlockRun.h"
#include "Tools/conform/ConformCases.h"
#include "Tools/hostlib/CHostAttributes.h"
#include "Tools/hostlib/CMemoryStream.h"

#include "Audio/VST/Interfaces/Speakers.h"

#include <functional>
#include <limits>
#include <memory>

namespace tsm {

using namespace Steinberg;
using namespace Steinberg::Vst;

namespace {

constexpr CVstSetUp kSetUp{.rate = 48000.0, .maxBlock = 512, .channelCount = 0, .isDouble = false};

/// What an instance has once it is initialised.
struct CCounts {
    int32 parameters = 0;
    int32 buses[4] = {};

    static CCounts of(IComponent& component, IEditController& controller)
    {
        return {controller.getParameterCount(),
                {component.getBusCount(kAudio, kInput), component.getBusCount(kAudio, kOutput),
                 component.getBusCount(kEvent, kInput), component.getBusCount(kEvent, kOutput)}};
    }
    [[nodiscard]] std::string toText() const
    {
        std::string text = std::to_string(parameters) + " parameters, buses";
        for (const int32 count : buses)
            text += ' ' + std::to_string(count);
        return text;
    }
};

void expectSame(const CCounts& expected, const CBareInstance& bare, const std::string& when,
                CFindings& findings)
{
    const CCounts came = CCounts::of(*bare.component, *bare.controller);
    findings.expect(came.toText() == expected.toText(), "parameters and buses " + when,
                    expected.toText(), came.toText());
}

/// A short sound by hand, in 32-bit samples: two channels in and out, whatever the buses.
tresult processBare(const CBareInstance& bare, CFindings& findings, const char* when)
{
    constexpr int kFrames = 256;
    CBusRoom in(2, kFrames, false);
    CBusRoom out(2, kFrames, false);
    in.silence(kFrames);
    out.silence(kFrames);
    AudioBusBuffers inputs = in.describe();
    AudioBusBuffers outputs = out.describe();
    ProcessData data = {};
    data.symbolicSampleSize = kSample32;
    data.numSamples = kFrames;
    data.numInputs = data.numOutputs = 1;
    data.inputs = &inputs;
    data.outputs = &outputs;
    const tresult result = bare.processor->process(data);
    CChannels came(2, std::vector<double>(kFrames));
    for (int channel = 0; channel < 2; ++channel)
        out.read(channel, came[static_cast<std::size_t>(channel)].data(), kFrames);
    findings.expect(out.isGuarded(kFrames) && isFinite(came), "process() " + std::string(when),
                    "finite samples within the block", "others");
    return result;
}

CError* checkInitialize(CPlugin& plugin, CFindings& findings)
{
    TSM_TRY(plugin.open());
    CBareInstance bare;
    TSM_TRY(bare.make(plugin));
    findings.expectOk("initialize()", bare.initialize(plugin));
    const CCounts counts = CCounts::of(*bare.component, *bare.controller);
    // One host does this to every component that is its own controller.
    bare.controller->initialize(plugin.getContext().asUnknown());
    bare.component->initialize(plugin.getContext().asUnknown());
    expectSame(counts, bare, "behind a second initialize()", findings);
    for (int round = 0; round < 3; ++round) {
        findings.expectOk("terminate()", bare.terminate());
        // The host doesn't know that both are one object.
        bare.controller->terminate();
        bare.component->terminate();
        findings.expectOk("initialize() behind terminate()", bare.initialize(plugin));
        expectSame(counts, bare, "behind terminate() and initialize()", findings);
        findings.expectOk("setupProcessing() behind terminate() and initialize()",
                          bare.setUp(48000.0, 512));
        bare.component->setActive(1);
        bare.processor->setProcessing(1);
        findings.expectOk("process() behind terminate() and initialize()",
                          processBare(bare, findings, "behind terminate() and initialize()"));
        bare.processor->setProcessing(0);
        bare.component->setActive(0);
    }
    bare.terminate();
    return nullptr;
}

/// All that a host could ask, in whatever state the instance is; results don't count.
void askEverything(const CBareInstance& bare, CFindings& findings, const char* when)
{
    IEditController& controller = *bare.controller;
    IComponent& component = *bare.component;
    const auto stream = IPtr<CMemoryStream>::owned(new CMemoryStream("no state"));
    component.setState(stream.get());
    component.getState(stream.get());
    stream->rewind();
    controller.setComponentState(stream.get());
    BusInfo bus = {};
    component.getBusInfo(kAudio, kInput, 0, bus);
    component.activateBus(kAudio, kInput, 0, 1);
    SpeakerArrangement stereo = SpeakerArr::kStereo;
    bare.processor->setBusArrangements(&stereo, 1, &stereo, 1);
    bare.processor->getBusArrangement(kInput, 0, stereo);
    bare.processor->canProcessSampleSize(kSample32);
    bare.processor->getLatencySamples();
    bare.processor->getTailSamples();
    ParameterInfo parameter = {};
    controller.getParameterInfo(0, parameter);
    String128 text = {};
    ParamValue value = 0.0;
    for (const ParamID id : {parameter.id, ParamID{0}, kNoParamId}) {
        controller.setParamNormalized(id, 0.5);
        controller.getParamNormalized(id);
        controller.getParamStringByValue(id, 0.5, text);
        controller.getParamValueByString(id, text, value);
        controller.normalizedParamToPlain(id, 0.5);
        controller.plainParamToNormalized(id, 0.5);
    }
    if (const auto units = queryAs<IUnitInfo>(&controller)) {
        UnitInfo unit = {};
        ProgramListInfo list = {};
        units->getUnitCount();
        units->getUnitInfo(0, unit);
        units->getProgramListInfo(0, list);
        units->getProgramName(list.id, 0, text);
        units->selectUnit(0);
    }
    if (const auto listener = queryAs<ChannelContext::IInfoListener>(&controller)) {
        const auto list = IPtr<CHostAttributes>::owned(new CHostAttributes);
        list->setString(ChannelContext::kChannelNameKey, u"Track");
        listener->setChannelContextInfos(list.get());
        listener->setChannelContextInfos(nullptr);
    }
    IPtr<IPlugView>::owned(controller.createView(kEditorViewType)).reset();
    processBare(bare, findings, when);
    bare.processor->setProcessing(0);
    component.setActive(0);
}

CError* checkOutsideLife(CPlugin& plugin, CFindings& findings)
{
    TSM_TRY(plugin.open());
    CBareInstance bare;
    TSM_TRY(bare.make(plugin));
    askEverything(bare, findings, "before initialize()");
    bare.terminate();
    findings.expectOk("initialize() behind all that", bare.initialize(plugin));
    const CCounts counts = CCounts::of(*bare.component, *bare.controller);
    findings.expect(counts.buses[1] > 0, "output buses behind all that", "at least one", "none");
    askEverything(bare, findings, "before setupProcessing()");
    bare.terminate();
    askEverything(bare, findings, "behind terminate()");
    findings.expectOk("initialize() once more", bare.initialize(plugin));
    bare.terminate();
    return nullptr;
}

/// The states in which a host may let an instance go, each reached through those before it.
CError* checkReleases(CPlugin& plugin, CFindings& findings)
{
    TSM_TRY(plugin.open());
    constexpr int kStates = 6;
    for (int state = 0; state < kStates; ++state)
        for (const bool isTerminated : {false, true}) {
            CBareInstance bare;
            TSM_TRY(bare.make(plugin));
            if (state > 0)
                bare.initialize(plugin);
            if (state > 1)
                findings.expectOk("setupProcessing()", bare.setUp(44100.0, 256));
            if (state > 2)
                findings.expectOk("setActive(true)", bare.component->setActive(1));
            if (state > 3)
                bare.processor->setProcessing(1);
            if (state > 4)
                processBare(bare, findings, "of an instance that is let go");
            if (isTerminated)
                bare.terminate();
        }
    return nullptr;
}

/// One order of the calls between initialize() and the first block.
struct COrder {
    const char* name;
    std::function<void(const CVstInstance&)> run;
};

tresult setUpOf(const CVstInstance& instance, double rate = kSetUp.rate, int32 mode = kRealtime)
{
    ProcessSetup setup{mode, kSample32, kSetUp.maxBlock, rate};
    return instance.getProcessor().setupProcessing(setup);
}

void arrange(const CVstInstance& instance)
{
    std::vector<SpeakerArrangement> buses[2];
    for (const BusDirection dir : {kInput, kOutput})
        for (int32 i = 0; i < instance.getComponent().getBusCount(kAudio, dir); ++i) {
            buses[dir].push_back(0);
            instance.getProcessor().getBusArrangement(dir, i, buses[dir].back());
        }
    instance.getProcessor().setBusArrangements(buses[0].data(), static_cast<int32>(buses[0].size()),
                                               buses[1].data(),
                                               static_cast<int32>(buses[1].size()));
}

void activateBuses(const CVstInstance& instance)
{
    for (const BusDirection dir : {kInput, kOutput})
        instance.getComponent().activateBus(kAudio, dir, 0, 1);
}

void go(const CVstInstance& instance)
{
    instance.getComponent().setActive(1);
    instance.getProcessor().setProcessing(1);
}

void halt(const CVstInstance& instance)
{
    instance.getProcessor().setProcessing(0);
    instance.getComponent().setActive(0);
}

const std::vector<COrder>& orders()
{
    using CInstance = const CVstInstance&;
    static const std::vector<COrder> all{
        {"set-up, arrangements, buses",
         [](CInstance each) { setUpOf(each), arrange(each), activateBuses(each), go(each); }},
        {"arrangements, buses, set-up",
         [](CInstance each) { arrange(each), activateBuses(each), setUpOf(each), go(each); }},
        {"set-up twice, arrangements twice",
         [](CInstance each) {
             setUpOf(each), arrange(each), setUpOf(each), arrange(each);
             activateBuses(each), go(each);
         }},
        {"another rate first",
         [](CInstance each) {
             setUpOf(each, 96000.0), arrange(each), activateBuses(each), setUpOf(each), go(each);
         }},
        {"no setProcessing()",
         [](CInstance each) {
             setUpOf(each), activateBuses(each), each.getComponent().setActive(1);
         }},
        {"active twice",
         [](CInstance each) { setUpOf(each), activateBuses(each), go(each), go(each); }},
        {"not active twice, then active",
         [](CInstance each) {
             halt(each), setUpOf(each), activateBuses(each), halt(each), halt(each), go(each);
         }},
        {"active, not active, active",
         [](CInstance each) {
             setUpOf(each), activateBuses(each), go(each), halt(each), go(each);
         }},
        {"latency asked everywhere", [](CInstance each) {
             each.getProcessor().getLatencySamples(), setUpOf(each);
             each.getProcessor().getLatencySamples(), activateBuses(each), go(each);
             each.getProcessor().getLatencySamples();
         }}};
    return all;
}

CError* checkOrders(CPlugin& plugin, CFindings& findings)
{
    TSM_TRY(plugin.open());
    CChannels expected;
    for (const COrder& order : orders()) {
        CVstInstance instance;
        TSM_TRY(plugin.make(instance));
        order.run(instance);
        CBlockRun run(instance, kSetUp, findings);
        CChannels out;
        run.processAll(makeNoise(run.getInputCount(), 8192, 0.25), {512}, out);
        halt(instance);
        if (expected.empty())
            expected = out;
        const CSoundGap gap = findLargestGap(expected, out);
        findings.expect(
            gap.size <= 1e-6, "the sound behind the order '" + std::string(order.name) + "'",
            "that of the order '" + std::string(orders()[0].name) + "'",
            "differs by " + numberText(gap.size) + " in frame " + std::to_string(gap.frame));
    }
    return nullptr;
}

CError* checkRestarts(CPlugin& plugin, CFindings& findings)
{
    TSM_TRY(plugin.open());
    CVstInstance instance;
    TSM_TRY(plugin.make(instance));
    activateBuses(instance);
    int blockLimit = 16;
    for (const double rate : {44100.0, 8000.0, 11025.0, 192000.0, 48000.5, 384000.0, 22050.0}) {
        CVstSetUp setUp = kSetUp;
        setUp.rate = rate;
        setUp.maxBlock = blockLimit;
        blockLimit = blockLimit * 5 % 8191 + 1;
        TSM_TRY(instance.setUp(setUp));
        TSM_TRY(instance.start());
        CBlockRun run(instance, setUp, findings);
        CChannels out;
        run.processAll(makeNoise(run.getInputCount(), 4000, 0.5), {setUp.maxBlock, 1}, out);
        findings.expect(isFinite(out), "the output at " + numberText(rate) + " Hz",
                        "finite samples", "others");
        // A latency of more than ten seconds is none that anybody means.
        const double latency = instance.getProcessor().getLatencySamples();
        findings.expect(latency <= 10.0 * rate, "latency at " + numberText(rate) + " Hz",
                        "at most ten seconds", numberText(latency) + " samples");
        if (blockLimit % 2 == 0) { // with and without a pause between
            instance.stop();
            continue;
        }
        instance.getProcessor().setProcessing(0);
        instance.getProcessor().setProcessing(1);
        run.processAll(makeNoise(run.getInputCount(), 1000, 0.5), {setUp.maxBlock}, out);
        instance.stop();
    }
    return nullptr;
}

CError* checkBadSetUps(CPlugin& plugin, CFindings& findings)
{
    TSM_TRY(plugin.open());
    CVstInstance instance;
    TSM_TRY(plugin.make(instance));
    activateBuses(instance);
    constexpr double kNan = std::numeric_limits<double>::quiet_NaN();
    constexpr double kInf = std::numeric_limits<double>::infinity();
    struct CRow {
        double rate;
        int32 maxBlock;
        int32 sampleSize;
        int32 mode;
    };
    for (const CRow& row :
         {CRow{0.0, 512, kSample32, kRealtime}, CRow{-48000.0, 512, kSample32, kRealtime},
          CRow{kNan, 512, kSample32, kRealtime}, CRow{kInf, 512, kSample32, kRealtime},
          CRow{48000.0, 0, kSample32, kRealtime}, CRow{48000.0, -1, kSample32, kRealtime},
          CRow{48000.0, 512, 7, kRealtime}, CRow{48000.0, 512, kSample32, 99}}) {
        ProcessSetup setup{row.mode, row.sampleSize, row.maxBlock, row.rate};
        // A refusal is as good as care; what counts is that nothing is broken.
        instance.getProcessor().setupProcessing(setup);
        instance.getProcessor().getLatencySamples();
    }
    findings.expectRefused("canProcessSampleSize() of an unknown size",
                           instance.getProcessor().canProcessSampleSize(7));
    TSM_TRY(instance.setUp(kSetUp));
    TSM_TRY(instance.start());
    CBlockRun run(instance, kSetUp, findings);
    CChannels out;
    run.processAll(makeNoise(run.getInputCount(), 2000, 0.5), {512}, out);
    findings.expect(isFinite(out), "the output behind odd set-ups", "finite samples", "others");
    return nullptr;
}

/// Many at once, which end in another order than they began.
CError* checkMany(CPlugin& plugin, CFindings& findings)
{
    TSM_TRY(plugin.open());
    constexpr std::size_t kCount = 12;
    std::vector<std::unique_ptr<CVstInstance>> instances;
    for (std::size_t i = 0; i < kCount; ++i) {
        instances.push_back(std::make_unique<CVstInstance>());
        TSM_TRY(plugin.start(*instances.back(), kSetUp));
    }
    for (std::size_t i = 0; i < kCount; ++i) {
        // 5 and 12 have no common divisor: all come once.
        std::unique_ptr<CVstInstance>& ending = instances[i * 5 % kCount];
        CBlockRun run(*ending, kSetUp, findings);
        CChannels out;
        run.processAll(makeNoise(run.getInputCount(), 1024, 0.5), {512}, out);
        ending.reset();
    }
    return nullptr;
}

constexpr CConformCase kCases[] = {
    {"life.initialize", "initialize and terminate twice, and again", checkInitialize},
    {"life.outside", "all calls before initialize, before set-up and behind terminate",
     checkOutsideLife},
    {"life.release", "instances let go in every state, with and without terminate", checkReleases},
    {"life.orders", "each order of set-up, arrangements and activation gives the same sound",
     checkOrders},
    {"life.restarts", "stop and start with other rates and block sizes", checkRestarts},
    {"life.bad-set-ups", "impossible set-ups do no harm", checkBadSetUps},
    {"life.many", "several instances at once", checkMany},
};

} // namespace

std::span<const CConformCase> lifeCases()
{
    return kCases;
}

} // namespace tsm
