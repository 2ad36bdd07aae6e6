#pragma once

#include "Audio/CAudioProcessTerminal.h"
#include "Audio/Processes/CModGainModule.h"

namespace tsm {

/// A gain with mute and phase inversion.
class CModGain : public CAudioProcessTerminal<CModGainModule> {};

} // namespace tsm
