#include "Audio/VST/CAudioWrapperVST3.h"

#include "Audio/CAudioExtParamList.h"
#include "Audio/CAudioParamRegistry.h"
#include "Audio/VST/CAudioWrapperVST3Parameter.h"
#include "Audio/VST/CAudioWrapperVST3ProgramParameter.h"
#include "Audio/VST/CBusRequest.h"
#include "Audio/VST/CHostChanges.h"
#include "Audio/VST/CInputStreamVST.h"
#include "Audio/VST/COutputStreamVST.h"
#include "Audio/VST/CProductModule.h"
#include "Audio/VST/CSpeakerTable.h"
#include "Audio/VST/StringVST.h"

#include <algorithm>
#include <cmath>

using namespace Steinberg;
using namespace Steinberg::Vst;
using tsm::errorContext;

namespace {

/// How a host's bus lies in memory.
tsm::CHostLayout layoutOf(const AudioBusBuffers& bus, bool isDouble)
{
    // More channels than the engine takes at all are left alone.
    return {std::clamp<int>(bus.numChannels, 0, tsm::kMaxPortChannels), isDouble, false};
}

const void* const* inputsOf(const AudioBusBuffers& bus)
{
    return reinterpret_cast<const void* const*>(bus.channelBuffers32);
}

void* const* outputsOf(const AudioBusBuffers& bus)
{
    return reinterpret_cast<void* const*>(bus.channelBuffers32);
}

/// Silences a host's outputs from the bus of that index on.
void silenceOutputs(const ProcessData& data, int firstBus)
{
    const bool isDouble = data.symbolicSampleSize == kSample64;
    for (int i = firstBus; data.outputs && i < data.numOutputs; ++i) {
        const AudioBusBuffers& bus = data.outputs[i];
        const tsm::CHostOutput output(outputsOf(bus), {bus.numChannels, isDouble, false});
        for (int channel = 0; channel < output.getChannelCount(); ++channel)
            output.silence(channel, 0, data.numSamples);
    }
}

} // namespace

FUnknown* CAudioWrapperVST3::createInstance(void*)
{
    std::shared_ptr<tsm::CApplication> application = CProductModule::shareApplication();
    if (!application)
        return nullptr;
    return static_cast<IAudioProcessor*>(new CAudioWrapperVST3(std::move(application)));
}

CAudioWrapperVST3::CAudioWrapperVST3(std::shared_ptr<tsm::CApplication> runningApplication)
    : application(std::move(runningApplication))
{
}

CAudioWrapperVST3::~CAudioWrapperVST3()
{
    endInterface();
}

tresult CAudioWrapperVST3::queryInterface(const TUID iid, void** obj)
{
    if (giveInterface<IUnitInfo>(iid, obj, this) ||
        giveInterface<ChannelContext::IInfoListener>(iid, obj, this))
        return kResultOk;
    return SingleComponentEffect::queryInterface(iid, obj);
}

// Life

tresult CAudioWrapperVST3::initialize(FUnknown* context)
{
    if (isInitialized)
        return kResultFalse;
    const tresult result = SingleComponentEffect::initialize(context);
    if (result != kResultOk)
        return result;
    if (!isEngineBuilt) {
        if (tsm::CError* error = buildEngine()) {
            // A host's scan must not meet a window.
            tsm::handleError(error);
            SingleComponentEffect::terminate();
            return kResultFalse;
        }
        isEngineBuilt = true;
    }
    addBuses();
    addParameters();
    isInitialized = true;
    return kResultOk;
}

tsm::CError* CAudioWrapperVST3::buildEngine()
{
    TSM_TRY(init());
    afterInit();
    return nullptr;
}

tresult CAudioWrapperVST3::terminate()
{
    if (!isInitialized)
        return kResultOk;
    isInitialized = false;
    {
        const tsm::CEngineGate::CSetUp setUp(gate);
        stopProcessing();
    }
    programParam = nullptr;
    extParamCount = 0;
    return SingleComponentEffect::terminate();
}

