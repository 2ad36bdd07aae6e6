#pragma once

#include "Audio/VST/Interfaces/FUnknown.h"

namespace Steinberg::Vst {

/// The host's object that IPluginBase::initialize() gets.
class IHostApplication : public FUnknown {
    TSM_VST_INTERFACE(IHostApplication, 0x58E595CC, 0xDB2D4969, 0x8B6AAF8C, 0x36A664E5)

    virtual tresult getName(String128 name) = 0;
    /// Makes an IMessage or an IAttributeList; class and interface have the same identifier.
    virtual tresult createInstance(TUID cid, TUID iid, void** obj) = 0;
};

/// Optional beside IHostApplication.
class IPlugInterfaceSupport : public FUnknown {
    TSM_VST_INTERFACE(IPlugInterfaceSupport, 0x4FB58B9E, 0x9EAA4E0F, 0xAB361C1C, 0xCCB56FEA)

    virtual tresult isPlugInterfaceSupported(const TUID iid) = 0;
};

} // namespace Steinberg::Vst
