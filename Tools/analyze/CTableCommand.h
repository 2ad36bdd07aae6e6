#pragma once

#include "Tools/analyze/CAnalyzeOptions.h"

namespace tsm {

/// Prints the table of levels and distortion. False, with a text for the user in `error`, when a
/// file can't be read; false without one when standard output takes nothing.
[[nodiscard]] bool runTableCommand(const CAnalyzeOptions& options, std::string& error);

} // namespace tsm
