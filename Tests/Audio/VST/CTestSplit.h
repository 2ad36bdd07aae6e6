#pragma once

#include "Audio/VST/Interfaces/InterfaceId.h"
#include "Tests/Audio/VST/CTestEffect.h"

namespace tsm {

/// The test plug-in as two objects that are connected, as many plug-ins are made: each hides the
/// interfaces of the other.
class CTestSplitComponent : public CTestEffect {
public:
    static constexpr Steinberg::CInterfaceId kControllerClass{0x7E57EFFE, 0xC7000000, 0, 0xA3};

    Steinberg::tresult queryInterface(const Steinberg::TUID wanted, void** obj) override
    {
        if (obj && (Steinberg::isSameId(wanted, Steinberg::Vst::IEditController::iid) ||
                    Steinberg::isSameId(wanted, Steinberg::Vst::IEditController2::iid))) {
            *obj = nullptr;
            return Steinberg::kNoInterface;
        }
        if (giveInterface<Steinberg::Vst::IConnectionPoint>(wanted, obj, this))
            return Steinberg::kResultOk;
        return CTestEffect::queryInterface(wanted, obj);
    }
    TSM_VST_REFCOUNT(CTestEffect)

    Steinberg::tresult getControllerClassId(Steinberg::TUID classId) override
    {
        Steinberg::copyId(kControllerClass, classId);
        return Steinberg::kResultOk;
    }
};

class CTestSplitController : public CTestEffect {
public:
    Steinberg::tresult queryInterface(const Steinberg::TUID wanted, void** obj) override
    {
        if (obj && (Steinberg::isSameId(wanted, Steinberg::Vst::IComponent::iid) ||
                    Steinberg::isSameId(wanted, Steinberg::Vst::IAudioProcessor::iid))) {
            *obj = nullptr;
            return Steinberg::kNoInterface;
        }
        if (giveInterface<Steinberg::Vst::IConnectionPoint>(wanted, obj, this))
            return Steinberg::kResultOk;
        return CTestEffect::queryInterface(wanted, obj);
    }
    TSM_VST_REFCOUNT(CTestEffect)

    Steinberg::tresult setComponentState(Steinberg::IBStream* state) override
    {
        return setState(state);
    }
};

} // namespace tsm
