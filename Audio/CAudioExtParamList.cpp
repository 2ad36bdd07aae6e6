#include "Audio/CAudioExtParamList.h"

namespace tsm {

CError* CAudioExtParamList::initChilds()
{
    TSM_TRY(CObject::initChilds());
    params.clear();
    for (CObject* child : getChildren())
        if (auto* extParam = dynamic_cast<CAudioExtParam*>(child))
            params.add(extParam);
    return nullptr;
}

void CAudioExtParamList::declareClass(CObjectClassInfo& info)
{
    CObject::declareClass(info);
}

} // namespace tsm
