#pragma once

#include "Tools/analyze/CAnalyzeOptions.h"

namespace tsm {

/// Prints the null depth of two files. False, with a text for the user in
/// `error`, when a file can't be read or written.
[[nodiscard]] bool runCompareCommand(const CAnalyzeOptions& options, std::string& error);

} // namespace tsm
