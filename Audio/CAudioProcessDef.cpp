#include "Audio/CAudioProcessDef.h"

#include "Audio/CAudioProcess.h"
#include "Audio/CAudioProcessBypassStateDef.h"
#include "Audio/CAudioProcessLinkDef.h"

namespace tsm {

CError* CAudioProcessDef::init()
{
    TSM_TRY(CAudioProcessDefBase::init());
    isAutoLinks = getAttrBool("is-auto-links");
    return nullptr;
}

CError* CAudioProcessDef::initChilds()
{
    TSM_TRY(CAudioProcessDefBase::initChilds());
    for (CObject* child : getChildren()) {
        if (const auto* process = dynamic_cast<const CAudioProcessDefBase*>(child))
            processes.add(process);
        else if (const auto* link = dynamic_cast<const CAudioProcessLinkDef*>(child))
            linkStates[link->getStateId()].add(link);
        else if (const auto* state = dynamic_cast<const CAudioProcessBypassStateDef*>(child))
            bypassStates.add(state);
    }
    return nullptr;
}

CAudioProcessBase* CAudioProcessDef::createInstance() const
{
    return new CAudioProcess;
}

} // namespace tsm
