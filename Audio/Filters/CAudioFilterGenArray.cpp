#include "Audio/Filters/CAudioFilterGenArray.h"

#include "Audio/Filters/CAudioFilterGenArrayItem.h"

namespace tsm {

CAudioFilterGen* CAudioFilterGenArray::getItem(int index) const
{
    for (CObject* child : getChildren()) {
        const auto* item = dynamic_cast<const CAudioFilterGenArrayItem*>(child);
        if (item && item->getIndex() == index)
            return item->getGenerator();
    }
    return nullptr;
}

void CAudioFilterGenArray::declareClass(CObjectClassInfo& info)
{
    CObject::declareClass(info);
}

} // namespace tsm
