#pragma once

#include <string>

namespace tsm {

/// The absolute path, in UTF-8, of the file that this code was loaded from: the plug-in's own
/// library inside a host, else the program. Empty when the system doesn't tell. [any]
[[nodiscard]] std::string modulePath();

} // namespace tsm