void CAudioWrapperVST3::addBuses()
{
    rebuildAudioBuses({SpeakerArr::kStereo, SpeakerArr::kStereo,
                       getSwitches().useSidechain ? SpeakerArr::kStereo : 0});
    addEventInput(u"MIDI In", 1);
}

void CAudioWrapperVST3::rebuildAudioBuses(const tsm::CBusRequest& request)
{
    removeAudioBusses();
    addAudioInput(u"Audio In", request.input);
    addAudioOutput(u"Audio Out", request.output);
    if (request.sidechain != 0)
        addAudioInput(u"Sidechain", request.sidechain, kAux, 0);
}

void CAudioWrapperVST3::addParameters()
{
    tsm::CAudioExtParamList& list = getExtParamList();
    extParamCount = list.getCount();
    for (int i = 0; i < extParamCount; ++i)
        parameters.addParameter(std::make_unique<CAudioWrapperVST3Parameter>(list[i], i));
    auto program = std::make_unique<CAudioWrapperVST3ProgramParameter>(getParamRegistry(), *this);
    programParam = program.get();
    parameters.addParameter(std::move(program));
}

// State

tresult CAudioWrapperVST3::setState(IBStream* stream)
{
    if (!stream)
        return kInvalidArgument;
    if (!isInitialized)
        return kNotInitialized;
    CInputStreamVST source(*stream);
    const bool hasFailed = tsm::handleError(loadState(source));
    const tsm::CEngineGate::CSetUp setUp(gate);
    settle();
    return hasFailed ? kResultFalse : kResultOk;
}

tresult CAudioWrapperVST3::getState(IBStream* stream)
{
    if (!stream)
        return kInvalidArgument;
    if (!isInitialized)
        return kNotInitialized;
    COutputStreamVST target(*stream);
    return tsm::handleError(saveState(target)) ? kResultFalse : kResultOk;
}

// Set-up

tresult CAudioWrapperVST3::setBusArrangements(SpeakerArrangement* inputs, int32 inputCount,
                                              SpeakerArrangement* outputs, int32 outputCount)
{
    if (inputCount < 0 || outputCount < 0 || (inputCount > 0 && !inputs) ||
        (outputCount > 0 && !outputs))
        return kInvalidArgument;
    if (!isInitialized)
        return kNotInitialized;
    if (inputCount == 0 || outputCount == 0)
        return kResultFalse;
    tsm::CBusRequest request{inputs[0], outputs[0], 0};
    if (getSwitches().useSidechain && inputCount > 1)
        request.sidechain = inputs[1];
    const bool isAccepted = request.settle(getIntChannelCount(), getSwitches().isSymmetricIO);
    const tsm::CEngineGate::CSetUp setUp(gate);
    rebuildAudioBuses(request);
    takeChannelNames(request);
    return isAccepted ? kResultOk : kResultFalse;
}

void CAudioWrapperVST3::takeChannelNames(const tsm::CBusRequest& request)
{
    tsm::CHostChannelNames names;
    tsm::CSpeakerTable::listLabels(request.input, names.main);
    tsm::CSpeakerTable::listLabels(request.sidechain, names.sidechain);
    setChannelNames(std::move(names));
    updateRouting(true, nullptr);
}

tresult CAudioWrapperVST3::canProcessSampleSize(int32 symbolicSampleSize)
{
    const bool canDo = symbolicSampleSize == kSample32 || symbolicSampleSize == kSample64;
    return canDo ? kResultOk : kResultFalse;
}

uint32 CAudioWrapperVST3::getLatencySamples()
{
    return isInitialized ? static_cast<uint32>(std::max(queryLatency(), 0)) : 0;
}

uint32 CAudioWrapperVST3::getTailSamples()
{
    return isInitialized ? static_cast<uint32>(std::max(CAudioWrapper::getTailSamples(), 0)) : 0;
}

