#pragma once

#include "Audio/CAudioPreset.h"

namespace tsm {

/// Tells whether a product can use a routing preset, whose items are named relative to the routing
/// parameters: one with mid-side pairs needs a product with those, one with a side-chain a product
/// with that. An item that is missing or damaged counts as neutral. [any]
[[nodiscard]] bool isRoutingPresetUsable(const CAudioPreset& preset, bool useMidSide,
                                         bool useSidechain);

} // namespace tsm
