#include "rsk/DSPKernelBuilds.h"

#define TSM_LANES 4
#include "rsk/ConvolveKernel.inl"
#include "rsk/FFTKernel.inl"
#include "rsk/ResampleKernel.inl"

namespace tsm::rsk {

const CDSPKernels kDSPKernelsFma = TSM_DSP_KERNELS(kMinFFTOrder, nullptr);

} // namespace tsm::rsk
