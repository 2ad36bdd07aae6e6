#include "Audio/CAudioProcessStack.h"

#include "Audio/CAudioParam.h"
#include "Audio/CAudioProcessDefBase.h"
#include "Audio/CParamName.h"
#include "Core/CRounding.h"

#include <algorithm>

namespace tsm {
namespace {

constexpr int kMaxSeries = 32;

} // namespace

CAudioProcessStack::~CAudioProcessStack()
{
    CAudioProcessContainer::detach();
}

CError* CAudioProcessStack::init()
{
    TSM_TRY(CAudioProcessContainer::init());
    const CString& name = getDefinition().getStackParam();
    if (!name.isEmpty())
        seriesParam = findParamByFullName(resolveName(name, getPath()))
                          .subscribe(&dirtyGroups, getParamsChangedFlag());
    return nullptr;
}

std::uint32_t CAudioProcessStack::findGroups()
{
    std::uint32_t mask = 0;
    for (const CAudioPort& port : getPorts())
        for (int i = 0; i < port.getChannelCount(); ++i)
            if (port.getChannel(i).group < kMaxParamGroups)
                mask |= 1u << port.getChannel(i).group;
    return mask;
}

void CAudioProcessStack::update()
{
    const std::uint32_t mask = findGroups();
    for (int i = elements.getCount() - 1; i >= 0; --i)
        if (!isWanted(elements[i], mask))
            removeElement(i);
    for (int group = 0; group < kMaxParamGroups; ++group)
        if (mask >> group & 1u && !findElement(group))
            addElement(group);
    for (CElement& element : elements)
        linkInputs(element);
    if (getInputsChanged())
        publishInputs();
}

bool CAudioProcessStack::isWanted(const CElement& element, std::uint32_t groups) const
{
    return (groups >> element.group & 1u) &&
           element.series.getCount() == seriesLength(element.group);
}

int CAudioProcessStack::seriesLength(int group) const
{
    if (!seriesParam)
        return 1;
    return std::clamp(roundToInt(seriesParam->values->value(group, 0, 1.0)), 1, kMaxSeries);
}

/// A group whose element can't be made stays without one, and without a signal.
void CAudioProcessStack::addElement(int group)
{
    CPtr<CElement> element(new CElement);
    element->group = group;
    if (CError* error = fillSeries(*element)) {
        handleError(error);
        return;
    }
    connectOutput(element->series.last(), 0, 0);
    int at = 0;
    while (at < elements.getCount() && elements[at].group < group)
        ++at;
    elements.insert(at, element.release());
}

CError* CAudioProcessStack::fillSeries(CElement& element)
{
    const int length = seriesLength(element.group);
    for (int i = 0; i < length; ++i) {
        CPtr<CAudioProcessBase> process;
        const CAudioProcessPlace place{element.group, i, true};
        const auto errorContext = [this] { return getDefinition().getFullName(); };
        TSM_TRY(createProcess(process, getDefinition(), getContext(), this, getPath(), place));
        if (i > 0)
            connect(&element.series.last(), 0, *process, 0);
        element.series.add(process.release());
    }
    return nullptr;
}

/// Each input port leads to the same port of the first instance; ports may come later than it.
void CAudioProcessStack::linkInputs(CElement& element)
{
    CAudioProcessBase& first = element.series[0];
    for (const CAudioPort& port : getPorts())
        if (first.getPort(port.getIndex()).getLinks().isEmpty())
            connectInput(port.getIndex(), first, port.getIndex(), element.group);
}

void CAudioProcessStack::removeElement(int index)
{
    CElement& element = elements[index];
    for (const CAudioPort& port : getPorts())
        if (const CAudioPort* input = element.series[0].findPort(port.getIndex()))
            while (!input->getLinks().isEmpty())
                disconnectInput(input->getLinks().last());
    for (CAudioProcessBase& process : element.series)
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

void CAudioProcessStack::listSteps(CAudioGraphSteps& steps)
{
    listInput(steps);
    for (CElement& element : elements)
        for (CAudioProcessBase& process : element.series)
            process.listSteps(steps);
    listOutput(steps);
}

void CAudioProcessStack::process()
{
    pullAndDistribute();
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
