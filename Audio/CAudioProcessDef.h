#pragma once

#include "Audio/CAudioProcessDefBase.h"

namespace tsm {

class CAudioProcessBypassStateDef;
class CAudioProcessLinkDef;

/// A process that holds a graph of others. Tag `audio:process-def`.
class CAudioProcessDef : public CAudioProcessDefBase {
public:
    [[nodiscard]] CError* init() override;
    /// Collects the children. A child of a class that isn't known takes no part.
    [[nodiscard]] CError* initChilds() override;
    static void declareClass(CObjectClassInfo& info) { CAudioProcessDefBase::declareClass(info); }

    [[nodiscard]] CAudioProcessBase* createInstance() const override;

    /// The processes in document order are linked one to the next.
    [[nodiscard]] bool getIsAutoLinks() const noexcept { return isAutoLinks; }
    [[nodiscard]] const CArray<const CAudioProcessDefBase*>& getProcesses() const noexcept
    {
        return processes;
    }
    /// The explicit links by their set; -1 is the set that is always there.
    [[nodiscard]] const CMap<std::int32_t, CArray<const CAudioProcessLinkDef*>>&
    getLinkStates() const noexcept
    {
        return linkStates;
    }
    [[nodiscard]] const CArray<const CAudioProcessBypassStateDef*>& getBypassStates() const noexcept
    {
        return bypassStates;
    }

private:
    bool isAutoLinks = false;
    CArray<const CAudioProcessDefBase*> processes;
    CMap<std::int32_t, CArray<const CAudioProcessLinkDef*>> linkStates;
    CArray<const CAudioProcessBypassStateDef*> bypassStates;
};

} // namespace tsm
