#pragma once

#include "Audio/CAudioParamChange.h"
#include "Audio/CAudioParamStorage.h"

namespace tsm {

/// One group of a parameter as it was before a step and as it is behind it: whole groups, whatever
/// elements the step touched. Texts and blocks are copies of the item's own.
struct CAudioParamUndoItem : CCheckedObject, CTsmMemAllocator {
    std::int32_t group = 0;
    CAudioParamShape shape;
    CAudioParamChange undo; // complete changes; `redo` has no elements until the first after image
    CAudioParamChange redo;

    /// Takes the image before the step; with `asEmpty` of a group without elements.
    void takeBefore(std::int32_t ofGroup, const CAudioParamStorage& storage, bool asEmpty);
    /// Takes the image behind the step, in place of a former one. A storage of another shape is
    /// left out.
    void takeAfter(const CAudioParamStorage& storage, bool asEmpty);
    /// Whether a later step on the same place leads to as many elements of the same shape.
    [[nodiscard]] bool isLike(const CAudioParamUndoItem& newer) const noexcept;

private:
    void take(CAudioParamChange& image, const CAudioParamStorage& storage, bool asEmpty) const;
};

} // namespace tsm
