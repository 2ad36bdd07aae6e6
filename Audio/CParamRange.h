#pragma once

#include "Core/CString.h"

#include <cstdint>

namespace tsm {

/// A range of values in steps: "[min;max]" or "[min;max;step]", with "(" and ")" for bounds that
/// are left out and "*" for one that is open. Without a step it is 0.01. Values and bounds are
/// compared as numbers of steps, rounded half away from zero.
struct CParamRange {
    bool present = false;
    std::int32_t min = 0; // in steps
    bool minOpen = false;
    bool minInclusive = false;
    std::int32_t max = 0;
    bool maxOpen = false;
    bool maxInclusive = false;
    double step = 0.01;

    /// Reads a range; false, and nothing present, for any other text.
    [[nodiscard]] bool parse(const CString& text);
    /// True when `value` lies in the range.
    [[nodiscard]] bool contains(double value) const noexcept;
};

} // namespace tsm
