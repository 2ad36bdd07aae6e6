#pragma once

#include "Audio/CAudioParamChange.h"

namespace tsm {

/// Writes a change in the form that messages carry: place and shape, then the numbers, or ids from
/// 1 on and the table of texts or blocks. Errors: the stream's.
[[nodiscard]] CError* writeParamChange(COutputStream& stream, const CAudioParamChange& change);

/// Reads what writeParamChange() wrote into a fresh change. Memory grows with what the data really
/// hold. Errors: cut data, an unknown type, counts or a place that no parameter has.
[[nodiscard]] CError* readParamChange(CInputStream& stream, CAudioParamChange& change);

} // namespace tsm
