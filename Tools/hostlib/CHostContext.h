#pragma once

#include "Audio/VST/FObject.h"
#include "Audio/VST/Interfaces/IHostApplication.h"

namespace tsm {

/// The host's object that plug-ins get at their start.
class CHostContext : public Steinberg::FObject,
                     public Steinberg::Vst::IHostApplication,
                     public Steinberg::Vst::IPlugInterfaceSupport {
public:
    /// `hostName` is borrowed: the name that plug-ins are told.
    explicit CHostContext(const Steinberg::Vst::TChar* hostName = u"reelpath-host") : name(hostName)
    {
    }
    Steinberg::tresult queryInterface(const Steinberg::TUID wanted, void** obj) override;
    TSM_VST_REFCOUNT(Steinberg::FObject)

    /// The object as plug-ins get it.
    [[nodiscard]] Steinberg::FUnknown* asUnknown() { return static_cast<FObject*>(this); }

    Steinberg::tresult getName(Steinberg::Vst::String128 text) override;
    Steinberg::tresult createInstance(Steinberg::TUID cid, Steinberg::TUID wanted,
                                      void** obj) override;
    Steinberg::tresult isPlugInterfaceSupported(const Steinberg::TUID wanted) override;

private:
    const Steinberg::Vst::TChar* name;
};

} // namespace tsm
