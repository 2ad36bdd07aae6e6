#pragma once

#include "Audio/CAudioProcessDef.h"
#include "Audio/CAudioProcessLinkDef.h"
#include "Core/CPtr.h"

namespace tsm {

class CAudioLink;
class CAudioProcessBase;
struct CAudioGraphNode;

/// A wanted or real connection into a node. `source` null is the enclosing process's input.
struct CAudioGraphConnection {
    CAudioGraphNode* source = nullptr;
    int sourcePort = 0;
    int destPort = 0;
    int count = 0;         // wanted links that use it
    int previousCount = 0; // before the last rebuild
    CAudioLink* link = nullptr;
};

/// The engine's record of one child of a process definition, or of the enclosing output.
struct CAudioGraphNode : CTsmMemAllocator {
    const CAudioProcessDefBase* def = nullptr; // null for the enclosing output
    bool isActive = false;                     // not bypassed
    bool isWiring = false;                     // has no running process
    bool isReachable = false;
    bool isVisited = false; // while links through wiring nodes are followed
    CPtr<CAudioProcessBase> instance;
    int instanceUses = 0; // real links from and to the instance
    CArray<CAudioGraphConnection> inputs;
};

/// Works out which links of a process definition are wanted, given the bypass states.
///
/// Children in document order form a chain where the definition wants it; explicit links come
/// beside it. A link through a wiring node becomes links from the node's sources. What no path of
/// port-0 links connects to the enclosing input has no links at all.
class CAudioGraph : public CCheckedObject, public CTsmMemAllocator {
public:
    /// Takes the children of a definition as nodes.
    explicit CAudioGraph(const CAudioProcessDef& definition);
    CAudioGraph(const CAudioGraph&) = delete;
    CAudioGraph& operator=(const CAudioGraph&) = delete;
    ~CAudioGraph();

    /// Sets the counts of all connections; `isStateActive` tells of the definition's bypass states.
    template <class IsActive>
    void compute(const IsActive& isStateActive)
    {
        for (CAudioGraphNode& node : nodes)
            node.isActive =
                !node.def->getIsPrototype() &&
                (node.def->getBypassStateId() < 0 || !isStateActive(node.def->getBypassStateId()));
        CArray<CWantedLink> wanted;
        addChain(wanted);
        for (const auto& set : def.getLinkStates())
            if (set.key == -1)
                for (const CAudioProcessLinkDef* link : set.value)
                    if (isPresent(*link, isStateActive))
                        addLink(*link, wanted);
        apply(wanted);
    }

    /// In document order.
    [[nodiscard]] COwnedArray<CAudioGraphNode>& getNodes() noexcept { return nodes; }
    [[nodiscard]] CAudioGraphNode& getOutput() noexcept { return output; }

private:
    struct CWantedLink {
        CAudioGraphNode* source; // null: the enclosing input
        int sourcePort;
        CAudioGraphNode* dest;
        int destPort;
    };

    template <class IsActive>
    [[nodiscard]] static bool isPresent(const CAudioProcessLinkDef& link,
                                        const IsActive& isStateActive)
    {
        for (const std::int32_t id : link.getBypassStateIds())
            if (isStateActive(id))
                return false;
        return true;
    }
    void addChain(CArray<CWantedLink>& wanted);
    void addLink(const CAudioProcessLinkDef& link, CArray<CWantedLink>& wanted);
    void apply(const CArray<CWantedLink>& wanted);
    static void addConnection(CAudioGraphNode& dest, CAudioGraphNode* source, int sourcePort,
                              int destPort);
    static void connectThrough(CAudioGraphNode& wiring, CAudioGraphNode& dest, int destPort);
    void findReachable();
    void dropUnreachable(CAudioGraphNode& node);

    const CAudioProcessDef& def;
    COwnedArray<CAudioGraphNode> nodes;
    CMap<CString, CAudioGraphNode*> byName;
    CAudioGraphNode output;
};

} // namespace tsm
