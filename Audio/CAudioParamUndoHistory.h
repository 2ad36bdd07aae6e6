#pragma once

#include "Audio/CAudioParamUndoData.h"

namespace tsm {

/// The steps of a state of the parameters, oldest first. Steps from `position` on are taken back
/// and can be made again.
struct CAudioParamUndoHistory : CCheckedObject, CTsmMemAllocator {
    CAudioParamUndoHistory() = default;
    /// A deep copy.
    CAudioParamUndoHistory(const CAudioParamUndoHistory& other);
    CAudioParamUndoHistory& operator=(const CAudioParamUndoHistory&) = delete;

    /// Takes a step in: merges it into the one before where both allow that, else drops what could
    /// be made again, and of more than `maxCount` steps the oldest. Tells whether the list has
    /// changed.
    bool add(CPtr<CAudioParamUndoData> step, int maxCount);

    COwnedArray<CAudioParamUndoData> records;
    std::int32_t position = 0; // steps that are applied now
};

} // namespace tsm
