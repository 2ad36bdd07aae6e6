#include "Core/CAttrDoubler.h"

#include "Core/CText.h"

namespace tsm {

void CAttrDoubler::declareClass(CObjectClassInfo& info)
{
    CObject::declareClass(info);
    info.addAttr("value", &CAttrDoubler::onValue);
}

CError* CAttrDoubler::init()
{
    TSM_TRY(CObject::init());
    splitWords(getAttrString("target"), targets);
    if (targets.isEmpty())
        TSM_FAIL("@tsmstr_CAttrDoubler_init_NoTargets No target objects specified.");
    for (const CString& target : targets)
        if (!findObject(target))
            TSM_FAIL("@tsmstr_CAttrDoubler_init_TargetNotFound Target object '%1' not found.",
                     target);
    return nullptr;
}

CError* CAttrDoubler::onValue(CAttrValue& value)
{
    // Targets may lead back here.
    if (isWriting)
        return nullptr;
    isWriting = true;
    CError* error = writeToTargets(value);
    isWriting = false;
    TSM_TRY(error);
    return nullptr;
}

CError* CAttrDoubler::writeToTargets(const CAttrValue& value)
{
    const CString attr = getAttrString("attr");
    for (const CString& name : targets)
        if (CObject* object = findObject(name))
            TSM_TRY(object->setAttr(attr, value, true));
    return nullptr;
}

} // namespace tsm
