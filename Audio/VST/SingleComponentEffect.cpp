#include "Audio/VST/SingleComponentEffect.h"

namespace Steinberg::Vst {

tresult SingleComponentEffect::queryInterface(const TUID wanted, void** obj)
{
    if (obj && isSameId(wanted, IConnectionPoint::iid)) {
        *obj = nullptr;
        return kNoInterface;
    }
    if (giveInterface<IComponent>(wanted, obj, this) ||
        giveInterface<IAudioProcessor>(wanted, obj, this))
        return kResultOk;
    return EditController::queryInterface(wanted, obj);
}

tresult SingleComponentEffect::initialize(FUnknown* context)
{
    return EditController::initialize(context);
}

tresult SingleComponentEffect::terminate()
{
    removeAllBusses();
    return EditController::terminate();
}

tresult SingleComponentEffect::getControllerClassId(TUID)
{
    return kNotImplemented;
}

tresult SingleComponentEffect::setIoMode(IoMode)
{
    return kNotImplemented;
}

tresult SingleComponentEffect::getRoutingInfo(RoutingInfo&, RoutingInfo&)
{
    return kNotImplemented;
}

int32 SingleComponentEffect::getBusCount(MediaType type, BusDirection dir)
{
    const BusList* list = getBusList(type, dir);
    return list ? list->getCount() : 0;
}

tresult SingleComponentEffect::getBusInfo(MediaType type, BusDirection dir, int32 index,
                                          BusInfo& info)
{
    const BusList* list = getBusList(type, dir);
    return list ? list->getInfo(index, info) : kInvalidArgument;
}

tresult SingleComponentEffect::activateBus(MediaType type, BusDirection dir, int32 index,
                                           TBool state)
{
    const BusList* list = getBusList(type, dir);
    Bus* const bus = list ? list->at(index) : nullptr;
    if (!bus)
        return kInvalidArgument;
    bus->setActive(state);
    return kResultTrue;
}

tresult SingleComponentEffect::setActive(TBool)
{
    return kResultOk;
}

tresult SingleComponentEffect::setState(IBStream*)
{
    return kNotImplemented;
}

tresult SingleComponentEffect::getState(IBStream*)
{
    return kNotImplemented;
}

tresult SingleComponentEffect::setBusArrangements(SpeakerArrangement* inputs, int32 numIns,
                                                  SpeakerArrangement* outputs, int32 numOuts)
{
    if (numIns < 0 || numOuts < 0 || (numIns > 0 && !inputs) || (numOuts > 0 && !outputs))
        return kInvalidArgument;
    if (numIns > audioInputs.getCount() || numOuts > audioOutputs.getCount())
        return kResultFalse;
    for (int32 i = 0; i < numIns; ++i)
        getAudioInput(i)->setArrangement(inputs[i]);
    for (int32 i = 0; i < numOuts; ++i)
        getAudioOutput(i)->setArrangement(outputs[i]);
    return kResultTrue;
}

tresult SingleComponentEffect::getBusArrangement(BusDirection dir, int32 index,
                                                 SpeakerArrangement& arr)
{
    const AudioBus* bus = dir == kInput ? getAudioInput(index) : getAudioOutput(index);
    if (!bus)
        return kInvalidArgument;
    arr = bus->getArrangement();
    return kResultTrue;
}

tresult SingleComponentEffect::canProcessSampleSize(int32 symbolicSampleSize)
{
    return symbolicSampleSize == kSample32 ? kResultTrue : kResultFalse;
}

uint32 SingleComponentEffect::getLatencySamples()
{
    return 0;
}

tresult SingleComponentEffect::setupProcessing(ProcessSetup& setup)
{
    if (canProcessSampleSize(setup.symbolicSampleSize) != kResultTrue)
        return kResultFalse;
    processSetup = setup;
    return kResultOk;
}

tresult SingleComponentEffect::setProcessing(TBool)
{
    return kNotImplemented;
}

tresult SingleComponentEffect::process(ProcessData&)
{
    return kNotImplemented;
}

uint32 SingleComponentEffect::getTailSamples()
{
    return kNoTail;
}

AudioBus* SingleComponentEffect::addAudioInput(const TChar* name, SpeakerArrangement arr,
                                               BusType type, uint32 flags)
{
    return audioInputs.add(std::make_unique<AudioBus>(name, type, flags, arr));
}

AudioBus* SingleComponentEffect::addAudioOutput(const TChar* name, SpeakerArrangement arr,
                                                BusType type, uint32 flags)
{
    return audioOutputs.add(std::make_unique<AudioBus>(name, type, flags, arr));
}

EventBus* SingleComponentEffect::addEventInput(const TChar* name, int32 channels, BusType type,
                                               uint32 flags)
{
    return eventInputs.add(std::make_unique<EventBus>(name, type, flags, channels));
}

EventBus* SingleComponentEffect::addEventOutput(const TChar* name, int32 channels, BusType type,
                                                uint32 flags)
{
    return eventOutputs.add(std::make_unique<EventBus>(name, type, flags, channels));
}

void SingleComponentEffect::removeAudioBusses()
{
    audioInputs.removeAll();
    audioOutputs.removeAll();
}

void SingleComponentEffect::removeEventBusses()
{
    eventInputs.removeAll();
    eventOutputs.removeAll();
}

void SingleComponentEffect::removeAllBusses()
{
    removeAudioBusses();
    removeEventBusses();
}

AudioBus* SingleComponentEffect::getAudioInput(int32 index) const
{
    return static_cast<AudioBus*>(audioInputs.at(index));
}

AudioBus* SingleComponentEffect::getAudioOutput(int32 index) const
{
    return static_cast<AudioBus*>(audioOutputs.at(index));
}

BusList* SingleComponentEffect::getBusList(MediaType type, BusDirection dir)
{
    if (type == kAudio)
        return dir == kInput ? &audioInputs : &audioOutputs;
    if (type == kEvent)
        return dir == kInput ? &eventInputs : &eventOutputs;
    return nullptr;
}

} // namespace Steinberg::Vst
