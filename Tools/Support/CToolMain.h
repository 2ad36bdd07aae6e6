#pragma once

#include "Core/CError.h"

#include <functional>

namespace tsm {

/// The frame of a tool's main(): runs `work` while signals that end the program only set a mark,
/// and turns its error, which it deletes, into one line on standard error and the exit status 2. A
/// signal that came meanwhile then ends the program as whoever sent it expects.
[[nodiscard]] int runTool(const char* tool, const std::function<CError*()>& work);

} // namespace tsm
