#pragma once

#include "Audio/CAudioProcessTerminal.h"
#include "Audio/Processes/CModBypassModule.h"

namespace tsm {

/// A switch between the processed signal (port 0), the dry one (port 1) and silence.
class CModBypass : public CAudioProcessTerminal<CModBypassModule> {};

} // namespace tsm
