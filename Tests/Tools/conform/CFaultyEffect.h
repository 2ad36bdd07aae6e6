#pragma once

#include "Tests/Audio/VST/CTestEffect.h"
#include "Tests/Tools/conform/Faults.h"

#include <atomic>
#include <bitset>
#include <cstdint>
#include <string_view>
#include <thread>

namespace tsm {

/// The tests' plug-in with a state that holds all of its values, and with faults.
class CFaultyEffect : public CTestEffect {
public:
    ~CFaultyEffect() override;

    /// Gives all instances the faults of these names. [setup]
    static void setFaults(std::string_view names);
    [[nodiscard]] static bool has(EFault fault);

    Steinberg::tresult queryInterface(const Steinberg::TUID wanted, void** obj) override;
    Steinberg::tresult initialize(Steinberg::FUnknown* context) override;
    Steinberg::tresult terminate() override;
    Steinberg::tresult setState(Steinberg::IBStream* stream) override;
    Steinberg::tresult getState(Steinberg::IBStream* stream) override;
    Steinberg::tresult getBusInfo(Steinberg::Vst::MediaType type, Steinberg::Vst::BusDirection dir,
                                  Steinberg::int32 index, Steinberg::Vst::BusInfo& bus) override;
    Steinberg::tresult setBusArrangements(Steinberg::Vst::SpeakerArrangement* inputs,
                                          Steinberg::int32 numIns,
                                          Steinberg::Vst::SpeakerArrangement* outputs,
                                          Steinberg::int32 numOuts) override;
    Steinberg::tresult activateBus(Steinberg::Vst::MediaType type, Steinberg::Vst::BusDirection dir,
                                   Steinberg::int32 index, Steinberg::TBool state) override;
    Steinberg::tresult setupProcessing(Steinberg::Vst::ProcessSetup& setup) override;
    Steinberg::uint32 getLatencySamples() override;
    Steinberg::tresult setProcessing(Steinberg::TBool state) override;
    Steinberg::tresult process(Steinberg::Vst::ProcessData& data) override;

    Steinberg::tresult getParameterInfo(Steinberg::int32 index,
                                        Steinberg::Vst::ParameterInfo& info) override;
    Steinberg::tresult getParamStringByValue(Steinberg::Vst::ParamID id,
                                             Steinberg::Vst::ParamValue value,
                                             Steinberg::Vst::String128 string) override;
    Steinberg::tresult getParamValueByString(Steinberg::Vst::ParamID id,
                                             Steinberg::Vst::TChar* string,
                                             Steinberg::Vst::ParamValue& value) override;
    Steinberg::Vst::ParamValue getParamNormalized(Steinberg::Vst::ParamID id) override;
    Steinberg::IPlugView* createView(Steinberg::FIDString name) override;
    Steinberg::Vst::ParamValue plainParamToNormalized(Steinberg::Vst::ParamID id,
                                                      Steinberg::Vst::ParamValue plain) override;
    Steinberg::tresult setParamNormalized(Steinberg::Vst::ParamID id,
                                          Steinberg::Vst::ParamValue value) override;
    Steinberg::tresult setComponentHandler(Steinberg::Vst::IComponentHandler* handler) override;
    Steinberg::tresult getProgramName(Steinberg::Vst::ProgramListID listId, Steinberg::int32 index,
                                      Steinberg::Vst::String128 name) override;

private:
    void abortOn(const Steinberg::Vst::ProcessData& data) const;
    void beforeProcess(Steinberg::Vst::ProcessData& data);
    void automateLate(const Steinberg::Vst::ProcessData& data);
    void takeOddPoints(const Steinberg::Vst::ProcessData& data);
    template <class Sample>
    void spoil(Steinberg::Vst::ProcessData& data, Sample** ins, Sample** outs);

    static inline std::bitset<static_cast<std::size_t>(EFault::Count)> faults;
    std::atomic<std::thread::id> audioThread = {}; // while it processes
    std::thread::id mainThread = std::this_thread::get_id();
    bool isNanThere = false;
    bool isSecondQuery = false;
    bool isSwitchedOn = false;
    bool isOdd = false; // of the instances that were given a state
    bool isRateBroken = false;
    std::atomic<double> oddPoint = 0.0;
    std::int64_t position = 0;
    void* scratch = nullptr;
    void* leaked = nullptr;
};

} // namespace tsm
