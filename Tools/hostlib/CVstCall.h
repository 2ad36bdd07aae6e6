#pragma once

#include "Tools/hostlib/CHostEvents.h"
#include "Tools/hostlib/CHostParamChanges.h"
#include "Tools/hostlib/CVstInstance.h"

#include <vector>

namespace tsm {

/// A plug-in's process call as a host makes it: the call's data but for the buses, which are its
/// owner's, with parameter changes, events, and a transport that plays at 120 beats a minute.
class CVstCall {
public:
    using CBuses = std::vector<Steinberg::Vst::AudioBusBuffers>;

    /// For an instance that is set up so; it outlives the call.
    CVstCall(const CVstInstance& instance, const CVstSetUp& setUp);
    CVstCall(const CVstCall&) = delete;
    CVstCall& operator=(const CVstCall&) = delete;

    /// Has the data refer to these buses, which are borrowed.
    void setBuses(CBuses& inputs, CBuses& outputs);
    /// Tells the plug-in where the block begins, in samples.
    void setPosition(std::int64_t position);
    /// Adds a point for the next run.
    void addPoint(Steinberg::Vst::ParamID id, int offset, double value);
    [[nodiscard]] CHostEvents& getInputEvents() const { return *inputEvents; }
    [[nodiscard]] Steinberg::Vst::ProcessData& getData() { return data; }
    [[nodiscard]] Steinberg::Vst::ProcessContext& getContext() { return context; }

    /// Calls the plug-in with the data as they are, and drops points and events. [audio]
    [[nodiscard]] Steinberg::tresult run();

private:
    const CVstInstance& owner;
    Steinberg::IPtr<CHostParamChanges> inputChanges;
    Steinberg::IPtr<CHostParamChanges> outputChanges;
    Steinberg::IPtr<CHostEvents> inputEvents;
    Steinberg::IPtr<CHostEvents> outputEvents;
    Steinberg::Vst::ProcessContext context = {};
    Steinberg::Vst::ProcessData data = {};
};

} // namespace tsm
