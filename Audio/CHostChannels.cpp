#include "Audio/CHostChannels.h"

#include "Audio/CAudioInterfaceBase.h"
#include "Audio/CAudioParamUndoStep.h"
#include "Audio/CParamLists.h"

namespace tsm {

namespace {

bool areSameTexts(const COwnedArray<CString>& a, const COwnedArray<CString>& b)
{
    bool isSame = a.getCount() == b.getCount();
    for (int i = 0; isSame && i < a.getCount(); ++i)
        isSame = a[i] == b[i];
    return isSame;
}

} // namespace

void CHostChannels::setNames(CHostChannelNames&& names)
{
    const CLockScope scope(lock);
    routing.setChannelNames(std::move(names));
}

void CHostChannels::updateRouting(bool force, int intChannelCount, const void* source,
                                  CAudioParamContext* context)
{
    const CLockScope scope(lock);
    routing.run(force, intChannelCount, source, context);
}

void CHostChannels::listNames(COwnedArray<CString>& names)
{
    const CLockScope scope(lock);
    const CHostChannelNames& host = routing.getChannelNames();
    for (const COwnedArray<CString>* list : {&host.main, &host.sidechain})
        for (const CString& name : *list)
            names.create() = name;
}

void CHostChannels::importLabels(const COwnedArray<CString>& labels,
                                 CAudioInterfaceBase* interfaceBase, const void* source)
{
    if (!params.inChannelNames)
        return;
    if (labels.isEmpty()) {
        COwnedArray<CString> names;
        listNames(names);
        if (!names.isEmpty())
            importLabels(names, interfaceBase, source);
        return;
    }
    COwnedArray<CString> present;
    {
        const CAudioParamLock paramLock(*params.inChannelNames);
        readParamTexts(*params.inChannelNames, present);
    }
    if (areSameTexts(labels, present))
        return;
    const CAudioParamUndoStep step(interfaceBase, "Channel label import");
    CAudioParamContext context;
    context.undo = step.getRecorder();
    writeParamTexts(*params.inChannelNames, labels, source, &context);
}

} // namespace tsm
