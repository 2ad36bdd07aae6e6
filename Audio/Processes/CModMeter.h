#pragma once

#include "Audio/CAudioProcessTerminal.h"
#include "Audio/Processes/CModMeterModule.h"

namespace tsm {

/// A level meter beside the chain: it passes no signal on. A difference meter has the reference on
/// port 1.
class CModMeter : public CAudioProcessTerminal<CModMeterModule> {};

} // namespace tsm
