#pragma once

#include "Audio/CAudioProcessBase.h"

namespace tsm {

/// A process that holds others. Its inputs are handed to links toward its children, its outputs are
/// what the children feed into its outlet.
class CAudioProcessContainer : public CAudioProcessBase {
public:
    void reset() override;
    void detach() override;
    void publishTo(CAudioLink& link) override;
    void processSteady() override { pullAndDistribute(); }

protected:
    /// The inner end of the outputs: collects what children feed into it, port for port, and hands
    /// it to the links of the container.
    class COutlet : public CAudioProcessBase {
    public:
        explicit COutlet(CAudioProcessContainer& container) : owner(container) {}
        void update() override;
        void process() override;
        void publishPort(CAudioPort& port);
        void listSteps(CAudioGraphSteps& steps) override;

    protected:
        /// The mode of the container's definition is for its inputs.
        [[nodiscard]] EInputCombo getInputCombo() const override { return EInputCombo::Sum; }

    private:
        CAudioProcessContainer& owner;
    };

    /// Links an input port of the container to a child. With `group` 0 or above only the channels
    /// of that group go along.
    CAudioLink& connectInput(int sourcePort, CAudioProcessBase& child, int childPort,
                             int group = -1);
    void disconnectInput(CAudioLink& link);
    /// Links a child to an output port of the container.
    CAudioLink& connectOutput(CAudioProcessBase& child, int childPort, int port);
    /// The outlet, which stands at the container's own place.
    [[nodiscard]] COutlet& getOutlet();
    /// Publishes the inputs' format on all inner links.
    void publishInputs();
    /// Takes the inputs and hands them to the inner links. The children run in any case: without
    /// channels there are no samples, but the children and their readers have to hear of it.
    void pullAndDistribute();
    /// Has the outlet hand on what the children have made.
    void collectOutputs() { getOutlet().process(); }

    /// For `listSteps`: what stays to be done in front of the children, and behind them.
    void listInput(CAudioGraphSteps& steps);
    void listOutput(CAudioGraphSteps& steps) { getOutlet().listSteps(steps); }

    /// The running children, for `reset` and `detach`, in any order.
    virtual void listChildren(CArray<CAudioProcessBase*>& children) = 0;

private:
    struct CInnerLink {
        CAudioLink* link;
        int group;            // -1 for all
        int sentCount = 0;    // channels of this sub-block so far
        bool isWhole = false; // takes all channels of its port
    };

    void publishInput(CInnerLink& inner);
    /// Whether a channel of an input port is among those of the link.
    [[nodiscard]] static bool goesAlong(const CInnerLink& inner, const CAudioPort& port,
                                        int channel);

    CArray<CInnerLink> innerLinks; // owned by the children's ports
    CPtr<COutlet> outlet;
};

} // namespace tsm
