#include "Audio/Filters/HalfBandKernelBuilds.h"

#include "Audio/Filters/HalfBandKernel.inl"

namespace tsm {

const CHalfBandKernels kHalfBandKernelsAvx2{TSM_HALF_BAND_RUNS(COne), TSM_HALF_BAND_RUNS(CTwo)};

} // namespace tsm
