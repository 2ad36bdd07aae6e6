#pragma once

#include "Audio/Processes/TapeKernels.h"

namespace tsm {

// The tables of the two builds; the one with fused multiply-add must not be called without a check
// of the processor.
extern const CTapeKernels kTapeKernelsGeneric;
extern const CTapeKernels kTapeKernelsFma;

} // namespace tsm
