#include "Audio/Filters/HalfBandKernelBuilds.h"

#define TSM_HALF_BAND_FUSED 1
#include "Audio/Filters/HalfBandKernel.inl"

namespace tsm {

const CHalfBandKernels kHalfBandKernelsAvx2{TSM_HALF_BAND_RUNS(COne), TSM_HALF_BAND_RUNS(CTwo),
                                            TSM_HALF_BAND_FUSED != 0};

} // namespace tsm
