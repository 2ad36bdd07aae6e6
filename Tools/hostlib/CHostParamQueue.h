#pragma once

#include "Audio/VST/FObject.h"
#include "Audio/VST/Interfaces/IParameterChanges.h"

#include <vector>

namespace tsm {

/// The points of one parameter in a block: by rising offset, one at each. [audio]
class CHostParamQueue : public Steinberg::FObject, public Steinberg::Vst::IParamValueQueue {
public:
    Steinberg::tresult queryInterface(const Steinberg::TUID wanted, void** obj) override;
    TSM_VST_REFCOUNT(Steinberg::FObject)

    Steinberg::Vst::ParamID getParameterId() override { return paramId; }
    Steinberg::int32 getPointCount() override;
    Steinberg::tresult getPoint(Steinberg::int32 index, Steinberg::int32& sampleOffset,
                                Steinberg::Vst::ParamValue& value) override;
    Steinberg::tresult addPoint(Steinberg::int32 sampleOffset, Steinberg::Vst::ParamValue value,
                                Steinberg::int32& index) override;

    /// Empties the queue for another parameter.
    void restart(Steinberg::Vst::ParamID id);

private:
    struct CPoint {
        Steinberg::int32 offset;
        double value;
    };

    Steinberg::Vst::ParamID paramId = Steinberg::Vst::kNoParamId;
    std::vector<CPoint> points;
};

} // namespace tsm
