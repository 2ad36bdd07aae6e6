#pragma once

#include "Audio/VST/IPtr.h"
#include "Tools/hostlib/CHostAttributes.h"

#include <string>

namespace tsm {

/// A message between component and controller.
class CHostMessage : public Steinberg::FObject, public Steinberg::Vst::IMessage {
public:
    CHostMessage() : attributes(Steinberg::IPtr<CHostAttributes>::owned(new CHostAttributes)) {}

    Steinberg::tresult queryInterface(const Steinberg::TUID wanted, void** obj) override
    {
        if (giveInterface<Steinberg::Vst::IMessage>(wanted, obj, this))
            return Steinberg::kResultOk;
        return FObject::queryInterface(wanted, obj);
    }
    TSM_VST_REFCOUNT(Steinberg::FObject)

    Steinberg::FIDString getMessageID() override { return messageId.c_str(); }
    void setMessageID(Steinberg::FIDString id) override { messageId = id ? id : ""; }
    Steinberg::Vst::IAttributeList* getAttributes() override { return attributes.get(); }

private:
    std::string messageId;
    Steinberg::IPtr<CHostAttributes> attributes;
};

} // namespace tsm