tresult CAudioWrapperVST3::setupProcessing(ProcessSetup& setup)
{
    if (!isInitialized)
        return kNotInitialized;
    if (!std::isfinite(setup.sampleRate) || setup.sampleRate <= 0.0)
        return kInvalidArgument;
    const tsm::CEngineGate::CSetUp setUp(gate);
    stopProcessing();
    setSampleRate(setup.sampleRate);
    setOffline(setup.processMode == kOffline);
    processSetup = setup;
    startProcessing();
    return kResultOk;
}

tresult CAudioWrapperVST3::setProcessing(TBool state)
{
    if (!isInitialized)
        return kNotInitialized;
    const tsm::CEngineGate::CSetUp setUp(gate);
    if (state)
        startProcessing();
    else
        stopProcessing();
    return kResultOk;
}

// Processing

tresult CAudioWrapperVST3::process(ProcessData& data)
{
    if (!isInitialized)
        return kNotInitialized;
    const bool isKnownSize =
        data.symbolicSampleSize == kSample32 || data.symbolicSampleSize == kSample64;
    if (!isKnownSize || data.numSamples < 0)
        return kInvalidArgument;
    const tsm::CEngineGate::CBlock block(gate);
    if (!block) {
        silenceOutputs(data, 0);
        return kResultOk;
    }
    takeHostContext(data);
    takeParameterChanges(data);
    if (data.numInputs > 0 && data.numOutputs > 0 && data.inputs && data.outputs)
        processAudio(data);
    else
        processNothing(data);
    return kResultOk;
}

void CAudioWrapperVST3::takeHostContext(const ProcessData& data)
{
    setOffline(data.processMode == kOffline);
    if (data.processContext && getSwitches().useHostBPM)
        setHostBPM(data.processContext->tempo);
}

void CAudioWrapperVST3::takeParameterChanges(const ProcessData& data)
{
    if (!data.inputParameterChanges)
        return;
    // Without sound there are no places in it, and all changes are due at once.
    const bool hasSound = data.numInputs > 0 && data.numOutputs > 0;
    CHostChanges changes(*data.inputParameterChanges, extParamCount,
                         hasSound ? data.numSamples : 0);
    changes.queue(*this);
}

void CAudioWrapperVST3::takeFormat(const ProcessData& data)
{
    const bool isDouble = data.symbolicSampleSize == kSample64;
    tsm::CHostLayout sidechain{0, isDouble, false};
    setSidechainBuffers(nullptr);
    if (getSwitches().useSidechain && data.numInputs > 1 && data.inputs[1].numChannels > 0) {
        const AudioBusBuffers& bus = data.inputs[1];
        const int channelCount = std::min<int>(bus.numChannels, tsm::kMaxPortChannels);
        const std::uint64_t all = (std::uint64_t(1) << channelCount) - 1;
        if ((bus.silenceFlags & all) != all) {
            sidechain.channelCount = channelCount;
            setSidechainBuffers(inputsOf(bus));
        }
    }
    setChannelFormat(layoutOf(data.inputs[0], isDouble), sidechain);
    setOutputFormat(layoutOf(data.outputs[0], isDouble));
    if (applyFormat())
        updateRouting(true, nullptr);
}

void CAudioWrapperVST3::processAudio(const ProcessData& data)
{
    takeFormat(data);
    data.outputs[0].silenceFlags = 0;
    if (data.numSamples == 0) {
        applyEvents();
        return;
    }
    processBlock(inputsOf(data.inputs[0]), outputsOf(data.outputs[0]), data.numSamples);
    silenceOutputs(data, 1);
}

void CAudioWrapperVST3::processNothing(const ProcessData& data)
{
    silenceOutputs(data, 0);
    applyEvents();
}

void CAudioWrapperVST3::onParamEvent(const tsm::CParamEvent& event)
{
    if (CAudioWrapperVST3Parameter* param = findParameter(event.index))
        param->setNormalized(event.value);
}

