#include "Tests/Audio/VST/CTestEffect.h"

#include "Audio/VST/VstText.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <functional>
#include <memory>

namespace tsm {

using namespace Steinberg;
using namespace Steinberg::Vst;

namespace {

constexpr std::array<char, 5> kStateId{'T', 'G', 'S', 'T', '1'};
constexpr std::size_t kStateSize = kStateId.size() + sizeof(double);

ParameterInfo describe(ParamID id, const char16_t* title, int32 stepCount, double value,
                       int32 flags)
{
    ParameterInfo info = {};
    info.id = id;
    copyString128(title, info.title);
    info.stepCount = stepCount;
    info.defaultNormalizedValue = value;
    info.flags = flags;
    return info;
}

/// Says yes to any text, as many plug-ins do.
class CGainParameter : public Parameter {
public:
    CGainParameter()
        : Parameter(describe(CTestEffect::kGainId, u"Gain", 0, 1.0, ParameterInfo::kCanAutomate))
    {
    }
    bool fromString(const TChar* string, ParamValue& value) const override
    {
        ParamValue read = 0.0;
        Parameter::fromString(string, read);
        value = std::clamp(read, 0.0, 1.0);
        return true;
    }
};

/// Reads its own texts as well as numbers.
class CBypassParameter : public Parameter {
public:
    CBypassParameter()
        : Parameter(describe(CTestEffect::kBypassId, u"Bypass", 1, 0.0,
                             ParameterInfo::kCanAutomate | ParameterInfo::kIsBypass))
    {
    }
    bool fromString(const TChar* string, ParamValue& value) const override
    {
        const std::u16string_view text = viewOf(string);
        ParamValue read = text == u"On" ? 1.0 : 0.0;
        if (text != u"On" && text != u"Off" && !Parameter::fromString(string, read))
            return false;
        value = std::clamp(read, 0.0, 1.0);
        return true;
    }
};

/// Chooses the gain when it changes.
class CProgramParameter : public Parameter {
public:
    explicit CProgramParameter(std::function<void(double)> useGain)
        : Parameter(describe(CTestEffect::kProgramId, u"Program",
                             static_cast<int32>(CTestEffect::kPrograms.size()) - 1, 0.0,
                             ParameterInfo::kIsProgramChange | ParameterInfo::kIsList)),
          use(std::move(useGain))
    {
    }
    void toString(ParamValue value, String128 string) const override
    {
        copyString128(CTestEffect::kPrograms[indexOf(value)].name, string);
    }
    bool fromString(const TChar*, ParamValue&) const override { return false; }

protected:
    void changed() override { use(CTestEffect::kPrograms[indexOf(getNormalized())].gain); }

private:
    [[nodiscard]] static std::size_t indexOf(double value)
    {
        constexpr double kLast = CTestEffect::kPrograms.size() - 1;
        if (std::isnan(value))
            return 0;
        return static_cast<std::size_t>(std::lround(std::clamp(value, 0.0, 1.0) * kLast));
    }

