#pragma once

#include "Tools/hostlib/CVstBundle.h"

#include <string>

namespace tsm {

/// The text of a bundle's `moduleinfo.json`, made of what its factory tells, so that hosts that
/// list plug-ins without loading them read the same.
[[nodiscard]] std::string makeModuleInfo(const CVstBundle& bundle);

} // namespace tsm
