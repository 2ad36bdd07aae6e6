#pragma once

#include "Audio/CAudioProcessTerminal.h"
#include "Audio/Processes/CModLatencyUniformerModule.h"

namespace tsm {

/// Pads the chain to a latency that depends on nothing but the sample rate.
class CModLatencyUniformer : public CAudioProcessTerminal<CModLatencyUniformerModule> {};

} // namespace tsm