    std::function<void(double)> use;
};

} // namespace

tresult CTestEffect::queryInterface(const TUID wanted, void** obj)
{
    if (giveInterface<IUnitInfo>(wanted, obj, this))
        return kResultOk;
    return SingleComponentEffect::queryInterface(wanted, obj);
}

tresult CTestEffect::initialize(FUnknown* context)
{
    const tresult result = SingleComponentEffect::initialize(context);
    if (result != kResultOk)
        return result;
    addAudioInput(u"Audio In", SpeakerArr::kStereo);
    addAudioOutput(u"Audio Out", SpeakerArr::kStereo);
    addAudioInput(u"Sidechain", SpeakerArr::kStereo, kAux, 0);
    addEventInput(u"MIDI In", 1);
    parameters.addParameter(std::make_unique<CGainParameter>());
    parameters.addParameter(std::make_unique<CBypassParameter>());
    parameters.addParameter(std::make_unique<CProgramParameter>(
        [this](double gain) { getParameterObject(kGainId)->setNormalized(gain); }));
    return kResultOk;
}

tresult CTestEffect::setState(IBStream* stream)
{
    std::array<char, kStateSize> bytes{};
    int32 count = 0;
    double gain = 0.0;
    if (!stream || !getIsInitialized() ||
        stream->read(bytes.data(), kStateSize, &count) != kResultOk || count != kStateSize ||
        !std::equal(kStateId.begin(), kStateId.end(), bytes.begin()))
        return kResultFalse;
    std::memcpy(&gain, bytes.data() + kStateId.size(), sizeof gain);
    if (!(gain >= 0.0 && gain <= 1.0))
        return kResultFalse;
    setAndTell(kGainId, gain);
    return kResultOk;
}

void CTestEffect::setAndTell(ParamID id, double value)
{
    // Some hosts ask for no values after a state, they rely on being told.
    if (!getParameterObject(id)->setNormalized(value))
        return;
    beginEdit(id);
    performEdit(id, value);
    endEdit(id);
}

tresult CTestEffect::getState(IBStream* stream)
{
    if (!stream || !getIsInitialized())
        return kResultFalse;
    std::array<char, kStateSize> bytes{};
    std::copy(kStateId.begin(), kStateId.end(), bytes.begin());
    const double gain = getParamNormalized(kGainId);
    std::memcpy(bytes.data() + kStateId.size(), &gain, sizeof gain);
    int32 count = 0;
    const tresult result = stream->write(bytes.data(), kStateSize, &count);
    return result == kResultOk && count == kStateSize ? kResultOk : kResultFalse;
}

tresult CTestEffect::setBusArrangements(SpeakerArrangement* inputs, int32 numIns,
                                        SpeakerArrangement* outputs, int32 numOuts)
{
    if (numIns < 1 || numOuts != 1 || !inputs || !outputs || inputs[0] != outputs[0] ||
        (inputs[0] != SpeakerArr::kMono && inputs[0] != SpeakerArr::kStereo))
        return kResultFalse;
    return SingleComponentEffect::setBusArrangements(inputs, numIns, outputs, numOuts);
}

tresult CTestEffect::canProcessSampleSize(int32 size)
{
    return size == kSample32 || size == kSample64 ? kResultTrue : kResultFalse;
}

tresult CTestEffect::setActive(TBool)
{
    delays.assign(2, {});
    delayAt = 0;
    return kResultOk;
}

tresult CTestEffect::process(ProcessData& data)
{
    if (data.numInputs < 1 || data.numOutputs < 1 || data.numSamples < 1) {
        double ignored = 0.0;
        applyPoints(data.inputParameterChanges, 0, 1, ignored);
        return kResultOk;
    }
    if (data.symbolicSampleSize == kSample64)
        processBuses<Sample64>(data);
    else
        processBuses<Sample32>(data);
    return kResultOk;
}

template <class Sample>
void CTestEffect::processBuses(ProcessData& data)
{
    const auto buffersOf = [](AudioBusBuffers& bus) {
        if constexpr (sizeof(Sample) == sizeof(Sample64))
            return bus.channelBuffers64;
        else
            return bus.channelBuffers32;
    };
    Sample** const ins = buffersOf(data.inputs[0]);
    Sample** const outs = buffersOf(data.outputs[0]);
    const int32 channelCount = std::min({data.inputs[0].numChannels, data.outputs[0].numChannels,
                                         static_cast<int32>(delays.size())});
    const auto isAbsent = [](const Sample* channel) { return !channel; };
    if (std::any_of(ins, ins + channelCount, isAbsent) ||
        std::any_of(outs, outs + channelCount, isAbsent))
        return;
    double gain = getParamNormalized(kGainId);
    for (int32 i = 0; i < data.numSamples; ++i) {
        applyPoints(data.inputParameterChanges, i, i + 1, gain);
        const bool isBypassed = getParamNormalized(kBypassId) > 0.5;
        for (int32 channel = 0; channel < channelCount; ++channel) {
            double& slot = delays[static_cast<std::size_t>(channel)][delayAt];
            const double late = slot;
            slot = static_cast<double>(ins[channel][i]) * (isBypassed ? 1.0 : gain);
            outs[channel][i] = static_cast<Sample>(late);
        }
        delayAt = (delayAt + 1) % kLatency;
    }
    data.outputs[0].silenceFlags = 0;
}

void CTestEffect::applyPoints(IParameterChanges* changes, int from, int to, double& gain)
{
    for (int32 i = 0; changes && i < changes->getParameterCount(); ++i) {
        IParamValueQueue* const queue = changes->getParameterData(i);
        for (int32 p = 0; queue && p < queue->getPointCount(); ++p) {
            int32 offset = 0;
            double value = 0.0;
            if (queue->getPoint(p, offset, value) != kResultOk || offset < from || offset >= to)
                continue;
            setParamNormalized(queue->getParameterId(), value);
            gain = getParamNormalized(kGainId);
        }
    }
}

tresult CTestEffect::getUnitInfo(int32 unitIndex, UnitInfo& info)
{
    if (unitIndex != 0)
        return kResultFalse;
    info = {kRootUnitId, kNoParentUnitId, {}, kListId};
    copyString128(u"Root", info.name);
    return kResultOk;
}

tresult CTestEffect::getProgramListInfo(int32 listIndex, ProgramListInfo& info)
{
    if (listIndex != 0)
        return kResultFalse;
    info = {kListId, {}, static_cast<int32>(kPrograms.size())};
    copyString128(u"Programs", info.name);
    return kResultOk;
}

tresult CTestEffect::getProgramName(ProgramListID listId, int32 programIndex, String128 name)
{
    if (listId != kListId || programIndex < 0 ||
        programIndex >= static_cast<int32>(kPrograms.size()))
        return kResultFalse;
    copyString128(kPrograms[static_cast<std::size_t>(programIndex)].name, name);
    return kResultOk;
}

} // namespace tsm
