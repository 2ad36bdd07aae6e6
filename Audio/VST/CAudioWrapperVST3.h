#pragma once

#include "Audio/CAudioWrapper.h"
#include "Audio/VST/CEngineGate.h"
#include "Audio/VST/Interfaces/IMessage.h"
#include "Audio/VST/Interfaces/IUnitInfo.h"
#include "Audio/VST/SingleComponentEffect.h"

#include <memory>

class CAudioWrapperVST3Parameter;
class CAudioWrapperVST3ProgramParameter;

namespace tsm {
class CApplication;
struct CBusRequest;
} // namespace tsm

/// The product as a VST 3 plug-in: one object is processor and controller at once.
///
/// Hosts may call in odd orders: set-up and state calls that meet a running process() wait for the
/// end of its block, and a block that meets one of them comes out silent.
class CAudioWrapperVST3 : public Steinberg::Vst::SingleComponentEffect,
                          public Steinberg::Vst::IUnitInfo,
                          public Steinberg::Vst::ChannelContext::IInfoListener,
                          public tsm::CAudioWrapper {
public:
    static constexpr Steinberg::Vst::ProgramListID kProgramListId = 999;

    /// Keeps the framework as long as the instance. [control]
    explicit CAudioWrapperVST3(std::shared_ptr<tsm::CApplication> application);
    ~CAudioWrapperVST3() override;

    /// The factory's creation function: a new instance as its IAudioProcessor, or null where the
    /// framework doesn't run.
    static Steinberg::FUnknown* createInstance(void* context);

    Steinberg::tresult queryInterface(const Steinberg::TUID iid, void** obj) override;
    TSM_VST_REFCOUNT(Steinberg::Vst::SingleComponentEffect)

    // IPluginBase
    Steinberg::tresult initialize(Steinberg::FUnknown* context) override;
    Steinberg::tresult terminate() override;

    // IComponent
    Steinberg::tresult setState(Steinberg::IBStream* stream) override;
    Steinberg::tresult getState(Steinberg::IBStream* stream) override;

    // IAudioProcessor
    Steinberg::tresult setBusArrangements(Steinberg::Vst::SpeakerArrangement* inputs,
                                          Steinberg::int32 inputCount,
                                          Steinberg::Vst::SpeakerArrangement* outputs,
                                          Steinberg::int32 outputCount) override;
    Steinberg::tresult canProcessSampleSize(Steinberg::int32 symbolicSampleSize) override;
    Steinberg::uint32 getLatencySamples() override;
    Steinberg::tresult setupProcessing(Steinberg::Vst::ProcessSetup& setup) override;
    Steinberg::tresult setProcessing(Steinberg::TBool state) override;
    Steinberg::tresult process(Steinberg::Vst::ProcessData& data) override;
    Steinberg::uint32 getTailSamples() override;

    // IUnitInfo
    Steinberg::int32 getUnitCount() override { return 1; }
    Steinberg::tresult getUnitInfo(Steinberg::int32 index, Steinberg::Vst::UnitInfo& info) override;
    Steinberg::int32 getProgramListCount() override { return 1; }
    Steinberg::tresult getProgramListInfo(Steinberg::int32 index,
                                          Steinberg::Vst::ProgramListInfo& info) override;
    Steinberg::tresult getProgramName(Steinberg::Vst::ProgramListID listId, Steinberg::int32 index,
                                      Steinberg::Vst::String128 name) override;
    Steinberg::Vst::UnitID getSelectedUnit() override { return selectedUnit; }
    Steinberg::tresult selectUnit(Steinberg::Vst::UnitID unit) override;
    /// Nothing is known beyond the names, and programs travel as states: kResultFalse.
    Steinberg::tresult getProgramInfo(Steinberg::Vst::ProgramListID listId, Steinberg::int32 index,
                                      Steinberg::FIDString attributeId,
                                      Steinberg::Vst::String128 value) override;
    Steinberg::tresult hasProgramPitchNames(Steinberg::Vst::ProgramListID listId,
                                            Steinberg::int32 index) override;
    Steinberg::tresult getProgramPitchName(Steinberg::Vst::ProgramListID listId,
                                           Steinberg::int32 index, Steinberg::int16 pitch,
                                           Steinberg::Vst::String128 name) override;
    Steinberg::tresult getUnitByBus(Steinberg::Vst::MediaType type,
                                    Steinberg::Vst::BusDirection direction,
                                    Steinberg::int32 busIndex, Steinberg::int32 channel,
                                    Steinberg::Vst::UnitID& unit) override;
    Steinberg::tresult setUnitProgramData(Steinberg::int32 listOrUnitId, Steinberg::int32 index,
                                          Steinberg::IBStream* data) override;

    // ChannelContext::IInfoListener
    Steinberg::tresult setChannelContextInfos(Steinberg::Vst::IAttributeList* list) override;

    // From the engine to the host
    void performEdit(std::int32_t index, double value) override;
    void beginEdit(std::int32_t index) override;
    void endEdit(std::int32_t index) override;
    void onProgramChange() override;
    void onParamEvent(const tsm::CParamEvent& event) override;

private:
    [[nodiscard]] tsm::CError* buildEngine();
    void addBuses();
    void addParameters();
    void rebuildAudioBuses(const tsm::CBusRequest& request);
    void takeChannelNames(const tsm::CBusRequest& request);
    [[nodiscard]] bool readTrackName(Steinberg::Vst::IAttributeList& list, tsm::CString& name);

    void takeHostContext(const Steinberg::Vst::ProcessData& data);
    void takeParameterChanges(const Steinberg::Vst::ProcessData& data);
    void takeFormat(const Steinberg::Vst::ProcessData& data);
    void processAudio(const Steinberg::Vst::ProcessData& data);
    void processNothing(const Steinberg::Vst::ProcessData& data);
    [[nodiscard]] CAudioWrapperVST3Parameter* findParameter(std::int32_t index) const;

    std::shared_ptr<tsm::CApplication> application; // outlives the engine
    bool isEngineBuilt = false;
    bool isInitialized = false;
    Steinberg::Vst::UnitID selectedUnit = Steinberg::Vst::kRootUnitId;
    int extParamCount = 0;
    CAudioWrapperVST3ProgramParameter* programParam = nullptr; // owned by the parameters
    tsm::CEngineGate gate;
};