CAudioWrapperVST3Parameter* CAudioWrapperVST3::findParameter(std::int32_t index) const
{
    if (index < 0 || index >= extParamCount)
        return nullptr;
    return static_cast<CAudioWrapperVST3Parameter*>(
        parameters.getParameter(static_cast<ParamID>(index)));
}

// Units and programs

tresult CAudioWrapperVST3::getUnitInfo(int32 index, UnitInfo& info)
{
    if (index != 0)
        return kResultFalse;
    info = UnitInfo{};
    info.id = kRootUnitId;
    info.parentUnitId = kNoParentUnitId;
    info.programListId = kProgramListId;
    writeText("Root", info.name);
    return kResultOk;
}

tresult CAudioWrapperVST3::getProgramListInfo(int32 index, ProgramListInfo& info)
{
    if (index != 0 || !programParam)
        return kResultFalse;
    info = ProgramListInfo{};
    info.id = kProgramListId;
    info.programCount = programParam->getProgramCount();
    writeText("Programs", info.name);
    return kResultOk;
}

tresult CAudioWrapperVST3::getProgramName(ProgramListID listId, int32 index, String128 name)
{
    if (listId != kProgramListId || !programParam || !name)
        return kResultFalse;
    return programParam->readName(index, name) ? kResultOk : kResultFalse;
}

tresult CAudioWrapperVST3::selectUnit(UnitID unit)
{
    if (unit != kRootUnitId)
        return kResultFalse;
    selectedUnit = unit;
    return kResultOk;
}

tresult CAudioWrapperVST3::getProgramInfo(ProgramListID, int32, FIDString, String128)
{
    return kResultFalse;
}

tresult CAudioWrapperVST3::hasProgramPitchNames(ProgramListID, int32)
{
    return kResultFalse;
}

tresult CAudioWrapperVST3::getProgramPitchName(ProgramListID, int32, int16, String128)
{
    return kResultFalse;
}

tresult CAudioWrapperVST3::getUnitByBus(MediaType, BusDirection, int32, int32, UnitID&)
{
    return kResultFalse;
}

tresult CAudioWrapperVST3::setUnitProgramData(int32, int32, IBStream*)
{
    return kResultFalse;
}

tresult CAudioWrapperVST3::setChannelContextInfos(IAttributeList* list)
{
    tsm::CString name;
    if (isInitialized && list && readTrackName(*list, name))
        setHostTrackName(name);
    return kResultOk;
}

bool CAudioWrapperVST3::readTrackName(IAttributeList& list, tsm::CString& name)
{
    String128 text = {};
    if (list.getString(ChannelContext::kChannelNameKey, text, sizeof text) != kResultOk)
        return false;
    name = readText(text);
    return true;
}

// From the engine to the host

void CAudioWrapperVST3::performEdit(std::int32_t index, double value)
{
    CAudioWrapperVST3Parameter* param = findParameter(index);
    if (!param)
        return;
    param->follow(value);
    if (getIsReady())
        SingleComponentEffect::performEdit(static_cast<ParamID>(index), value);
}

void CAudioWrapperVST3::beginEdit(std::int32_t index)
{
    SingleComponentEffect::beginEdit(static_cast<ParamID>(index));
}

void CAudioWrapperVST3::endEdit(std::int32_t index)
{
    SingleComponentEffect::endEdit(static_cast<ParamID>(index));
}

void CAudioWrapperVST3::onProgramChange()
{
    if (!programParam)
        return;
    const ParamValue value = programParam->follow();
    constexpr ParamID kId = CAudioWrapperVST3ProgramParameter::kId;
    SingleComponentEffect::beginEdit(kId);
    SingleComponentEffect::performEdit(kId, value);
    SingleComponentEffect::endEdit(kId);
    if (const IPtr<IUnitHandler> units = queryAs<IUnitHandler>(getComponentHandler()))
        units->notifyProgramListChange(kProgramListId, kAllProgramInvalid);
}
