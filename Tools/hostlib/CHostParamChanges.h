#pragma once

#include "Audio/VST/IPtr.h"
#include "Tools/hostlib/CHostParamQueue.h"

namespace tsm {

/// The changes of all parameters in a block; queues are kept for the next one. [audio]
class CHostParamChanges : public Steinberg::FObject, public Steinberg::Vst::IParameterChanges {
public:
    Steinberg::tresult queryInterface(const Steinberg::TUID wanted, void** obj) override;
    TSM_VST_REFCOUNT(Steinberg::FObject)

    Steinberg::int32 getParameterCount() override { return usedCount; }
    Steinberg::Vst::IParamValueQueue* getParameterData(Steinberg::int32 index) override;
    Steinberg::Vst::IParamValueQueue* addParameterData(const Steinberg::Vst::ParamID& id,
                                                       Steinberg::int32& index) override;

    void add(Steinberg::Vst::ParamID id, Steinberg::int32 offset, double value);
    void clear() { usedCount = 0; }

private:
    std::vector<Steinberg::IPtr<CHostParamQueue>> queues;
    Steinberg::int32 usedCount = 0;
};

} // namespace tsm
