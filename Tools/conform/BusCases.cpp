#include "Tools/conform/CBlockRun.h"
#include "Tools/conform/CPlugin.h"
#include "Tools/conform/ConformCases.h"

#include "Audio/VST/Interfaces/Speakers.h"

#include <algorithm>
#include <climits>
#include <cstring>

namespace tsm {

using namespace Steinberg;
using namespace Steinberg::Vst;

namespace {

constexpr int32 kMaxBuses = 256;

struct CDirection {
    MediaType type;
    BusDirection dir;
    const char* name;
};
constexpr CDirection kDirections[] = {{kAudio, kInput, "audio input"},
                                      {kAudio, kOutput, "audio output"},
                                      {kEvent, kInput, "event input"},
                                      {kEvent, kOutput, "event output"}};

/// Asked twice over different bytes: what differs is what the plug-in left out.
void checkWholeInfo(IComponent& component, const CDirection& from, int32 index,
                    const std::string& name, CFindings& findings)
{
    BusInfo infos[2];
    std::memset(&infos[0], 0x00, sizeof infos[0]);
    std::memset(&infos[1], 0xff, sizeof infos[1]);
    for (BusInfo& info : infos)
        findings.expectOk("getBusInfo() of " + name,
                          component.getBusInfo(from.type, from.dir, index, info));
    findings.expect(std::memcmp(&infos[0], &infos[1], sizeof infos[0]) == 0,
                    "getBusInfo() of " + name,
                    "all bytes of the structure written, since hosts "
                    "compare them",
                    "some left as they were");
}

void checkInfo(IComponent& component, const CDirection& from, int32 index, CFindings& findings)
{
    const std::string name = std::string(from.name) + " " + std::to_string(index);
    checkWholeInfo(component, from, index, name, findings);
    BusInfo info = {};
    component.getBusInfo(from.type, from.dir, index, info);
    findings.expectEqual(name + ", media type", from.type, info.mediaType);
    findings.expectEqual(name + ", direction", from.dir, info.direction);
    findings.expect(info.channelCount >= 0 && info.channelCount <= 64, name + ", channels",
                    "0 to 64", std::to_string(info.channelCount));
    findings.expect(info.busType == kMain || info.busType == kAux, name + ", type", "0 or 1",
                    std::to_string(info.busType));
    const auto* const end = std::find(std::begin(info.name), std::end(info.name), 0);
    findings.expect(end != std::end(info.name), name + ", name", "a text that ends", "no end");
    findings.expect(info.name[0] != 0, name + ", name", "a name", "an empty text");
    BusInfo former = info;
    if (index > 0)
        component.getBusInfo(from.type, from.dir, index - 1, former);
    findings.expect(former.busType <= info.busType, name, "main buses before the others",
                    "a main bus behind another");
}

/// Channels by the structure and by the arrangement.
void checkArrangements(const CVstInstance& instance, const std::string& when, CFindings& findings)
{
    for (const BusDirection dir : {kInput, kOutput})
        for (int32 i = 0; i < instance.getComponent().getBusCount(kAudio, dir); ++i) {
            const std::string name =
                std::string(dir == kInput ? "input " : "output ") + std::to_string(i) + when;
            BusInfo info = {};
            SpeakerArrangement arrangement = 0;
            instance.getComponent().getBusInfo(kAudio, dir, i, info);
            findings.expectOk("getBusArrangement() of " + name,
                              instance.getProcessor().getBusArrangement(dir, i, arrangement));
            findings.expectEqual("channels of " + name + " by getBusInfo()",
                                 SpeakerArr::getChannelCount(arrangement), info.channelCount);
        }
}

CError* checkInfos(CPlugin& plugin, CFindings& findings)
{
    TSM_TRY(plugin.open());
    CVstInstance instance;
    TSM_TRY(plugin.make(instance));
    IComponent& component = instance.getComponent();
    int32 outputs = 0;
    for (const CDirection& each : kDirections) {
        const int32 count = component.getBusCount(each.type, each.dir);
        findings.expect(count >= 0 && count <= kMaxBuses, std::string(each.name) + " buses",
                        "0 to 256", std::to_string(count));
        for (int32 i = 0; i < std::min(count, kMaxBuses); ++i)
            checkInfo(component, each, i, findings);
        for (const int32 index : {-1, count, INT_MAX, INT_MIN}) {
            BusInfo info = {};
            findings.expectRefused("getBusInfo() of " + std::string(each.name) + " " +
                                       std::to_string(index),
                                   component.getBusInfo(each.type, each.dir, index, info));
        }
        outputs += each.dir == kOutput ? count : 0;
    }
    for (const int32 type : {2, -1, INT_MAX}) {
        BusInfo info = {};
        findings.expectEqual("buses of an unknown media type", 0,
                             component.getBusCount(type, kInput));
        findings.expectRefused("getBusInfo() of an unknown media type",
                               component.getBusInfo(type, kInput, 0, info));
    }
    SpeakerArrangement arrangement = 0;
    for (const int32 index : {-1, kMaxBuses, INT_MAX})
        findings.expectRefused(
            "getBusArrangement() of input " + std::to_string(index),
            instance.getProcessor().getBusArrangement(kInput, index, arrangement));
    checkArrangements(instance, "", findings);
    findings.expect(outputs > 0, "output buses", "at least one", "none");
    return nullptr;
}

/// Mono, stereo, three to eight channels, and what nobody can take.
constexpr SpeakerArrangement kWishes[] = {0x80000, 0x3, 0x7,    0x33,  0x37,  0x3f,  0x63f,
                                          0x1,     0x0, 0xffff, 0x103, 0x10b, 0x63b, ~uint64{0}};

std::string hex(SpeakerArrangement arrangement)
{
    constexpr char kDigits[] = "0123456789abcdef";
    std::string text;
    do {
        text.insert(text.begin(), kDigits[arrangement & 15]);
        arrangement >>= 4;
    } while (arrangement);
    return "0x" + text;
}

/// The present arrangements of all buses of a direction.
std::vector<SpeakerArrangement> presentOf(const CVstInstance& instance, BusDirection dir)
{
    std::vector<SpeakerArrangement> all;
    for (int32 i = 0; i < instance.getComponent().getBusCount(kAudio, dir); ++i) {
        all.push_back(0);
        instance.getProcessor().getBusArrangement(dir, i, all.back());
    }
    return all;
}

bool request(const CVstInstance& instance, std::vector<SpeakerArrangement> inputs,
             std::vector<SpeakerArrangement> outputs)
{
    return instance.getProcessor().setBusArrangements(
               inputs.data(), static_cast<int32>(inputs.size()), outputs.data(),
               static_cast<int32>(outputs.size())) == kResultTrue;
}

struct CWish {
    SpeakerArrangement input;
    SpeakerArrangement output;

