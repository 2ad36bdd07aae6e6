#include "Audio/Processes/TapeKernelBuilds.h"

#define TSM_TAPE_FMA 1
#include "Audio/Processes/TapeStageKernel.inl"

namespace tsm {

const CTapeKernels kTapeKernelsFma{&updateTape, &updatePost, &processTape, &processPost,
                                   &saturateValue};

} // namespace tsm
