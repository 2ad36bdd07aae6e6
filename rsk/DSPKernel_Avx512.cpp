#include "rsk/DSPKernelBuilds.h"

#define TSM_LANES 8
#include "rsk/ConvolveKernel.inl"
#include "rsk/FFTKernel.inl"
#include "rsk/ResampleKernel.inl"

namespace tsm::rsk {

const CDSPKernels kDSPKernelsAvx512 = TSM_DSP_KERNELS(7, &kDSPKernelsFma);

} // namespace tsm::rsk
