#pragma once

#include <string>

namespace tsm {

/// The folder in which the user's programs keep their data, as an absolute path in UTF-8 without a
/// slash at its end; empty when the user has none. It need not exist. [any]
[[nodiscard]] std::string userDataFolder();
/// The same for data that all users of the machine share.
[[nodiscard]] std::string commonDataFolder();

} // namespace tsm
