#pragma once

#include "Audio/CAudioProcessTerminal.h"
#include "Audio/Processes/CModReelpathPostModule.h"

namespace tsm {

/// The process behind the impulse: flutter, roll-off, de-emphasis.
class CModReelpathPost : public CAudioProcessTerminal<CModReelpathPostModule> {};

} // namespace tsm
