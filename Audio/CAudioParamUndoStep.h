#pragma once

#include "Audio/CAudioParamUndo.h"

namespace tsm {

/// A step that is recorded for a scope and committed at its end. Without an undo object nothing is
/// recorded.
class CAudioParamUndoStep {
public:
    /// `undo` is borrowed and may be null.
    CAudioParamUndoStep(CAudioParamUndo* undo, const CString& title) : target(undo)
    {
        if (target)
            data.reset(new CAudioParamUndoData(title));
    }
    ~CAudioParamUndoStep()
    {
        if (target)
            target->commit(std::move(data));
    }
    CAudioParamUndoStep(const CAudioParamUndoStep&) = delete;
    CAudioParamUndoStep& operator=(const CAudioParamUndoStep&) = delete;

    /// For the contexts of the step's changes.
    [[nodiscard]] CAudioParamUndoRecorder* getRecorder() const noexcept { return data.get(); }

private:
    CAudioParamUndo* target;
    CPtr<CAudioParamUndoData> data;
};

} // namespace tsm
