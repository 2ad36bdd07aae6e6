#pragma once

#include "Audio/Filters/HalfBandKernels.h"

namespace tsm {

// The tables of the builds; that for AVX2 and FMA must not be called without a check of the
// processor.
extern const CHalfBandKernels kHalfBandKernelsGeneric;
extern const CHalfBandKernels kHalfBandKernelsAvx2;

} // namespace tsm
