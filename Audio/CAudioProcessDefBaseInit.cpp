#include "Audio/CAudioProcessDefBaseInit.h"

#include "Audio/CAudioParamDef.h"
#include "Audio/CAudioParamFilterDef.h"
#include "Audio/CAudioParamRemapDef.h"
#include "Audio/CAudioParamSharedStorage.h"

namespace tsm {

CString lastName(const CObject& object)
{
    const CString& fullName = object.getFullName();
    return fullName.substring(fullName.findLast('.') + 1);
}

CError* CAudioProcessDefBaseInit::initChilds()
{
    TSM_TRY(CObject::initChilds());
    for (CObject* child : getChildren()) {
        if (const auto* alloc = dynamic_cast<const CAudioParamAllocDef*>(child))
            allocs[alloc->getIndex()] = alloc;
        else if (const auto* remap = dynamic_cast<const CAudioParamRemapDef*>(child))
            remaps.add(remap);
        else if (child->getTag() == "core:object")
            takeScope(*child);
        else
            takeChild(*child, ".");
    }
    return nullptr;
}

void CAudioProcessDefBaseInit::takeScope(CObject& scope)
{
    // One level: a scope in a scope is none of ours.
    for (CObject* child : scope.getChildren())
        takeChild(*child, CString(".") + lastName(scope) + ".");
}

void CAudioProcessDefBaseInit::takeChild(CObject& child, const CString& scope)
{
    if (const auto* param = dynamic_cast<const CAudioParamDef*>(&child)) {
        CNamedParam& entry = paramDefs.create();
        entry.def = param;
        entry.relativeName = scope + lastName(child);
    } else if (const auto* filter = dynamic_cast<const CAudioParamFilterDef*>(&child)) {
        filterDefs.add(filter);
    } else if (const auto* storage = dynamic_cast<const CAudioParamSharedStorage*>(&child)) {
        CNamedStorage& entry = sharedStorages.create();
        entry.def = storage;
        entry.relativeName = scope + storage->getParamName();
    }
}

} // namespace tsm
