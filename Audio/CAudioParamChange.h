#pragma once

#include "Audio/CAudioParamData.h"
#include "Core/CArray.h"

namespace tsm {

/// One change of a parameter's values: elements of one group, or of all.
struct CAudioParamChange {
    std::int32_t group = 0; // kAllParamGroups for all
    std::int32_t firstElement = 0;
    std::int32_t elementCount = 0;
    bool complete = false; // this is the whole of the group's data
    CAudioParamShape shape;
    CArray<double> values; // elementCount * elementSize; ids in `data` for texts and blocks
    CAudioParamData data;

    /// True when the counts agree with each other and with the limits. Changes from outside are
    /// asked before they are applied.
    [[nodiscard]] bool isValid() const noexcept;
    /// Brings the place into the form that the shape leaves: group 0 of a single-group parameter,
    /// element 0 of a single-element one. The change is valid.
    void normalize();
    /// True when `other` is for the same group and adjoins or overlaps, so that it can be merged.
    [[nodiscard]] bool adjoins(const CAudioParamChange& other) const noexcept;
    /// Takes the later change `newer` in: applying the result is applying both, in order. `newer`
    /// adjoins and is left without values.
    void merge(CAudioParamChange& newer);
    /// Appends one item's value.
    void addItem(CPtr<CAudioParamDataItem> item);
    /// Copies the item at value index `index`; one of the shape's type, empty, when it is missing.
    [[nodiscard]] CPtr<CAudioParamDataItem> copyItem(int index) const;
};

} // namespace tsm
