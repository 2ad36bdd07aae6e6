#include "Tools/conform/CRenderPlan.h"
#include "Tools/conform/ConformCases.h"

#include <algorithm>
#include <functional>
#include <limits>
#include <numeric>

namespace tsm {

using namespace Steinberg;
using namespace Steinberg::Vst;

namespace {

/// Whether the plug-in takes samples of this size. Finds it when it takes no 32-bit ones, which
/// every host has.
CError* askSampleSize(CPlugin& plugin, bool isDouble, CFindings& findings, bool& isTaken)
{
    CVstInstance instance;
    TSM_TRY(plugin.make(instance));
    isTaken = instance.getProcessor().canProcessSampleSize(isDouble ? kSample64 : kSample32) ==
              kResultTrue;
    if (!isTaken && isDouble)
        findings.skip("no 64-bit samples");
    else
        findings.expect(isTaken, "32-bit samples", "taken", "refused");
    return nullptr;
}

/// Parts of the sound's peak; a bit more than the 24 bits of a float.
constexpr double kTolerance = 1e-6;

void expectSameSound(const CChannels& expected, const CChannels& came, const std::string& what,
                     double tolerance, CFindings& findings)
{
    findings.expectEqual("frames of " + what, static_cast<long long>(frameCountOf(expected)),
                         static_cast<long long>(frameCountOf(came)));
    const CSoundGap gap = findLargestGap(expected, came);
    findings.expect(gap.size <= tolerance * std::max(peakOf(expected), 1e-3), what,
                    "the sound of blocks of 512",
                    "differs by " + numberText(gap.size) + " in frame " +
                        std::to_string(gap.frame) + " of channel " + std::to_string(gap.channel));
}

/// Every size from 0 to the largest.
std::vector<int> allSizes(int largest)
{
    std::vector<int> sizes(static_cast<std::size_t>(largest) + 1);
    std::iota(sizes.begin(), sizes.end(), 0);
    return sizes;
}

CError* checkBlocks(CPlugin& plugin, CFindings& findings, bool isDouble)
{
    TSM_TRY(plugin.open());
    bool isTaken = false;
    TSM_TRY(askSampleSize(plugin, isDouble, findings, isTaken));
    if (!isTaken)
        return nullptr;
    const int largest = plugin.countRounds(1024, 400);
    CRenderPlan plan;
    plan.setUp.isDouble = isDouble;
    plan.frameCount =
        static_cast<std::size_t>(largest) * (static_cast<std::size_t>(largest) + 1) / 2;
    CChannels expected;
    TSM_TRY(plan.render(plugin, findings, expected));
    findings.expect(isFinite(expected), "the output", "finite samples", "others");
    plan.setUp.maxBlock = largest;
    plan.sizes = allSizes(largest);
    CChannels came;
    TSM_TRY(plan.render(plugin, findings, came));
    expectSameSound(expected, came,
                    "the sound of blocks of all sizes up to " + std::to_string(largest), kTolerance,
                    findings);
    plan.sizes = {1};
    plan.setUp.maxBlock = 1;
    plan.frameCount = 4096;
    TSM_TRY(plan.render(plugin, findings, came));
    for (std::vector<double>& channel : expected)
        channel.resize(plan.frameCount);
    expectSameSound(expected, came, "the sound of blocks of 1", kTolerance, findings);
    return nullptr;
}

CError* checkBlocks32(CPlugin& plugin, CFindings& findings)
{
    return checkBlocks(plugin, findings, false);
}

CError* checkBlocks64(CPlugin& plugin, CFindings& findings)
{
    return checkBlocks(plugin, findings, true);
}

CError* checkSampleSizes(CPlugin& plugin, CFindings& findings)
{
    TSM_TRY(plugin.open());
    bool isTaken = false;
    TSM_TRY(askSampleSize(plugin, true, findings, isTaken));
    if (!isTaken)
        return nullptr;
    CRenderPlan plan;
    CChannels singles;
    CChannels doubles;
    TSM_TRY(plan.render(plugin, findings, singles));
    plan.setUp.isDouble = true;
    TSM_TRY(plan.render(plugin, findings, doubles));
    // Rounding may have grown on its way.
    expectSameSound(doubles, singles, "the sound in 32-bit samples, against 64-bit ones", 1e-4,
                    findings);
    return nullptr;
}

CError* checkInPlace(CPlugin& plugin, CFindings& findings)
{
    TSM_TRY(plugin.open());
    for (const std::vector<int>& sizes : {std::vector<int>{512}, {64, 1, 333, 0}}) {
        CRenderPlan plan;
        CChannels expected;
        CChannels came;
        plan.sizes = sizes;
        TSM_TRY(plan.render(plugin, findings, expected));
        plan.isInPlace = true;
        TSM_TRY(plan.render(plugin, findings, came));
        expectSameSound(expected, came, "the sound with one set of buffers for both ways",
                        kTolerance, findings);
    }
    return nullptr;
}

bool isZero(const std::vector<double>& samples)
{
    return std::ranges::all_of(samples, [](double sample) { return sample == 0.0; });
}

/// The input's flags change nothing, and the output's are true.
CError* checkSilence(CPlugin& plugin, CFindings& findings)
{
    TSM_TRY(plugin.open());
    constexpr int kBlock = 512;
    constexpr int kBlocks = 40;
    CChannels sounds[2];
    for (const bool hasFlags : {false, true}) {
        CLivePlugin live;
        TSM_TRY(live.start(plugin, CRenderPlan().setUp, findings));
        CBlockRun& run = live.getRun();
        const CChannels noise = makeNoise(run.getInputCount(), kBlock, 0.25);
        const CChannels silence = makeSilence(run.getInputCount(), kBlock);
        for (int i = 0; i < kBlocks; ++i) {
            const bool isSilent = i % 20 > 2;
            run.load(isSilent ? silence : noise, 0, kBlock);
            ProcessData& data = run.getData();
            if (hasFlags && isSilent && data.numInputs > 0)
                data.inputs[0].silenceFlags = (uint64{1} << data.inputs[0].numChannels) - 1;
            findings.expectOk("process()", run.call());
            CChannels out;
            run.collect(kBlock, out);
            for (std::size_t channel = 0; channel < out.size(); ++channel) {
                const bool isFlagged = (data.outputs[0].silenceFlags >> channel & 1) != 0;
                findings.expect(!isFlagged || isZero(out[channel]),
                                "an output channel with the silence flag", "zeros",
                                "another sound");
                sounds[hasFlags].resize(out.size());
                sounds[hasFlags][channel].insert(sounds[hasFlags][channel].end(),
                                                 out[channel].begin(), out[channel].end());
            }
        }
    }
    expectSameSound(sounds[0], sounds[1], "the sound of silence with flags, against that without",
                    kTolerance, findings);
    return nullptr;
}

/// One way of a host to give less than a plug-in has buses for.
struct CBend {
    const char* name;
    std::function<void(ProcessData&)> bend;
};

/// Bent blocks between ordinary ones: nothing breaks, and the sound goes on.
CError* checkBends(CPlugin& plugin, CFindings& findings, const std::vector<CBend>& bends)
{
    TSM_TRY(plugin.open());
    constexpr int kBlock = 256;
    CLivePlugin live;
    TSM_TRY(live.start(plugin, CRenderPlan().setUp, findings));
    CBlockRun& run = live.getRun();
    const CChannels noise = makeNoise(run.getInputCount(), kBlock, 0.25);
    CChannels out;
    for (const CBend& each : bends)
        for (int i = 0; i < 3; ++i) {
            run.process(noise, 0, kBlock, out);
            run.load(noise, 0, kBlock);
            const ProcessData whole = run.getData();
            std::vector<AudioBusBuffers> inputs(whole.inputs, whole.inputs + whole.numInputs);
            std::vector<AudioBusBuffers> outputs(whole.outputs, whole.outputs + whole.numOutputs);
            each.bend(run.getData());
            findings.expectOk("process() with " + std::string(each.name), run.call());
            run.getData() = whole;
            std::ranges::copy(inputs, whole.inputs);
            std::ranges::copy(outputs, whole.outputs);
            CChannels bent;
            run.collect(kBlock, bent);
            findings.expect(isFinite(bent), "the output with " + std::string(each.name),
                            "finite samples", "others");
        }
    run.process(noise, 0, kBlock, out);
    findings.expect(isFinite(out), "the output behind all that", "finite samples", "others");
    return nullptr;
}

CError* checkBuses(CPlugin& plugin, CFindings& findings)
{
    static Sample32* noChannels[64] = {};
    return checkBends(
        plugin, findings,
        {{"no input buses", [](ProcessData& data) { data.numInputs = 0, data.inputs = nullptr; }},
         {"no output buses",
          [](ProcessData& data) { data.numOutputs = 0, data.outputs = nullptr; }},
         {"no buses at all",
          [](ProcessData& data) {
              data.numInputs = data.numOutputs = 0;
              data.inputs = data.outputs = nullptr;
          }},
         {"the main buses alone",
          [](ProcessData& data) {
              data.numInputs = std::min(data.numInputs, 1);
              data.numOutputs = std::min(data.numOutputs, 1);
          }},
         {"side chains without channels",
          [](ProcessData& data) {
              for (int32 i = 1; i < data.numInputs; ++i)
                  data.inputs[i] = {};
          }},
         {"side chains without a list of channels",
          [](ProcessData& data) {
              for (int32 i = 1; i < data.numInputs; ++i)
                  data.inputs[i].channelBuffers32 = nullptr;
          }},
         {"side chains with null channels",
          [](ProcessData& data) {
              for (int32 i = 1; i < data.numInputs; ++i)
                  data.inputs[i].channelBuffers32 = noChannels;
          }},
         {"a main input without channels",
          [](ProcessData& data) {
              if (data.numInputs > 0)
                  data.inputs[0] = {};
          }},
         {"a main output without channels",
          [](ProcessData& data) {
              if (data.numOutputs > 0)
                  data.outputs[0] = {};
          }},
         {"a main input of null channels",
          [](ProcessData& data) {
              if (data.numInputs > 0)
                  data.inputs[0].channelBuffers32 = noChannels;
          }},
         {"a main input of one channel",
          [](ProcessData& data) {
              if (data.numInputs > 0)
                  data.inputs[0].numChannels = std::min(data.inputs[0].numChannels, 1);
          }},
         {"a main output of one channel",
          [](ProcessData& data) {
              if (data.numOutputs > 0)
                  data.outputs[0].numChannels = std::min(data.outputs[0].numChannels, 1);
          }},
         {"no samples", [](ProcessData& data) { data.numSamples = 0; }},
         {"no samples and null channels", [](ProcessData& data) {
              data.numSamples = 0;
              for (int32 i = 0; i < data.numInputs; ++i)
                  data.inputs[i] = {};
              for (int32 i = 0; i < data.numOutputs; ++i)
                  data.outputs[i] = {};
          }}});
}

CError* checkNulls(CPlugin& plugin, CFindings& findings)
{
    return checkBends(
        plugin, findings,
        {{"no parameter changes in",
          [](ProcessData& data) { data.inputParameterChanges = nullptr; }},
         {"no parameter changes out",
          [](ProcessData& data) { data.outputParameterChanges = nullptr; }},
         {"no events", [](ProcessData& data) { data.inputEvents = data.outputEvents = nullptr; }},
         {"no context", [](ProcessData& data) { data.processContext = nullptr; }},
         {"none of these", [](ProcessData& data) {
              data.inputParameterChanges = data.outputParameterChanges = nullptr;
              data.inputEvents = data.outputEvents = nullptr;
              data.processContext = nullptr;
          }}});
}

CError* checkContexts(CPlugin& plugin, CFindings& findings)
{
    constexpr double kNan = std::numeric_limits<double>::quiet_NaN();
    std::vector<CBend> bends;
    for (const double tempo : {0.0, -1.0, 1e-300, 1e300, kNan})
        bends.push_back({"an odd tempo", [tempo](ProcessData& data) {
                             data.processContext->state |= ProcessContext::kTempoValid;
                             data.processContext->tempo = tempo;
                             data.processContext->sampleRate = tempo;
                             data.processContext->timeSigDenominator = 0;
                             data.processContext->projectTimeMusic = tempo;
                         }});
    for (const int64 place :
         {int64{-1}, std::numeric_limits<int64>::min(), std::numeric_limits<int64>::max()})
        bends.push_back({"an odd position", [place](ProcessData& data) {
                             data.processContext->projectTimeSamples = place;
                             data.processContext->continousTimeSamples = place;
                         }});
    bends.push_back(
        {"a transport that stands", [](ProcessData& data) { *data.processContext = {}; }});
    return checkBends(plugin, findings, bends);
}

CError* checkEvents(CPlugin& plugin, CFindings& findings)
{
    TSM_TRY(plugin.open());
    CLivePlugin live;
    TSM_TRY(live.start(plugin, CRenderPlan().setUp, findings));
    CBlockRun& run = live.getRun();
    const CChannels noise = makeNoise(run.getInputCount(), 256, 0.25);
    CChannels out;
    for (int type = 0; type < 12; ++type)
        for (const int32 offset : {0, 255, 256, -1, std::numeric_limits<int32>::max()})
            for (const int32 bus : {0, 7, -1}) {
                Event event = {};
                event.type = static_cast<uint16>(type);
                event.sampleOffset = offset;
                event.busIndex = bus;
                run.getInputEvents().addEvent(event);
                run.process(noise, 0, 256, out);
            }
    findings.expect(isFinite(out), "the output with events", "finite samples", "others");
    return nullptr;
}

/// The mode that a host bounces in, and a change of it from block to block.
CError* checkOffline(CPlugin& plugin, CFindings& findings)
{
    TSM_TRY(plugin.open());
    CRenderPlan plan;
    plan.setUp.isOffline = true;
    CChannels out;
    CChannels again;
    TSM_TRY(plan.render(plugin, findings, out));
    TSM_TRY(plan.render(plugin, findings, again));
    findings.expect(isFinite(out), "the output in offline mode", "finite samples", "others");
    expectSameSound(out, again, "the sound of a second bounce", kTolerance, findings);
    CLivePlugin live;
    TSM_TRY(live.start(plugin, CRenderPlan().setUp, findings));
    CBlockRun& run = live.getRun();
    const CChannels noise = makeNoise(run.getInputCount(), 512, 0.25);
    for (int i = 0; i < 30; ++i) {
        run.getData().processMode = i / 2 % 3;
        run.process(noise, 0, 512, out);
    }
    findings.expect(isFinite(out), "the output when modes change", "finite samples", "others");
    return nullptr;
}

constexpr CConformCase kCases[] = {
    {"process.blocks-32", "32-bit blocks of all sizes sound alike and stay in their bounds",
     checkBlocks32},
    {"process.blocks-64", "64-bit blocks of all sizes sound alike and stay in their bounds",
     checkBlocks64},
    {"process.sample-sizes", "32-bit and 64-bit samples sound alike", checkSampleSizes},
    {"process.in-place", "outputs that are the inputs' buffers", checkInPlace},
    {"process.silence", "silence flags change nothing and are true", checkSilence},
    {"process.buses", "buses and channels that the host leaves out", checkBuses},
    {"process.null", "pointers that the host leaves out", checkNulls},
    {"process.context", "a transport with odd values", checkContexts},
    {"process.events", "events of all kinds, on buses that don't exist", checkEvents},
    {"process.offline", "offline mode, and modes that change", checkOffline},
};

} // namespace

std::span<const CConformCase> processCases()
{
    return kCases;
}

} // namespace tsm
