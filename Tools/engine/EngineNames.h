#pragma once

namespace tsm {

/// Where an instance has the parameters that users and hosts can reach.
inline constexpr const char* kMainPath = "plugin.modMain.";
/// The sources of what the editor's meters show.
inline constexpr const char* kMeterNames[] = {"plugin.modMain.modMeterOut",
                                              "plugin.modMain.modMeterIODiff"};

} // namespace tsm
