#pragma once

#include "Audio/CAudioParamUndoHistory.h"
#include "Core/CObject.h"
#include "Platform/CCriticalSection.h"

namespace tsm {

/// The history of one instance's edits, and the way back and forth in it. [any] but the audio
/// thread.
///
/// Its lock comes behind a registry's and before a parameter's; nobody is told of anything under
/// it. An open step needs no lock: it belongs to the thread that records into it.
class CAudioParamUndo : public CObject {
public:
    /// Errors: no collector at the path in `param-collector`. A limit (`undo-count-max`) below 5
    /// counts as 4.
    [[nodiscard]] CError* init() override;
    static void declareClass(CObjectClassInfo& info) { CObject::declareClass(info); }

    /// Takes a finished step in; one without content disappears, and what could be made again
    /// stays.
    void commit(CPtr<CAudioParamUndoData> step);
    /// The titles, of which the first is the state before all steps, and the place among them.
    void getHistory(COwnedArray<CString>& names, std::int32_t& position) const;
    /// Takes steps back or makes them again until `newPosition` of them are applied; a position
    /// out of range does nothing.
    void setPosition(std::int32_t newPosition, bool notify);
    /// Puts the present history into `out` and takes the one in `in`, which is empty then. Either
    /// may be missing; both may be the same holder.
    void exchangeHistory(CPtr<CAudioParamUndoHistory>& out, CPtr<CAudioParamUndoHistory>& in);
    /// Replaces `out` by a deep copy of the present history, or by nothing.
    void cloneHistory(CPtr<CAudioParamUndoHistory>& out) const;

protected:
    /// The list or the place in it is another one. The undo lock isn't held.
    virtual void onHistoryChanged() {}
    /// What derived classes keep beside the history, this lock guards too.
    [[nodiscard]] CCriticalSection& getLock() const noexcept { return lock; }
    [[nodiscard]] CAudioParamCollector& getCollector() const noexcept { return *collector; }

private:
    CTarget<CAudioParamCollector*> collector;
    std::int32_t maxCount = 4;
    mutable CCriticalSection lock{4000};
    CPtr<CAudioParamUndoHistory> history; // none before the first step
};

} // namespace tsm
