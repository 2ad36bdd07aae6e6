#pragma once

#include "Audio/VST/Interfaces/FUnknown.h"

namespace Steinberg::Vst {

enum RestartFlags : int32 {
    kReloadComponent = 1 << 0,
    kIoChanged = 1 << 1,
    kParamValuesChanged = 1 << 2,
    kLatencyChanged = 1 << 3,
    kParamTitlesChanged = 1 << 4,
    kMidiCCAssignmentChanged = 1 << 5,
    kNoteExpressionChanged = 1 << 6,
    kIoTitlesChanged = 1 << 7,
    kPrefetchableSupportChanged = 1 << 8,
    kRoutingInfoChanged = 1 << 9,
    kKeyswitchChanged = 1 << 10,
    kParamIDMappingChanged = 1 << 11,
};

/// What a controller tells the host. On the host's own thread of windows, never the audio thread.
class IComponentHandler : public FUnknown {
    TSM_VST_INTERFACE(IComponentHandler, 0x93A0BEA3, 0x0BD045DB, 0x8E890B0C, 0xC1E46AC6)

    virtual tresult beginEdit(ParamID id) = 0;
    virtual tresult performEdit(ParamID id, ParamValue valueNormalized) = 0;
    virtual tresult endEdit(ParamID id) = 0;
    virtual tresult restartComponent(int32 flags) = 0;
};

/// Optional beside IComponentHandler.
class IComponentHandler2 : public FUnknown {
    TSM_VST_INTERFACE(IComponentHandler2, 0xF040B4B3, 0xA36045EC, 0xABCDC045, 0xB4D5A2CC)

    virtual tresult setDirty(TBool state) = 0;
    virtual tresult requestOpenEditor(FIDString name) = 0;
    virtual tresult startGroupEdit() = 0;
    virtual tresult finishGroupEdit() = 0;
};

} // namespace Steinberg::Vst
