#include "Audio/Filters/CAudioFilterGenArrayItem.h"

#include "Audio/Filters/CAudioFilterGenArray.h"

namespace tsm {

CError* CAudioFilterGenArrayItem::init()
{
    TSM_TRY(CObject::init());
    if (!dynamic_cast<CAudioFilterGenArray*>(getParent()))
        TSM_FAIL("@tsmstr_CAudioFilterGenArrayItem_init_InvalidParent "
                 "CAudioFilterGenArray class parent expected.");
    index = getAttrInt("index");
    TSM_TRY(findObjectByAttr(generator, "fltgen"));
    return nullptr;
}

void CAudioFilterGenArrayItem::declareClass(CObjectClassInfo& info)
{
    CObject::declareClass(info);
}

} // namespace tsm
