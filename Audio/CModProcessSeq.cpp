#include "Audio/CModProcessSeq.h"

namespace tsm {

CModProcessSeq::~CModProcessSeq()
{
    CAudioProcessContainer::detach();
}

void CModProcessSeq::update()
{
    if (links.isEmpty())
        link(0);
    if (getInputsChanged())
        publishInputs();
}

/// Makes the link in front of `chain[index]`, or behind the last one.
void CModProcessSeq::link(int index)
{
    const bool isFirst = index == 0;
    const bool isLast = index == chain.getCount();
    CAudioProcessBase& target = isLast ? getOutlet() : chain[index];
    CAudioLink& made =
        isFirst ? connectInput(0, target, 0) : connect(&chain[index - 1], 0, target, 0);
    links.insert(index, &made);
}

void CModProcessSeq::unlink(int index)
{
    CAudioLink& gone = *links[index];
    links.remove(index);
    if (index == 0)
        disconnectInput(gone);
    else
        disconnect(gone);
}

void CModProcessSeq::insertProcess(int index, CPtr<CAudioProcessBase> process)
{
    if (!links.isEmpty())
        unlink(index);
    chain.insert(index, process.release());
    link(index);
    link(index + 1);
}

void CModProcessSeq::removeProcess(int index)
{
    unlink(index + 1);
    unlink(index);
    chain[index].detach();
    chain.remove(index);
    link(index);
}

void CModProcessSeq::listSteps(CAudioGraphSteps& steps)
{
    listInput(steps);
    for (CAudioProcessBase& child : chain)
        child.listSteps(steps);
    listOutput(steps);
}

void CModProcessSeq::process()
{
    pullAndDistribute();
    for (CAudioProcessBase& child : chain)
        child.process();
    collectOutputs();
}

void CModProcessSeq::listChildren(CArray<CAudioProcessBase*>& children)
{
    for (CAudioProcessBase& child : chain)
        children.add(&child);
}

} // namespace tsm
