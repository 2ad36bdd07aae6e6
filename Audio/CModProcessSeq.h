#pragma once

#include "Audio/CAudioProcessContainer.h"

namespace tsm {

/// A process that holds a chain of others, which may grow and shrink while it runs. A class that
/// derives from it decides in its `update` what the chain contains. An empty chain passes its
/// inputs through.
class CModProcessSeq : public CAudioProcessContainer {
public:
    ~CModProcessSeq() override;

    /// Publishes the inputs' format to the first of the chain.
    void update() override;
    void process() override;
    void listSteps(CAudioGraphSteps& steps) override;

    [[nodiscard]] int getChainLength() const noexcept { return chain.getCount(); }

protected:
    /// Puts a process into the chain at `index`; the links to its neighbours are made anew.
    void insertProcess(int index, CPtr<CAudioProcessBase> process);
    /// Takes the process at `index` out, deletes it and joins its neighbours.
    void removeProcess(int index);
    void listChildren(CArray<CAudioProcessBase*>& children) override;

private:
    void link(int index);
    void unlink(int index);

    COwnedArray<CAudioProcessBase> chain;
    CArray<CAudioLink*> links; // links[i] leads into chain[i], the last one out of the chain
};

} // namespace tsm
