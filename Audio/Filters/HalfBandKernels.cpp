#include "Audio/Filters/HalfBandKernels.h"

#include "Audio/Filters/HalfBandKernelBuilds.h"

namespace tsm {

const CHalfBandKernels& halfBandKernels() noexcept
{
    static const bool hasAvx2 = [] {
        __builtin_cpu_init();
        return __builtin_cpu_supports("avx2") != 0 && __builtin_cpu_supports("fma") != 0;
    }();
    return hasAvx2 ? kHalfBandKernelsAvx2 : kHalfBandKernelsGeneric;
}

const CHalfBandKernels& genericHalfBandKernels() noexcept
{
    return kHalfBandKernelsGeneric;
}

} // namespace tsm
