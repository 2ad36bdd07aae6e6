#include "Audio/Processes/CModProcessSwitch.h"

#include "Audio/CAudioParam.h"
#include "Audio/Processes/CModProcessSwitchDef.h"
#include "Core/CRounding.h"

namespace tsm {

CError* CModProcessSwitch::init()
{
    TSM_TRY(CModProcessSeq::init());
    indexParam = findParam("index").subscribe(&dirtyGroups, getParamsChangedFlag());
    countParam = findParam("count").subscribe(&dirtyGroups, getParamsChangedFlag());
    return nullptr;
}

int CModProcessSwitch::readIndex(const CAudioParamSubscriptionPtr& slot, int otherwise) const
{
    const double value = slot->values->value(getGroupIndex(), getElementIndex(), otherwise);
    return roundToInt(value);
}

void CModProcessSwitch::update()
{
    const int newIndex = readIndex(indexParam, 0);
    const int newCount = readIndex(countParam, 0);
    if (!hasChosen || newIndex != index || newCount != count) {
        hasChosen = true;
        index = newIndex;
        count = newCount;
        handleError(replaceChild(newIndex));
    }
    CModProcessSeq::update();
}

// Without a process to take its place the signal passes.
CError* CModProcessSwitch::replaceChild(int newIndex)
{
    while (getChainLength() > 0)
        removeProcess(0);
    const auto& own = dynamic_cast<const CModProcessSwitchDef&>(getDefinition());
    const CAudioProcessDefBase* target = nullptr;
    TSM_TRY(own.findProcess(target, newIndex));
    CPtr<CAudioProcessBase> child;
    TSM_TRY(
        createProcess(child, *target, getContext(), this, getPath() + "." + own.getChildName()));
    insertProcess(0, std::move(child));
    return nullptr;
}

} // namespace tsm
