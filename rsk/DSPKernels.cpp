#include "rsk/DSPKernels.h"

#include "rsk/DSPKernelBuilds.h"

#include <atomic>

namespace tsm::rsk {

namespace {

bool canRun(EDSPBuild build) noexcept
{
    __builtin_cpu_init();
    const bool hasFma = __builtin_cpu_supports("avx2") && __builtin_cpu_supports("fma");
    switch (build) {
    case EDSPBuild::Generic:
        return true;
    case EDSPBuild::Fma:
        return hasFma;
    case EDSPBuild::Avx512:
        return hasFma && __builtin_cpu_supports("avx512f") && __builtin_cpu_supports("avx512dq") &&
               __builtin_cpu_supports("avx512vl");
    }
    return false;
}

const CDSPKernels* bestKernels() noexcept
{
    for (const EDSPBuild build : {EDSPBuild::Avx512, EDSPBuild::Fma})
        if (const CDSPKernels* kernels = dspKernels(build))
            return kernels;
    return &kDSPKernelsGeneric;
}

std::atomic<const CDSPKernels*>& current() noexcept
{
    static std::atomic<const CDSPKernels*> kernels{bestKernels()};
    return kernels;
}

} // namespace

const CDSPKernels& dspKernels() noexcept
{
    return *current().load(std::memory_order_relaxed);
}

const CDSPKernels* dspKernels(EDSPBuild build) noexcept
{
    if (!canRun(build))
        return nullptr;
    switch (build) {
    case EDSPBuild::Generic:
        break;
    case EDSPBuild::Fma:
        return &kDSPKernelsFma;
    case EDSPBuild::Avx512:
        return &kDSPKernelsAvx512;
    }
    return &kDSPKernelsGeneric;
}

bool selectDSPKernels(EDSPBuild build) noexcept
{
    const CDSPKernels* kernels = dspKernels(build);
    if (kernels)
        current().store(kernels, std::memory_order_relaxed);
    return kernels != nullptr;
}

} // namespace tsm::rsk
