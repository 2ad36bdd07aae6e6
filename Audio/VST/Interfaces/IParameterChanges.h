#pragma once

#include "Audio/VST/Interfaces/FUnknown.h"

namespace Steinberg::Vst {

/// The points of one parameter within a block, in the order of their offsets. [audio]
class IParamValueQueue : public FUnknown {
    TSM_VST_INTERFACE(IParamValueQueue, 0x01263A18, 0xED074F6F, 0x98C9D356, 0x4686F9BA)

    virtual ParamID getParameterId() = 0;
    virtual int32 getPointCount() = 0;
    virtual tresult getPoint(int32 index, int32& sampleOffset, ParamValue& value) = 0;
    virtual tresult addPoint(int32 sampleOffset, ParamValue value, int32& index) = 0;
};

/// The queues of all parameters that change within a block. [audio]
class IParameterChanges : public FUnknown {
    TSM_VST_INTERFACE(IParameterChanges, 0xA4779663, 0x0BB64A56, 0xB44384A8, 0x466FEB9D)

    virtual int32 getParameterCount() = 0;
    /// Borrowed; null beyond the count, and sometimes at the limits of hosts.
    virtual IParamValueQueue* getParameterData(int32 index) = 0;
    /// Borrowed; the parameter's queue when there is one already. Null when there is no room.
    virtual IParamValueQueue* addParameterData(const ParamID& id, int32& index) = 0;
};

} // namespace Steinberg::Vst
