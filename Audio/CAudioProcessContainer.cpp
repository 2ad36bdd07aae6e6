#include "Audio/CAudioProcessContainer.h"

#include "Audio/CAudioGraphSteps.h"

namespace tsm {

// The outlet

void CAudioProcessContainer::COutlet::update()
{
    for (CAudioPort& port : getPorts())
        publishPort(port);
}

void CAudioProcessContainer::COutlet::publishPort(CAudioPort& port)
{
    CAudioFormat format;
    format.sampleRate = getSampleRate();
    for (int i = 0; i < port.getChannelCount(); ++i)
        format.add(port.getChannel(i));
    owner.publish(format, port.getIndex());
}

void CAudioProcessContainer::COutlet::process()
{
    if (!beginPull())
        return;
    for (CAudioPort& port : getPorts())
        for (int i = 0; i < port.getChannelCount(); ++i)
            owner.send(i, takeInput(port, i), getBlockLength(), port.getIndex());
}

void CAudioProcessContainer::COutlet::listSteps(CAudioGraphSteps& steps)
{
    CAudioPort* const port = getPorts().getCount() == 1 ? &getPorts()[0] : nullptr;
    CAudioLink* const from = port ? port->findStraightLink() : nullptr;
    CAudioLink* const to = port ? owner.findSoleOutLink(port->getIndex()) : nullptr;
    if (!from || !to) {
        steps.add(*this);
        return;
    }
    // Its formats change only while another process is brought up to date; it has no parameters.
    if (needsUpdate())
        steps.watch(*this);
    steps.tie(*from, *to);
}

// The container

CAudioProcessContainer::COutlet& CAudioProcessContainer::getOutlet()
{
    if (!outlet) {
        outlet.reset(new COutlet(*this));
        outlet->place(getDefinition(), getContext(), this, getPath(),
                      {getGroupIndex(), 0, getIsStackElement()});
    }
    return *outlet;
}

CAudioLink& CAudioProcessContainer::connectInput(int sourcePort, CAudioProcessBase& child,
                                                 int childPort, int group)
{
    CAudioLink& link = child.getPort(childPort).addLink(nullptr, sourcePort);
    innerLinks.add({&link, group});
    publishInput(innerLinks.last());
    return link;
}

void CAudioProcessContainer::disconnectInput(CAudioLink& link)
{
    for (int i = 0; i < innerLinks.getCount(); ++i)
        if (innerLinks[i].link == &link) {
            innerLinks.remove(i);
            break;
        }
    disconnect(link);
}

CAudioLink& CAudioProcessContainer::connectOutput(CAudioProcessBase& child, int childPort, int port)
{
    return connect(&child, childPort, getOutlet(), port);
}

void CAudioProcessContainer::publishTo(CAudioLink& link)
{
    if (CAudioPort* port = getOutlet().findPort(link.getSourcePort()))
        getOutlet().publishPort(*port);
}

void CAudioProcessContainer::publishInputs()
{
    for (CInnerLink& inner : innerLinks)
        publishInput(inner);
}

bool CAudioProcessContainer::goesAlong(const CInnerLink& inner, const CAudioPort& port, int channel)
{
    return inner.link->getSourcePort() == port.getIndex() &&
           (inner.isWhole || inner.group < 0 ||
            port.getChannel(channel).group == static_cast<unsigned>(inner.group));
}

void CAudioProcessContainer::publishInput(CInnerLink& inner)
{
    const CAudioPort* port = findPort(inner.link->getSourcePort());
    inner.isWhole = false;
    if (!port)
        return;
    CAudioFormat format;
    format.sampleRate = getSampleRate();
    for (int i = 0; i < port->getChannelCount(); ++i)
        if (goesAlong(inner, *port, i))
            format.add(port->getChannel(i));
    inner.isWhole = format.channelCount == port->getChannelCount();
    inner.link->publish(format);
}

void CAudioProcessContainer::listInput(CAudioGraphSteps& steps)
{
    const bool isOne = innerLinks.getCount() == 1 && getPorts().getCount() == 1;
    const bool isPassed = isOne && innerLinks[0].isWhole && !steps.isAtRoot();
    CAudioLink* const from = isPassed ? getPorts()[0].findStraightLink() : nullptr;
    if (!from) {
        steps.add(*this);
        return;
    }
    steps.watch(*this);
    steps.tie(*from, *innerLinks[0].link);
}

void CAudioProcessContainer::pullAndDistribute()
{
    if (!beginPull())
        return;
    for (CInnerLink& inner : innerLinks)
        inner.sentCount = 0;
    for (CAudioPort& port : getPorts())
        for (int i = 0; i < port.getChannelCount(); ++i) {
            const CAudioBlockRef block = takeInput(port, i);
            for (CInnerLink& inner : innerLinks)
                if (goesAlong(inner, port, i))
                    inner.link->put(inner.sentCount++, block, getBlockLength());
        }
}

void CAudioProcessContainer::reset()
{
    CAudioProcessBase::reset();
    CArray<CAudioProcessBase*> children;
    listChildren(children);
    for (CAudioProcessBase* child : children)
        child->reset();
    getOutlet().reset();
}

void CAudioProcessContainer::detach()
{
    while (!innerLinks.isEmpty())
        disconnectInput(*innerLinks.last().link);
    CArray<CAudioProcessBase*> children;
    listChildren(children);
    for (CAudioProcessBase* child : children)
        child->detach();
    CAudioProcessBase::detach();
}

} // namespace tsm
