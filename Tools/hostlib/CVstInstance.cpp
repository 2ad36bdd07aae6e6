#include "Tools/hostlib/CVstInstance.h"

#include "Audio/VST/Interfaces/Speakers.h"
#include "Core/CText.h"
#include "Tools/hostlib/CMemoryStream.h"

#include <algorithm>
#include <climits>
#include <vector>

namespace tsm {

using namespace Steinberg;
using namespace Steinberg::Vst;

namespace {

SpeakerArrangement arrangementOf(int channelCount)
{
    return channelCount == 1 ? SpeakerArr::kMono : (SpeakerArrangement{1} << channelCount) - 1;
}

/// The main bus gets the channels wanted, the others keep theirs.
std::vector<SpeakerArrangement> arrangementsOf(CVstInstance& instance, BusDirection dir,
                                               int channelCount)
{
    constexpr int32 kMaxBuses = 256;
    const int32 count = std::clamp(instance.getComponent().getBusCount(kAudio, dir), 0, kMaxBuses);
    std::vector<SpeakerArrangement> arrangements(static_cast<std::size_t>(count));
    for (int32 i = 0; i < count; ++i)
        instance.getProcessor().getBusArrangement(dir, i,
                                                  arrangements[static_cast<std::size_t>(i)]);
    if (count > 0)
        arrangements[0] = arrangementOf(channelCount);
    return arrangements;
}

} // namespace

CVstInstance::~CVstInstance()
{
    stop();
    if (controller)
        controller->setComponentHandler(nullptr);
    disconnect();
    if (controller && hasOwnController)
        controller->terminate();
    if (component)
        component->terminate();
}

CError* CVstInstance::create(const CVstBundle& bundle, const CVstClass& effect, FUnknown* context)
{
    name = effect.name;
    TSM_TRY(makeComponent(bundle, effect, context));
    TSM_TRY(makeController(bundle, context));
    units = queryAs<IUnitInfo>(controller.get());
    connect();
    if (controller->setComponentHandler(handler.get()) != kResultOk)
        TSM_FAIL("the controller of '%1' takes no handler", name);
    if (!hasOwnController)
        return nullptr;
    std::string state;
    TSM_TRY(getState(state));
    const auto stream = IPtr<CMemoryStream>::owned(new CMemoryStream(std::move(state)));
    controller->setComponentState(stream.get());
    return nullptr;
}

CError* CVstInstance::makeComponent(const CVstBundle& bundle, const CVstClass& effect,
                                    FUnknown* context)
{
    void* made = nullptr;
    if (bundle.getFactory().createInstance(effect.id, IComponent::iid, &made) != kResultOk || !made)
        TSM_FAIL("the factory makes no component of '%1'", name);
    auto fresh = IPtr<IComponent>::owned(static_cast<IComponent*>(made));
    if (fresh->initialize(context) != kResultOk)
        TSM_FAIL("'%1' doesn't initialise", name);
    component = std::move(fresh);
    processor = queryAs<IAudioProcessor>(component.get());
    if (!processor)
        TSM_FAIL("'%1' doesn't process sound", name);
    return nullptr;
}

CError* CVstInstance::makeController(const CVstBundle& bundle, FUnknown* context)
{
    controller = queryAs<IEditController>(component.get());
    if (controller)
        return nullptr;
    TUID id = {};
    void* made = nullptr;
    if (component->getControllerClassId(id) != kResultOk ||
        bundle.getFactory().createInstance(id, IEditController::iid, &made) != kResultOk || !made)
        TSM_FAIL("'%1' has no controller", name);
    auto fresh = IPtr<IEditController>::owned(static_cast<IEditController*>(made));
    if (fresh->initialize(context) != kResultOk)
        TSM_FAIL("the controller of '%1' doesn't initialise", name);
    controller = std::move(fresh);
    hasOwnController = true;
    return nullptr;
}

void CVstInstance::connect()
{
    componentPoint = queryAs<IConnectionPoint>(component.get());
    controllerPoint = queryAs<IConnectionPoint>(controller.get());
    if (!hasOwnController || !componentPoint || !controllerPoint)
        return;
    componentPoint->connect(controllerPoint.get());
    controllerPoint->connect(componentPoint.get());
}

void CVstInstance::disconnect()
{
    if (hasOwnController && componentPoint && controllerPoint) {
        componentPoint->disconnect(controllerPoint.get());
        controllerPoint->disconnect(componentPoint.get());
    }
    componentPoint.reset();
    controllerPoint.reset();
}

CError* CVstInstance::setUp(const CVstSetUp& wanted)
{
    const int32 sampleSize = wanted.isDouble ? kSample64 : kSample32;
    if (processor->canProcessSampleSize(sampleSize) != kResultTrue)
        TSM_FAIL("'%1' takes no %2-bit samples", name, wanted.isDouble ? "64" : "32");
    if (wanted.channelCount > 0)
        TSM_TRY(arrange(wanted.channelCount));
    activateBuses();
    ProcessSetup setup{wanted.isOffline ? kOffline : kRealtime, sampleSize, wanted.maxBlock,
                       wanted.rate};
    if (processor->setupProcessing(setup) != kResultOk)
        TSM_FAIL("'%1' refuses the set-up for processing", name);
    rate = wanted.rate;
    return nullptr;
}

CError* CVstInstance::arrange(int channelCount)
{
    std::vector<SpeakerArrangement> inputs = arrangementsOf(*this, kInput, channelCount);
    std::vector<SpeakerArrangement> outputs = arrangementsOf(*this, kOutput, channelCount);
    // What counts is what the buses are afterwards, not the answer.
    processor->setBusArrangements(inputs.data(), static_cast<int32>(inputs.size()), outputs.data(),
                                  static_cast<int32>(outputs.size()));
    TSM_TRY(checkChannels(kInput, channelCount));
    return checkChannels(kOutput, channelCount);
}

CError* CVstInstance::checkChannels(BusDirection dir, int channelCount) const
{
    BusInfo info = {};
    if (component->getBusInfo(kAudio, dir, 0, info) != kResultOk ||
        info.channelCount != channelCount)
        TSM_FAIL("'%1' doesn't take %2 channels", name, toString(channelCount));
    return nullptr;
}

void CVstInstance::activateBuses()
{
    for (const MediaType type : {kAudio, kEvent})
        for (const BusDirection dir : {kInput, kOutput})
            for (int32 i = 0; i < component->getBusCount(type, dir); ++i) {
                BusInfo info = {};
                if (component->getBusInfo(type, dir, i, info) == kResultOk)
                    component->activateBus(type, dir, i,
                                           (info.flags & BusInfo::kDefaultActive) != 0);
            }
}

CError* CVstInstance::start()
{
    if (component->setActive(1) != kResultOk)
        TSM_FAIL("'%1' doesn't become active", name);
    isStarted = true;
    const tresult result = processor->setProcessing(1);
    if (result != kResultOk && result != kNotImplemented)
        TSM_FAIL("'%1' doesn't begin to process", name);
    return nullptr;
}

void CVstInstance::stop()
{
    if (!isStarted)
        return;
    processor->setProcessing(0);
    component->setActive(0);
    isStarted = false;
}

int CVstInstance::getLatency() const
{
    return static_cast<int>(std::min<uint32>(processor->getLatencySamples(), INT_MAX));
}

std::int64_t CVstInstance::getTail() const
{
    constexpr double kEndlessSeconds = 10.0;
    const uint32 tail = processor->getTailSamples();
    return tail == kInfiniteTail ? static_cast<std::int64_t>(kEndlessSeconds * rate) : tail;
}

CError* CVstInstance::getState(std::string& bytes) const
{
    const auto stream = IPtr<CMemoryStream>::owned(new CMemoryStream);
    if (component->getState(stream.get()) != kResultOk)
        TSM_FAIL("'%1' gives no state", name);
    bytes = stream->getBytes();
    return nullptr;
}

CError* CVstInstance::setState(const std::string& bytes)
{
    const auto stream = IPtr<CMemoryStream>::owned(new CMemoryStream(bytes));
    const tresult result = component->setState(stream.get());
    if (result != kResultOk && result != kNotImplemented)
        TSM_FAIL("'%1' refuses the state", name);
    stream->rewind();
    controller->setComponentState(stream.get());
    return nullptr;
}

} // namespace tsm
