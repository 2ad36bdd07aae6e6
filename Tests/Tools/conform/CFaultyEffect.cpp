#include "Tests/Tools/conform/CFaultyEffect.h"

#include "Audio/VST/CPluginView.h"
#include "Audio/VST/VstText.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdlib>
#include <cstring>
#include <limits>
#include <new>
#include <string>

#include <fcntl.h>
#include <unistd.h>
#include <xmmintrin.h>

namespace tsm {

using namespace Steinberg;
using namespace Steinberg::Vst;

namespace {

bool is(EFault wanted)
{
    return CFaultyEffect::has(wanted);
}

std::atomic<int> livingCount = 0;     // initialised instances
std::atomic<int> processCount = 0;    // calls at the same time
std::atomic<unsigned> stateCount = 0; // instances that were given a state

/// "FAULT", then gain and bypass.
struct CState {
    char id[8] = {'F', 'A', 'U', 'L', 'T', '1', 0, 0};
    double gain = 0.0;
    double bypass = 0.0;

    [[nodiscard]] bool hasId() const { return std::memcmp(id, CState().id, sizeof id) == 0; }
    [[nodiscard]] bool isGood() const
    {
        return hasId() && gain >= 0.0 && gain <= 1.0 && bypass >= 0.0 && bypass <= 1.0;
    }
};

/// As many bytes as there are, in as many calls as it takes.
bool readAll(IBStream& stream, CState& state)
{
    auto* const bytes = reinterpret_cast<char*>(&state);
    for (int32 done = 0; done < static_cast<int32>(sizeof state);) {
        int32 count = 0;
        if (stream.read(bytes + done, static_cast<int32>(sizeof state) - done, &count) !=
                kResultOk ||
            count <= 0)
            return false;
        done += count;
    }
    return true;
}

} // namespace

CFaultyEffect::~CFaultyEffect()
{
    if (is(EFault::NeedsTerminate) && getIsInitialized())
        std::abort();
    CFaultyEffect::terminate();
    ::operator delete(scratch);
}

void CFaultyEffect::setFaults(std::string_view names)
{
    faults.reset();
    for (const CFaultRow& row : kFaults) {
        const std::string name = " " + std::string(row.name) + " ";
        if ((" " + std::string(names) + " ").find(name) != std::string::npos)
            faults.set(static_cast<std::size_t>(row.fault));
    }
}

bool CFaultyEffect::has(EFault fault)
{
    return faults.test(static_cast<std::size_t>(fault));
}

tresult CFaultyEffect::queryInterface(const TUID wanted, void** obj)
{
    const tresult result = CTestEffect::queryInterface(wanted, obj);
    if (result != kResultOk)
        return result;
    if (is(EFault::ReferenceKept) && isSameId(wanted, IUnitInfo::iid))
        addRef();
    if (is(EFault::TwoIdentities) && isSameId(wanted, FUnknown::iid)) {
        isSecondQuery = !isSecondQuery;
        if (isSecondQuery)
            *obj = static_cast<IUnitInfo*>(this);
    }
    return result;
}

tresult CFaultyEffect::initialize(FUnknown* context)
{
    constexpr int kFew = 6;
    if ((is(EFault::NeedsContext) && !context) || (is(EFault::FewInstances) && livingCount >= kFew))
        return kInternalError;
    const tresult result = CTestEffect::initialize(context);
    if (result != kResultOk && is(EFault::InitializedTwice))
        addEventInput(u"Another", 1);
    if (result != kResultOk)
        return result;
    ++livingCount;
    if (is(EFault::MemoryLeak))
        static_cast<void>(::strdup("what nobody gives back"));
    if (is(EFault::DescriptorLeak))
        static_cast<void>(::open("/dev/null", O_RDONLY | O_CLOEXEC));
    return kResultOk;
}

tresult CFaultyEffect::terminate()
{
    if (getIsInitialized())
        --livingCount;
    return CTestEffect::terminate();
}

tresult CFaultyEffect::setState(IBStream* stream)
{
    CState state;
    if (!stream || !getIsInitialized() || !readAll(*stream, state))
        return kResultFalse;
    if (is(EFault::CrashOnDamage) && !state.hasId())
        std::abort();
    if (!state.isGood())
        return kResultFalse;
    isOdd = ++stateCount % 2 != 0;
    if (is(EFault::StateLost))
        return kResultOk;
    getParameterObject(kGainId)->setNormalized(state.gain);
    getParameterObject(kBypassId)->setNormalized(state.bypass);
    return kResultOk;
}

tresult CFaultyEffect::getState(IBStream* stream)
{
    if (!stream || !getIsInitialized())
        return kResultFalse;
    CState state;
    state.gain = getParamNormalized(kGainId);
    state.bypass = getParamNormalized(kBypassId);
    int32 count = 0;
    const tresult result = stream->write(&state, sizeof state, &count);
    const bool isWhole = result == kResultOk && count == static_cast<int32>(sizeof state);
    return isWhole || is(EFault::StateWrittenInPart) ? kResultOk : kResultFalse;
}

tresult CFaultyEffect::getBusInfo(MediaType type, BusDirection dir, int32 index, BusInfo& bus)
{
    if (is(EFault::NeedsInitialize) && !getIsInitialized())
        std::abort();
    const tresult result = CTestEffect::getBusInfo(type, dir, index, bus);
    // The side chain, through which no sound goes.
    if (result == kResultOk && is(EFault::BusOfOtherSize) && type == kAudio && index == 1)
        ++bus.channelCount;
    return result;
}

tresult CFaultyEffect::setBusArrangements(SpeakerArrangement* inputs, int32 numIns,
                                          SpeakerArrangement* outputs, int32 numOuts)
{
    while (is(EFault::HangInArrangements) && numIns > 3)
        usleep(1000);
    return CTestEffect::setBusArrangements(inputs, numIns, outputs, numOuts);
}

tresult CFaultyEffect::activateBus(MediaType type, BusDirection dir, int32 index, TBool state)
{
    const bool isRefused = is(EFault::BusFixed) && index == 1;
    return isRefused ? kResultFalse : CTestEffect::activateBus(type, dir, index, state);
}

tresult CFaultyEffect::setupProcessing(ProcessSetup& setup)
{
    if (is(EFault::NeedsGoodRate) && !(setup.sampleRate > 0.0))
        std::abort();
    isRateBroken = is(EFault::NeedsWholeRate) && setup.sampleRate != std::floor(setup.sampleRate);
    return CTestEffect::setupProcessing(setup);
}

uint32 CFaultyEffect::getLatencySamples()
{
    return kLatency + (is(EFault::LatencyOther) ? 8 : 0);
}

tresult CFaultyEffect::setProcessing(TBool state)
{
    if (is(EFault::CrashOffMainThread) && std::this_thread::get_id() != mainThread)
        std::abort();
    isSwitchedOn = isSwitchedOn || state != 0;
    return CTestEffect::setProcessing(state);
}

tresult CFaultyEffect::process(ProcessData& data)
{
    abortOn(data);
    if (is(EFault::FlushLost) && data.numSamples == 0)
        return kResultOk;
    if (++processCount > 1 && is(EFault::OneAtATime))
        std::abort();
    audioThread = std::this_thread::get_id();
    if (is(EFault::OneAtATime) || is(EFault::CrashInOverlap))
        std::this_thread::yield(); // so that others come by
    beforeProcess(data);
    const tresult result = CTestEffect::process(data);
    if (data.numInputs > 0 && data.numOutputs > 0 && data.numSamples > 0) {
        if (data.symbolicSampleSize == kSample64)
            spoil(data, data.inputs[0].channelBuffers64, data.outputs[0].channelBuffers64);
        else
            spoil(data, data.inputs[0].channelBuffers32, data.outputs[0].channelBuffers32);
    }
    position += data.numSamples;
    audioThread = std::thread::id();
    --processCount;
    return result;
}

/// What a host may do and this plug-in can't bear.
void CFaultyEffect::abortOn(const ProcessData& data) const
{
    bool isBad = is(EFault::NeedsChannels) && data.numInputs > 1 &&
                 data.inputs[1].numChannels > 0 && !data.inputs[1].channelBuffers32;
    isBad = isBad || (is(EFault::NeedsTempo) && data.processContext &&
                      std::isnan(data.processContext->tempo));
    isBad = isBad || (is(EFault::NeedsTransport) && !data.processContext);
    Event event = {};
    if (is(EFault::NeedsBusOfEvent) && data.inputEvents &&
        data.inputEvents->getEvent(0, event) == kResultOk)
        isBad = isBad || event.busIndex != 0;
    if (isBad)
        std::abort();
}

void CFaultyEffect::beforeProcess(ProcessData& data)
{
    if (is(EFault::AllocationInProcess) && data.numSamples > 0) {
        // By the module's own C++ runtime.
        ::operator delete(scratch);
        scratch = ::operator new(static_cast<std::size_t>(data.numSamples));
    }
    if (is(EFault::ModesChanged))
        _mm_setcsr(_mm_getcsr() | 0x8040); // flush to zero, denormals are zero
    if (is(EFault::LateAutomation))
        automateLate(data);
    if (is(EFault::OddPointTaken))
        takeOddPoints(data);
    if (is(EFault::ClearsOutputFirst) && data.numInputs > 0 && data.numOutputs > 0 &&
        data.symbolicSampleSize == kSample32)
        for (int32 i = 0; i < data.outputs[0].numChannels; ++i)
            if (Sample32* const channel = data.outputs[0].channelBuffers32[i])
                std::fill_n(channel, data.numSamples, 0.0F);
}

/// All of a block's changes at its beginning.
void CFaultyEffect::automateLate(const ProcessData& data)
{
    IParameterChanges* const changes = data.inputParameterChanges;
    for (int32 i = 0; changes && i < changes->getParameterCount(); ++i) {
        IParamValueQueue* const queue = changes->getParameterData(i);
        int32 offset = 0;
        double value = 0.0;
        for (int32 p = 0; queue && p < queue->getPointCount(); ++p)
            if (queue->getPoint(p, offset, value) == kResultOk)
                setParamNormalized(queue->getParameterId(), value);
    }
}

/// Keeps a value beyond the range.
void CFaultyEffect::takeOddPoints(const ProcessData& data)
{
    IParameterChanges* const changes = data.inputParameterChanges;
    int32 offset = 0;
    double value = 0.0;
    for (int32 i = 0; changes && i < changes->getParameterCount(); ++i)
        if (IParamValueQueue* const queue = changes->getParameterData(i))
            if (queue->getPoint(0, offset, value) == kResultOk && value > 1.0)
                oddPoint = value;
}

template <class Sample>
void CFaultyEffect::spoil(ProcessData& data, Sample** ins, Sample** outs)
{
    const int32 channelCount = std::min(data.inputs[0].numChannels, data.outputs[0].numChannels);
    for (int32 channel = 0; channel < channelCount; ++channel) {
        const Sample* const in = ins ? ins[channel] : nullptr;
        Sample* const out = outs ? outs[channel] : nullptr;
        if (!in || !out)
            continue;
        const auto isLoud = [](Sample sample) { return std::abs(sample) > Sample(0.9); };
        const auto isNan = [](Sample sample) { return std::isnan(sample); };
        isNanThere =
            isNanThere || (is(EFault::NanStays) && std::any_of(in, in + data.numSamples, isNan));
        const bool isMono = data.inputs[0].numChannels == 1 && data.outputs[0].numChannels == 1;
        if (isNanThere || isRateBroken || (is(EFault::MonoBroken) && isMono) ||
            (is(EFault::OfflineBroken) && data.processMode == kOffline) ||
            (is(EFault::NanOnLoudInput) && std::any_of(in, in + data.numSamples, isLoud)))
            out[0] = std::numeric_limits<Sample>::quiet_NaN();
        constexpr bool isSingle = sizeof(Sample) == sizeof(Sample32);
        if ((is(EFault::NeedsSetProcessing) && !isSwitchedOn) ||
            (is(EFault::SizeHeard) && isSingle && data.numSamples == 7))
            std::fill_n(out, data.numSamples, Sample(0.01));
        if (is(EFault::InstancesDiffer) && isOdd)
            out[0] += Sample(0.01);
        constexpr std::int64_t kWhile = 60000;
        for (int32 i = 0; is(EFault::TailUntold) && i < data.numSamples; ++i)
            out[i] += position + i > kWhile ? Sample(0.01) : Sample(0);
        if (is(EFault::WritesBeyondDoubles) && !isSingle)
            out[data.numSamples] = Sample(0);
    }
    if (is(EFault::SilenceClaimed))
        data.outputs[0].silenceFlags = 3;
}

tresult CFaultyEffect::getParameterInfo(int32 index, ParameterInfo& info)
{
    const tresult result = CTestEffect::getParameterInfo(index, info);
    if (result == kResultOk && is(EFault::TitleWithoutEnd))
        std::ranges::fill(info.shortTitle, u'x');
    return result;
}

tresult CFaultyEffect::getParamStringByValue(ParamID id, ParamValue value, String128 string)
{
    const bool isOther = (is(EFault::StepsOfOneText) && id == kBypassId) ||
                         (is(EFault::ProgramOfOtherName) && id == kProgramId);
    return CTestEffect::getParamStringByValue(id, isOther ? 1.0 : value, string);
}

tresult CFaultyEffect::getParamValueByString(ParamID id, TChar* string, ParamValue& value)
{
    const tresult result = CTestEffect::getParamValueByString(id, string, value);
    if (result == kResultOk && id == kGainId && is(EFault::TextReadWrong))
        value *= 0.5;
    if (id == kGainId && is(EFault::TextBeyondOne) && viewOf(string) == u"1.5.5")
        value = 1.5;
    return result;
}

ParamValue CFaultyEffect::plainParamToNormalized(ParamID id, ParamValue plain)
{
    return CTestEffect::plainParamToNormalized(id, plain) *
           (is(EFault::PlainOfOtherRange) ? 100.0 : 1.0);
}

ParamValue CFaultyEffect::getParamNormalized(ParamID id)
{
    return oddPoint > 1.0 ? oddPoint.load() : CTestEffect::getParamNormalized(id);
}

IPlugView* CFaultyEffect::createView(FIDString name)
{
    const bool isEditor = name && std::strcmp(name, kEditorViewType) == 0;
    return is(EFault::ViewWithoutSize) && isEditor ? new CPluginView({}) : nullptr;
}

tresult CFaultyEffect::setParamNormalized(ParamID id, ParamValue value)
{
    const std::thread::id busy = audioThread;
    if (is(EFault::CrashInOverlap) && busy != std::thread::id() &&
        busy != std::this_thread::get_id())
        std::abort();
    if (is(EFault::LeaksAtWork))
        leaked = std::malloc(std::size_t{1} << 14);
    const tresult result = CTestEffect::setParamNormalized(id, value);
    return is(EFault::UnknownIdTaken) && getIsInitialized() ? kResultOk : result;
}

tresult CFaultyEffect::setComponentHandler(IComponentHandler* handler)
{
    if (handler && is(EFault::HandlerKept))
        handler->addRef();
    return CTestEffect::setComponentHandler(handler);
}

tresult CFaultyEffect::getProgramName(ProgramListID listId, int32 index, String128 name)
{
    const tresult result = CTestEffect::getProgramName(listId, index, name);
    if (is(EFault::ProgramBeyondCount) && listId == kListId && result != kResultOk) {
        copyString128(u"Nothing", name);
        return kResultOk;
    }
    return result;
}

} // namespace tsm
