#pragma once

#include "Audio/VST/Interfaces/IBStream.h"
#include "Audio/VST/Interfaces/IComponentHandler.h"
#include "Audio/VST/Interfaces/IPlugView.h"
#include "Audio/VST/Interfaces/IPluginBase.h"

namespace Steinberg::Vst {

/// The name of the usual view.
constexpr FIDString kEditorViewType = "editor";

struct ParameterInfo {
    enum ParameterFlags : int32 {
        kNoFlags = 0,
        kCanAutomate = 1 << 0,
        kIsReadOnly = 1 << 1,
        kIsWrapAround = 1 << 2,
        kIsList = 1 << 3,
        kIsHidden = 1 << 4,
        kIsProgramChange = 1 << 15,
        kIsBypass = 1 << 16,
    };

    ParamID id;
    String128 title;
    String128 shortTitle;
    String128 units;
    int32 stepCount; ///< 0 continuous, 1 a switch, n: n + 1 values
    ParamValue defaultNormalizedValue;
    UnitID unitId;
    int32 flags;
};

enum KnobModes : int32 { kCircularMode = 0, kRelativCircularMode = 1, kLinearMode = 2 };

/// The part of a plug-in that has parameters and a window. [control]
class IEditController : public IPluginBase {
    TSM_VST_INTERFACE(IEditController, 0xDCD7BBE3, 0x7742448D, 0xA874AACC, 0x979C759E)

    /// The bytes of IComponent::getState(), for a controller that is an object of its own.
    virtual tresult setComponentState(IBStream* state) = 0;
    /// The interface calls these two setState and getState. One object that is component and
    /// controller has other functions of those names in IComponent; only the slots are binding.
    virtual tresult setEditorState(IBStream* state) = 0;
    virtual tresult getEditorState(IBStream* state) = 0;
    virtual int32 getParameterCount() = 0;
    virtual tresult getParameterInfo(int32 paramIndex, ParameterInfo& info) = 0;
    virtual tresult getParamStringByValue(ParamID id, ParamValue valueNormalized,
                                          String128 string) = 0;
    virtual tresult getParamValueByString(ParamID id, TChar* string,
                                          ParamValue& valueNormalized) = 0;
    virtual ParamValue normalizedParamToPlain(ParamID id, ParamValue valueNormalized) = 0;
    virtual ParamValue plainParamToNormalized(ParamID id, ParamValue plainValue) = 0;
    virtual ParamValue getParamNormalized(ParamID id) = 0;
    virtual tresult setParamNormalized(ParamID id, ParamValue value) = 0;
    /// Keeps a reference; null drops the last one.
    virtual tresult setComponentHandler(IComponentHandler* handler) = 0;
    /// The caller owns the reference; null for names other than "editor".
    virtual IPlugView* createView(FIDString name) = 0;
};

/// Optional beside IEditController.
class IEditController2 : public FUnknown {
    TSM_VST_INTERFACE(IEditController2, 0x7F4EFE59, 0xF3204967, 0xAC27A3AE, 0xAFB63038)

    virtual tresult setKnobMode(KnobMode mode) = 0;
    virtual tresult openHelp(TBool onlyCheck) = 0;
    virtual tresult openAboutBox(TBool onlyCheck) = 0;
};

} // namespace Steinberg::Vst
