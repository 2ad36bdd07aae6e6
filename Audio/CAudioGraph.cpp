#include "Audio/CAudioGraph.h"

#include "Audio/CAudioProcessBase.h"

namespace tsm {

CAudioGraph::CAudioGraph(const CAudioProcessDef& definition) : def(definition)
{
    for (const CAudioProcessDefBase* child : definition.getProcesses()) {
        CAudioGraphNode& node = nodes.create();
        node.def = child;
        node.isWiring = child->getIsWiring();
        byName[lastName(*child)] = &node;
    }
}

CAudioGraph::~CAudioGraph() = default;

void CAudioGraph::addChain(CArray<CWantedLink>& wanted)
{
    if (!def.getIsAutoLinks())
        return;
    CAudioGraphNode* last = nullptr; // the enclosing input
    for (CAudioGraphNode& node : nodes)
        if (node.isActive && !node.def->getIsOutOfOrder()) {
            wanted.add({last, 0, &node, 0});
            last = &node;
        }
    wanted.add({last, 0, &output, 0});
}

/// Ends that are missing or bypassed leave the link out without a word.
void CAudioGraph::addLink(const CAudioProcessLinkDef& link, CArray<CWantedLink>& wanted)
{
    const auto find = [&](const CAudioProcessLinkDef::CEnd& end, CAudioGraphNode* enclosing,
                          CAudioGraphNode*& node) {
        node = end.isEnclosing() ? enclosing : byName.get(end.name);
        return end.isEnclosing() || (node && node->isActive);
    };
    CAudioGraphNode* source = nullptr;
    CAudioGraphNode* dest = nullptr;
    if (find(link.getSource(), nullptr, source) && find(link.getDestination(), &output, dest))
        wanted.add({source, link.getSource().port, dest, link.getDestination().port});
}

void CAudioGraph::apply(const CArray<CWantedLink>& wanted)
{
    const auto begin = [](CAudioGraphNode& node) {
        for (CAudioGraphConnection& connection : node.inputs)
            connection.previousCount = std::exchange(connection.count, 0);
    };
    for (CAudioGraphNode& node : nodes)
        begin(node);
    begin(output);

    // Wiring nodes first, so that links out of them find their sources.
    for (const CWantedLink& link : wanted)
        if (link.dest->isWiring)
            addConnection(*link.dest, link.source, link.sourcePort, link.destPort);
    for (const CWantedLink& link : wanted) {
        if (link.dest->isWiring)
            continue;
        if (link.source && link.source->isWiring) {
            for (CAudioGraphNode& node : nodes)
                node.isVisited = false;
            connectThrough(*link.source, *link.dest, link.destPort);
        } else {
            addConnection(*link.dest, link.source, link.sourcePort, link.destPort);
        }
    }
    findReachable();
    for (CAudioGraphNode& node : nodes)
        dropUnreachable(node);
    dropUnreachable(output);
}

void CAudioGraph::addConnection(CAudioGraphNode& dest, CAudioGraphNode* source, int sourcePort,
                                int destPort)
{
    for (CAudioGraphConnection& connection : dest.inputs)
        if (connection.source == source && connection.sourcePort == sourcePort &&
            connection.destPort == destPort) {
            ++connection.count;
            return;
        }
    dest.inputs.add({source, sourcePort, destPort, 1, 0, nullptr});
}

/// Connects the sources of a wiring node, and of those behind it, to `dest`.
void CAudioGraph::connectThrough(CAudioGraphNode& wiring, CAudioGraphNode& dest, int destPort)
{
    if (wiring.isVisited)
        return; // a node that is met again, in a ring or by another way, brings nothing new
    wiring.isVisited = true;
    for (const CAudioGraphConnection& connection : wiring.inputs) {
        if (connection.count == 0)
            continue;
        if (connection.source && connection.source->isWiring)
            connectThrough(*connection.source, dest, destPort);
        else
            addConnection(dest, connection.source, connection.sourcePort, destPort);
    }
}

void CAudioGraph::findReachable()
{
    for (CAudioGraphNode& node : nodes)
        node.isReachable = false;
    for (bool isAnyNew = true; isAnyNew;) {
        isAnyNew = false;
        for (CAudioGraphNode& node : nodes) {
            if (node.isReachable || node.isWiring)
                continue;
            for (const CAudioGraphConnection& connection : node.inputs)
                node.isReachable |= connection.count > 0 && connection.destPort == 0 &&
                                    (!connection.source || connection.source->isReachable);
            isAnyNew |= node.isReachable;
        }
    }
}

void CAudioGraph::dropUnreachable(CAudioGraphNode& node)
{
    const bool isOutput = &node == &output;
    for (CAudioGraphConnection& connection : node.inputs)
        if (!node.isWiring && ((!isOutput && !node.isReachable) ||
                               (connection.source && !connection.source->isReachable)))
            connection.count = 0;
}

} // namespace tsm