    [[nodiscard]] std::string toText() const { return hex(input) + " to " + hex(output); }
};

/// Asks for the main buses' arrangements, the others as at present.
bool request(const CVstInstance& instance, const CWish& wish)
{
    std::vector<SpeakerArrangement> inputs = presentOf(instance, kInput);
    std::vector<SpeakerArrangement> outputs = presentOf(instance, kOutput);
    if (!inputs.empty())
        inputs[0] = wish.input;
    if (!outputs.empty())
        outputs[0] = wish.output;
    return request(instance, inputs, outputs);
}

void tryWish(const CVstInstance& instance, const CWish& wish, CFindings& findings)
{
    const bool isAccepted = request(instance, wish);
    const std::string when = " behind the request of " + wish.toText();
    checkArrangements(instance, when, findings);
    const std::vector<SpeakerArrangement> inputs = presentOf(instance, kInput);
    const std::vector<SpeakerArrangement> outputs = presentOf(instance, kOutput);
    if (isAccepted && !inputs.empty())
        findings.expect(inputs[0] == wish.input, "the input" + when + ", which was accepted",
                        hex(wish.input), hex(inputs[0]));
    if (isAccepted && !outputs.empty())
        findings.expect(outputs[0] == wish.output, "the output" + when + ", which was accepted",
                        hex(wish.output), hex(outputs[0]));
    // What a host reads back, it asks for.
    if (!isAccepted)
        findings.expect(request(instance, inputs, outputs), "what the plug-in offers" + when,
                        "accepted when asked for", "refused");
}

CError* checkRequests(CPlugin& plugin, CFindings& findings)
{
    TSM_TRY(plugin.open());
    CVstInstance instance;
    TSM_TRY(plugin.make(instance));
    const std::vector<SpeakerArrangement> inputs = presentOf(instance, kInput);
    const std::vector<SpeakerArrangement> outputs = presentOf(instance, kOutput);
    findings.expect(request(instance, inputs, outputs), "the arrangements of a new instance",
                    "accepted when asked for", "refused");
    for (const SpeakerArrangement input : kWishes)
        for (const SpeakerArrangement output : kWishes)
            tryWish(instance, {input, output}, findings);

    IAudioProcessor& processor = instance.getProcessor();
    std::vector<SpeakerArrangement> many(64, 3);
    processor.setBusArrangements(many.data(), 64, many.data(), 64);
    checkArrangements(instance, " behind the request of 64 buses", findings);
    processor.setBusArrangements(nullptr, 0, nullptr, 0);
    checkArrangements(instance, " behind the request of no buses", findings);
    findings.expectRefused("setBusArrangements() of -1 buses",
                           processor.setBusArrangements(many.data(), -1, many.data(), -1));
    checkArrangements(instance, " behind the request of -1 buses", findings);
    const CVstSetUp setUp{.channelCount = 0, .isDouble = false};
    TSM_TRY(instance.setUp(setUp));
    TSM_TRY(instance.start());
    CBlockRun run(instance, setUp, findings);
    CChannels out;
    run.processAll(makeNoise(run.getInputCount(), 2000, 0.5), {500}, out);
    return nullptr;
}

CError* checkActivation(CPlugin& plugin, CFindings& findings)
{
    TSM_TRY(plugin.open());
    CVstInstance instance;
    TSM_TRY(plugin.make(instance));
    IComponent& component = instance.getComponent();
    for (const CDirection& each : kDirections) {
        const int32 count = component.getBusCount(each.type, each.dir);
        for (int32 i = 0; i < count; ++i)
            for (const TBool state : {TBool{1}, TBool{1}, TBool{0}, TBool{0}, TBool{1}})
                findings.expectOk("activateBus() of " + std::string(each.name) + " " +
                                      std::to_string(i),
                                  component.activateBus(each.type, each.dir, i, state));
        for (const int32 index : {-1, count, INT_MAX})
            findings.expectRefused("activateBus() of " + std::string(each.name) + " " +
                                       std::to_string(index),
                                   component.activateBus(each.type, each.dir, index, 1));
    }
    findings.expectRefused("activateBus() of an unknown media type",
                           component.activateBus(2, kInput, 0, 1));
    return nullptr;
}

/// Sound through each arrangement that the plug-in takes.
CError* checkSound(CPlugin& plugin, CFindings& findings)
{
    TSM_TRY(plugin.open());
    CVstInstance instance;
    TSM_TRY(plugin.make(instance));
    std::string accepted;
    for (const SpeakerArrangement input : kWishes)
        for (const SpeakerArrangement output : kWishes) {
            const CWish wish{input, output};
            if (!request(instance, wish))
                continue;
            accepted += (accepted.empty() ? "takes " : ", ") + wish.toText();
            const CVstSetUp setUp{.channelCount = 0, .isDouble = false};
            TSM_TRY(instance.setUp(setUp));
            TSM_TRY(instance.start());
            CBlockRun run(instance, setUp, findings);
            CChannels out;
            run.processAll(makeNoise(run.getInputCount(), 3000, 0.5), {300, 512}, out);
            findings.expect(isFinite(out), "the output with " + wish.toText(), "finite samples",
                            "others");
            instance.stop();
        }
    findings.note(accepted.empty() ? "takes no arrangement" : accepted);
    return nullptr;
}

constexpr CConformCase kCases[] = {
    {"buses.info", "descriptions of all buses; indices and types that don't exist", checkInfos},
    {"buses.arrangements", "what is accepted is had; what is offered is accepted", checkRequests},
    {"buses.activation", "each bus switched on and off", checkActivation},
    {"buses.sound", "sound through each arrangement that is taken", checkSound},
};

} // namespace

std::span<const CConformCase> busCases()
{
    return kCases;
}

} // namespace tsm
