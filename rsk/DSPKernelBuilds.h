#pragma once

#include "rsk/DSPKernels.h"

namespace tsm::rsk {

// The tables of the builds; all but the generic one must not be called without a check of the
// processor.
extern const CDSPKernels kDSPKernelsGeneric;
extern const CDSPKernels kDSPKernelsFma;
extern const CDSPKernels kDSPKernelsAvx512;

/// A build's table from the functions that the kernels' sources define, all in the same order.
#define TSM_DSP_KERNELS(minFFTOrder, smaller)                                                      \
    {                                                                                              \
        kLanes, kLaneOrder, minFFTOrder, smaller, &forward<false>, &inverse<false>,                \
            &forward<true>, &inverse<true>, &multiplySpectra, &sumProducts, &sumProductsTwice,     \
            &convolveDirect, &upsampleHalfBand, &downsampleHalfBand, &interpolate,                 \
            &interpolateSpline                                                                     \
    }

} // namespace tsm::rsk
