#include "Audio/CAudioParamSubscription.h"

#include "Audio/CAudioParam.h"

namespace tsm {

bool CAudioParamSubscription::matches(const CAudioParamChange& change,
                                      const CAudioParamShape& shape) const noexcept
{
    if (change.group == kAllParamGroups)
        return true;
    const bool isGroupHit =
        group == -1 || group == change.group || (shape.isSingleGroup && change.group == 0);
    if (!isGroupHit)
        return false;
    if (element == -1 || (shape.isSingleElement && change.firstElement == 0))
        return true;
    return element >= change.firstElement &&
           (change.complete || element < change.firstElement + change.elementCount);
}

void CAudioParamSubscription::mark(const CAudioParamChange& change) const noexcept
{
    *changed = true;
    *dirtyGroups |= change.group == kAllParamGroups ? ~0u : 1u << change.group;
}

void CUnsubscriber::operator()(CAudioParamSubscription* subscription) const noexcept
{
    subscription->param->unsubscribe(subscription);
}

} // namespace tsm
