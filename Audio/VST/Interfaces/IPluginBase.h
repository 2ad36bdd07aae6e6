#pragma once

#include "Audio/VST/Interfaces/FUnknown.h"

namespace Steinberg {

/// Begin and end of a plug-in's object. [control]
class IPluginBase : public FUnknown {
    TSM_VST_INTERFACE(IPluginBase, 0x22888DDB, 0x156E45AE, 0x8358B348, 0x08190625)

    /// `context` is the host's object, as a rule with IHostApplication. After any result but
    /// kResultOk the host releases the object without a call of terminate().
    virtual tresult initialize(FUnknown* context) = 0;
    virtual tresult terminate() = 0;
};

} // namespace Steinberg
