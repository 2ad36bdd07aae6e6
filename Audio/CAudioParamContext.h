#pragma once

#include "Audio/CAudioParamStorage.h"

namespace tsm {

class CAudioParamBatch;

/// What keeps the images of a change for taking it back. An implementation is bound to one open
/// record. Called under the parameter's lock, on the thread of the change.
class CAudioParamUndoRecorder : public CCheckedObject {
public:
    virtual ~CAudioParamUndoRecorder() = default;
    /// The group as it is before the change; with `asEmpty` it counts as one without elements.
    virtual void recordBefore(const CString& paramName, std::int32_t group,
                              const CAudioParamStorage& storage, bool asEmpty) = 0;
    /// The group as it is behind the change.
    virtual void recordAfter(const CString& paramName, std::int32_t group,
                             const CAudioParamStorage& storage, bool asEmpty) = 0;
};

/// The caller's transaction, which several changes share. All pointers are borrowed.
struct CAudioParamContext {
    /// Collects the changes for the engine, which then sees them at one time; the caller hands it
    /// to CAudioParamCollector::queueBatch. Null: each change goes to the queue by itself.
    CAudioParamBatch* batch = nullptr;
    /// Takes the images of storable and persistent parameters. Null: the change leaves no trace.
    CAudioParamUndoRecorder* undo = nullptr;
};

} // namespace tsm
