#include "Audio/CAudioParamAllocDef.h"

#include "Core/CText.h"

namespace tsm {

CError* CAudioParamAllocDef::init()
{
    TSM_TRY(CObject::init());
    paramName = getAttrString("param-name");
    if (paramName.isEmpty())
        TSM_FAIL("@tsmstr_CAudioParamAllocDef_init_InvalidParamName "
                 "Invalid parameter name specified.");
    index = getAttrInt("index");
    if (index < 0 || index > kMaxIndex)
        TSM_FAIL("@tsmstr_CAudioParamAllocDef_init_InvalidIndex "
                 "Invalid parameter's '%1' index '%2' specified.",
                 paramName, toString(index));
    useAllGroups = getAttrBool("use-all-groups");
    useAllElements = getAttrBool("use-all-elements");
    isSmoothUpdate = getAttrBool("is-smooth-update");
    return nullptr;
}

} // namespace tsm
