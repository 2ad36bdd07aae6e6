#pragma once

#include "Audio/VST/AudioBus.h"
#include "Audio/VST/BusList.h"
#include "Audio/VST/EditController.h"
#include "Audio/VST/EventBus.h"
#include "Audio/VST/Interfaces/IAudioProcessor.h"

namespace Steinberg::Vst {

/// Component, processor and controller in one object. Subclasses add their buses and parameters in
/// initialize(), when this class's has given kResultOk.
///
/// It doesn't offer IConnectionPoint: a host would connect the object to itself. It doesn't offer
/// IProcessContextRequirements either: without that interface hosts give all of the context.
class SingleComponentEffect : public EditController, public IComponent, public IAudioProcessor {
public:
    SingleComponentEffect() = default;

    tresult queryInterface(const TUID wanted, void** obj) override;
    TSM_VST_REFCOUNT(EditController)

    tresult initialize(FUnknown* context) override;
    /// Removes all buses as well.
    tresult terminate() override;

    /// These three give kNotImplemented.
    tresult getControllerClassId(TUID classId) override;
    tresult setIoMode(IoMode mode) override;
    tresult getRoutingInfo(RoutingInfo& inInfo, RoutingInfo& outInfo) override;
    /// 0 for an unknown media type; any direction but kInput is the output.
    int32 getBusCount(MediaType type, BusDirection dir) override;
    tresult getBusInfo(MediaType type, BusDirection dir, int32 index, BusInfo& info) override;
    tresult activateBus(MediaType type, BusDirection dir, int32 index, TBool state) override;
    /// kResultOk.
    tresult setActive(TBool state) override;
    /// Both give kNotImplemented.
    tresult setState(IBStream* state) override;
    tresult getState(IBStream* state) override;

    /// Gives the first buses these arrangements. kResultFalse for more than there are.
    tresult setBusArrangements(SpeakerArrangement* inputs, int32 numIns,
                               SpeakerArrangement* outputs, int32 numOuts) override;
    tresult getBusArrangement(BusDirection dir, int32 index, SpeakerArrangement& arr) override;
    /// 32-bit samples only.
    tresult canProcessSampleSize(int32 symbolicSampleSize) override;
    uint32 getLatencySamples() override;
    /// Keeps the set-up unless its sample size is refused.
    tresult setupProcessing(ProcessSetup& setup) override;
    /// Both give kNotImplemented.
    tresult setProcessing(TBool state) override;
    tresult process(ProcessData& data) override;
    uint32 getTailSamples() override;

protected:
    AudioBus* addAudioInput(const TChar* name, SpeakerArrangement arr, BusType type = kMain,
                            uint32 flags = BusInfo::kDefaultActive);
    AudioBus* addAudioOutput(const TChar* name, SpeakerArrangement arr, BusType type = kMain,
                             uint32 flags = BusInfo::kDefaultActive);
    EventBus* addEventInput(const TChar* name, int32 channels = 16, BusType type = kMain,
                            uint32 flags = BusInfo::kDefaultActive);
    EventBus* addEventOutput(const TChar* name, int32 channels = 16, BusType type = kMain,
                             uint32 flags = BusInfo::kDefaultActive);
    void removeAudioBusses();
    void removeEventBusses();
    void removeAllBusses();

    /// Null when there is none.
    [[nodiscard]] AudioBus* getAudioInput(int32 index) const;
    [[nodiscard]] AudioBus* getAudioOutput(int32 index) const;
    /// Null for an unknown media type.
    [[nodiscard]] BusList* getBusList(MediaType type, BusDirection dir);

    ProcessSetup processSetup{kRealtime, kSample32, 1024, 44100.0};

private:
    BusList audioInputs{kAudio, kInput};
    BusList audioOutputs{kAudio, kOutput};
    BusList eventInputs{kEvent, kInput};
    BusList eventOutputs{kEvent, kOutput};
};

} // namespace Steinberg::Vst
