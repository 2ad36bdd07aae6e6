#include "Audio/Processes/TapeKernelBuilds.h"

#define TSM_TAPE_FMA 0
#include "Audio/Processes/TapeStageKernel.inl"

namespace tsm {

const CTapeKernels kTapeKernelsGeneric{&updateTape, &updatePost, &processTape, &processPost,
                                       &saturateValue};

} // namespace tsm
