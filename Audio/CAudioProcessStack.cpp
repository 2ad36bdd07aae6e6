#include "Audio/CAudioProcessStack.h"

#include "Audio/CAudioParam.h"
#include "Audio/CAudioProcessDefBase.h"
#include "Audio/CParamName.h"
#include "Core/CText.h"

#include <algorithm>

namespace tsm {
namespace {

constexpr int kMaxGroups = 32;
constexpr int kMaxSeries = 32;

} // namespace

CAudioProcessStack::~CAudioProcessStack()
{
    CAudioProcessContainer::detach();
}

std::uint32_t CAudioProcessStack::findGroups() const
{
    std::uint32_t mask = 0;
    const CAudioPort& port = *findPort(0);
    for (int i = 0; i < port.getChannelCount(); ++i)
        if (port.getChannel(i).group < kMaxGroups)
            mask |= 1u << port.getChannel(i).group;
    return mask;
}

void CAudioProcessStack::update()
{
    if (!getInputsChanged())
        return;
    const std::uint32_t mask = findGroups();
    for (int i = elements.getCount() - 1; i >= 0; --i)
        if (!(mask >> elements[i].group & 1u))
            removeElement(i);
    for (int group = 0; group < kMaxGroups; ++group)
        if (mask >> group & 1u && !findElement(group))
            addElement(group);
    publishInputs();
}

int CAudioProcessStack::seriesLength(int group)
{
    const CString& name = getDefinition().getStackParam();
    if (name.isEmpty())
        return 1;
    CAudioParam& param = findParamByFullName(resolveName(name, getPath()));
    return std::clamp(roundToInt(param.getProcessValues().value(group, 0, 1.0)), 1, kMaxSeries);
}

void CAudioProcessStack::addElement(int group)
{
    CPtr<CElement> element(new CElement);
    element->group = group;
    const int length = seriesLength(group);
    for (int i = 0; i < length; ++i) {
        CPtr<CAudioProcessBase> process;
        CError* error = createProcess(process, getDefinition(), getContext(), this, getPath(),
                                      {group, i, true});
        if (error) {
            handleError(error); // the group stays without its element
            return;
        }
        if (i > 0)
            connect(&element->series.last(), 0, *process, 0);
        element->series.add(process.release());
    }
    connectInput(0, element->series[0], 0, group);
    connectOutput(element->series.last(), 0, 0);
    int at = 0;
    while (at < elements.getCount() && elements[at].group < group)
        ++at;
    elements.insert(at, element.release());
}

void CAudioProcessStack::removeElement(int index)
{
    const CAudioPort& input = *elements[index].series[0].findPort(0);
    disconnectInput(input.getLinks()[0]);
    for (CAudioProcessBase& process : elements[index].series)
        process.detach();
    elements.remove(index);
}

CAudioProcessBase* CAudioProcessStack::findElement(int group) const
{
    for (const CElement& element : elements)
        if (element.group == group)
            return &element.series[0];
    return nullptr;
}

void CAudioProcessStack::process()
{
    if (!pullAndDistribute())
        return;
    for (CElement& element : elements)
        for (CAudioProcessBase& process : element.series)
            process.process();
    collectOutputs();
}

void CAudioProcessStack::listChildren(CArray<CAudioProcessBase*>& children)
{
    for (CElement& element : elements)
        for (CAudioProcessBase& process : element.series)
            children.add(&process);
}

} // namespace tsm
