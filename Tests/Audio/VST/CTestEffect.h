#pragma once

#include "Audio/VST/Interfaces/IUnitInfo.h"
#include "Audio/VST/SingleComponentEffect.h"

#include <array>
#include <vector>

namespace tsm {

/// A plug-in for tests of both sides of the interface: a gain of 0 to 1 that changes at the exact
/// sample, late by a fixed latency, with programs, a bypass and a state of 13 bytes.
class CTestEffect : public Steinberg::Vst::SingleComponentEffect, public Steinberg::Vst::IUnitInfo {
public:
    static constexpr Steinberg::uint32 kLatency = 32;
    static constexpr Steinberg::uint32 kTail = 100;
    static constexpr Steinberg::Vst::ParamID kGainId = 7;
    static constexpr Steinberg::Vst::ParamID kBypassId = 8;
    static constexpr Steinberg::Vst::ParamID kProgramId = 999;
    static constexpr Steinberg::Vst::ProgramListID kListId = 999;
    struct CProgram {
        const char16_t* name;
        double gain;
    };
    static constexpr std::array kPrograms{CProgram{u"Unity", 1.0}, CProgram{u"Half", 0.5},
                                          CProgram{u"Quarter", 0.25}};

    Steinberg::tresult queryInterface(const Steinberg::TUID wanted, void** obj) override;
    TSM_VST_REFCOUNT(SingleComponentEffect)

    Steinberg::tresult initialize(Steinberg::FUnknown* context) override;
    Steinberg::tresult setState(Steinberg::IBStream* stream) override;
    Steinberg::tresult getState(Steinberg::IBStream* stream) override;
    Steinberg::tresult setBusArrangements(Steinberg::Vst::SpeakerArrangement* inputs,
                                          Steinberg::int32 numIns,
                                          Steinberg::Vst::SpeakerArrangement* outputs,
                                          Steinberg::int32 numOuts) override;
    Steinberg::tresult canProcessSampleSize(Steinberg::int32 size) override;
    Steinberg::uint32 getLatencySamples() override { return kLatency; }
    Steinberg::uint32 getTailSamples() override { return kTail; }
    Steinberg::tresult setActive(Steinberg::TBool state) override;
    Steinberg::tresult setProcessing(Steinberg::TBool) override { return Steinberg::kResultOk; }
    Steinberg::tresult process(Steinberg::Vst::ProcessData& data) override;

    Steinberg::int32 getUnitCount() override { return 1; }
    Steinberg::tresult getUnitInfo(Steinberg::int32 unitIndex,
                                   Steinberg::Vst::UnitInfo& info) override;
    Steinberg::int32 getProgramListCount() override { return 1; }
    Steinberg::tresult getProgramListInfo(Steinberg::int32 listIndex,
                                          Steinberg::Vst::ProgramListInfo& info) override;
    Steinberg::tresult getProgramName(Steinberg::Vst::ProgramListID listId,
                                      Steinberg::int32 programIndex,
                                      Steinberg::Vst::String128 name) override;
    Steinberg::tresult getProgramInfo(Steinberg::Vst::ProgramListID, Steinberg::int32, const char*,
                                      Steinberg::Vst::String128) override
    {
        return Steinberg::kResultFalse;
    }
    Steinberg::tresult hasProgramPitchNames(Steinberg::Vst::ProgramListID,
                                            Steinberg::int32) override
    {
        return Steinberg::kResultFalse;
    }
    Steinberg::tresult getProgramPitchName(Steinberg::Vst::ProgramListID, Steinberg::int32,
                                           Steinberg::int16, Steinberg::Vst::String128) override
    {
        return Steinberg::kResultFalse;
    }
    Steinberg::Vst::UnitID getSelectedUnit() override { return 0; }
    Steinberg::tresult selectUnit(Steinberg::Vst::UnitID unitId) override
    {
        return unitId == 0 ? Steinberg::kResultOk : Steinberg::kResultFalse;
    }
    Steinberg::tresult getUnitByBus(Steinberg::Vst::MediaType, Steinberg::Vst::BusDirection,
                                    Steinberg::int32, Steinberg::int32,
                                    Steinberg::Vst::UnitID&) override
    {
        return Steinberg::kResultFalse;
    }
    Steinberg::tresult setUnitProgramData(Steinberg::int32, Steinberg::int32,
                                          Steinberg::IBStream*) override
    {
        return Steinberg::kResultFalse;
    }

private:
    template <class Sample>
    void processBuses(Steinberg::Vst::ProcessData& data);
    void applyPoints(Steinberg::Vst::IParameterChanges* changes, int from, int to, double& gain);
    void setAndTell(Steinberg::Vst::ParamID id, double value);

    std::vector<std::array<double, kLatency>> delays; // one a channel
    std::size_t delayAt = 0;
};

} // namespace tsm
