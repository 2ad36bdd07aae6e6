#pragma once

#include "Audio/CAudioParamUndoItem.h"
#include "Core/CMap.h"
#include "Core/COwnedArray.h"

namespace tsm {

class CAudioParam;

/// What a step did to one parameter.
struct CAudioParamUndoEntry : CCheckedObject, CTsmMemAllocator {
    CAudioParamUndoEntry() = default;
    /// A deep copy, without open gestures.
    CAudioParamUndoEntry(const CAudioParamUndoEntry& other);
    CAudioParamUndoEntry& operator=(const CAudioParamUndoEntry&) = delete;

    /// The item of a group, or null.
    [[nodiscard]] CAudioParamUndoItem* find(std::int32_t group) noexcept;

    COwnedArray<CAudioParamUndoItem> items; // one a group, in the order of first touch
    /// Where a gesture is open towards the host: element * 256 + group to the parameter.
    CMap<std::uint32_t, CAudioParam*> editedElements;
};

} // namespace tsm
