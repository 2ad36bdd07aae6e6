#pragma once

#include "Audio/CAudioGraph.h"
#include "Audio/CAudioParamSubscription.h"
#include "Audio/CAudioProcessContainer.h"

namespace tsm {

class CAudioProcessBypassStateDef;

/// A running graph of processes, as a process definition draws it. It is rebuilt between two
/// sub-blocks when a bypass state may have changed; links that stay are not disturbed.
class CAudioProcess : public CAudioProcessContainer {
public:
    ~CAudioProcess() override;

    [[nodiscard]] CError* init() override;
    void update() override;
    void process() override;
    void listSteps(CAudioGraphSteps& steps) override;

    /// The running child of that name, or null.
    [[nodiscard]] CAudioProcessBase* findChild(const CString& name) const;
    /// The running children in the order of their work.
    [[nodiscard]] const CArray<CAudioProcessBase*>& getSequence() const noexcept
    {
        return sequence;
    }

protected:
    void listChildren(CArray<CAudioProcessBase*>& children) override;

private:
    /// A bypass state and what it watches.
    struct CBypassState : CTsmMemAllocator {
        const CAudioProcessBypassStateDef* def = nullptr;
        CAudioParamSubscriptionPtr param;
        CAudioParamSubscriptionPtr andParam; // null for none
        std::uint32_t dirtyGroups = 0;
    };

    void watch(CBypassState& state);
    [[nodiscard]] double read(const CAudioParamSubscriptionPtr& param) const;
    [[nodiscard]] bool isStateActive(int id) const;
    [[nodiscard]] bool takeStateChanges();
    void rebuildGraph();
    void dropLinks(CAudioGraphNode& node);
    void makeLinks(CAudioGraphNode& node);
    void makeLink(CAudioGraphNode& node, CAudioGraphConnection& connection);
    void removeLink(CAudioGraphNode& node, const CAudioGraphConnection& connection);
    static void use(CAudioGraphNode* node, int change);
    void endUnused();
    [[nodiscard]] bool create(CAudioGraphNode* node);
    void orderSequence();

    CPtr<CAudioGraph> graph;
    COwnedArray<CBypassState> bypassStates;
    bool graphDirty = true;
    CArray<CAudioProcessBase*> sequence;
};

} // namespace tsm
