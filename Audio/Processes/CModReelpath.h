#pragma once

#include "Audio/CAudioProcessTerminal.h"
#include "Audio/Processes/CModReelpathModule.h"

namespace tsm {

/// The process of the tape stage: emphasis, flutter, saturation.
class CModReelpath : public CAudioProcessTerminal<CModReelpathModule> {};

} // namespace tsm
