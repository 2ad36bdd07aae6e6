#include "Audio/CAudioProcessContainer.h"

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
    if (!pull())
        return;
    for (CAudioPort& port : getPorts())
        for (int i = 0; i < port.getChannelCount(); ++i)
            owner.send(i, std::exchange(port.getChannel(i).buffer, {}), getBlockLength(),
                       port.getIndex());
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
    for (const CInnerLink& inner : innerLinks)
        publishInput(inner);
}

void CAudioProcessContainer::publishInput(const CInnerLink& inner)
{
    const CAudioPort* port = findPort(inner.link->getSourcePort());
    if (!port)
        return;
    CAudioFormat format;
    format.sampleRate = getSampleRate();
    for (int i = 0; i < port->getChannelCount(); ++i)
        if (inner.group < 0 || port->getChannel(i).group == static_cast<unsigned>(inner.group))
            format.add(port->getChannel(i));
    inner.link->publish(format);
}

void CAudioProcessContainer::pullAndDistribute()
{
    if (!pull())
        return;
    for (const CInnerLink& inner : innerLinks)
        distribute(inner);
    releaseInputs();
}

void CAudioProcessContainer::distribute(const CInnerLink& inner)
{
    const CAudioPort* port = findPort(inner.link->getSourcePort());
    int index = 0;
    for (int i = 0; port && i < port->getChannelCount(); ++i)
        if (inner.group < 0 || port->getChannel(i).group == static_cast<unsigned>(inner.group))
            inner.link->put(index++, port->getChannel(i).buffer, getBlockLength());
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
