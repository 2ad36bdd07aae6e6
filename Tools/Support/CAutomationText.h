#pragma once

#include "Core/CError.h"

#include <vector>

namespace tsm {

/// One point of an automation: from `seconds` on the parameter has the value shown as `text`.
struct CAutomationPoint {
    double seconds = 0.0;
    CString text;
};

/// Reads "t:v,t:v,...": seconds with a point as decimal separator, and display texts. The points
/// come sorted by time, those of one time in the order given.
/// Errors: no point, a point without ":", a time that is no number or negative, an empty text.
[[nodiscard]] CError* parseAutomationText(const CString& text,
                                          std::vector<CAutomationPoint>& points);

} // namespace tsm
