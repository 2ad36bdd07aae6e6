#include "Tools/hostlib/CHostContext.h"

#include "Audio/VST/Interfaces/IAudioProcessor.h"
#include "Audio/VST/Interfaces/IEditController.h"
#include "Audio/VST/Interfaces/IUnitInfo.h"
#include "Audio/VST/VstText.h"
#include "Tools/hostlib/CHostMessage.h"

namespace tsm {

using namespace Steinberg;
using namespace Steinberg::Vst;

tresult CHostContext::queryInterface(const TUID wanted, void** obj)
{
    if (giveInterface<IHostApplication>(wanted, obj, this) ||
        giveInterface<IPlugInterfaceSupport>(wanted, obj, this))
        return kResultOk;
    return FObject::queryInterface(wanted, obj);
}

tresult CHostContext::getName(String128 text)
{
    if (!text)
        return kInvalidArgument;
    copyString128(name, text);
    return kResultOk;
}

tresult CHostContext::createInstance(TUID cid, TUID wanted, void** obj)
{
    if (!obj)
        return kInvalidArgument;
    *obj = nullptr;
    if (!isSameId(cid, wanted))
        return kResultFalse;
    if (isSameId(cid, IMessage::iid))
        *obj = static_cast<IMessage*>(new CHostMessage);
    else if (isSameId(cid, IAttributeList::iid))
        *obj = static_cast<IAttributeList*>(new CHostAttributes);
    return *obj ? kResultOk : kResultFalse;
}

tresult CHostContext::isPlugInterfaceSupported(const TUID wanted)
{
    for (const char8* supported : {static_cast<const char8*>(IComponent::iid),
                                   static_cast<const char8*>(IAudioProcessor::iid),
                                   static_cast<const char8*>(IEditController::iid),
                                   static_cast<const char8*>(IUnitInfo::iid),
                                   static_cast<const char8*>(IConnectionPoint::iid)})
        if (isSameId(wanted, supported))
            return kResultTrue;
    return kResultFalse;
}

} // namespace tsm
