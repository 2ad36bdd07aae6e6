#pragma once

#include "Tools/analyze/CAnalyzeOptions.h"

namespace tsm {

/// Writes spectra as columns of text, the first line naming them, for gnuplot. False, with a text
/// for the user in `error`, when a file can't be read or written.
[[nodiscard]] bool runSpectrumCommand(const CAnalyzeOptions& options, std::string& error);

} // namespace tsm
