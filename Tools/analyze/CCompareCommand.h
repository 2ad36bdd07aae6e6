#pragma once

#include "Tools/analyze/CAnalyzeOptions.h"

namespace tsm {

/// Prints the null depth of two files. False, with a text for the user in `error`, when a file
/// can't be read or the two can't be compared; false without one when standard output takes
/// nothing.
[[nodiscard]] bool runCompareCommand(const CAnalyzeOptions& options, std::string& error);

} // namespace tsm
