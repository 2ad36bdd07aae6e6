#include "Audio/Processes/TapeKernels.h"

#include "Audio/Processes/TapeKernelBuilds.h"

#include <atomic>

namespace tsm {

namespace {

bool hasFma() noexcept
{
    __builtin_cpu_init();
    return __builtin_cpu_supports("avx2") && __builtin_cpu_supports("fma");
}

std::atomic<const CTapeKernels*>& current() noexcept
{
    static std::atomic<const CTapeKernels*> kernels{hasFma() ? &kTapeKernelsFma
                                                             : &kTapeKernelsGeneric};
    return kernels;
}

} // namespace

const CTapeKernels& tapeKernels() noexcept
{
    return *current().load(std::memory_order_relaxed);
}

const CTapeKernels* tapeKernels(EKernelBuild build) noexcept
{
    if (build == EKernelBuild::Generic)
        return &kTapeKernelsGeneric;
    return hasFma() ? &kTapeKernelsFma : nullptr;
}

bool selectTapeKernels(EKernelBuild build) noexcept
{
    const CTapeKernels* kernels = tapeKernels(build);
    if (kernels)
        current().store(kernels, std::memory_order_relaxed);
    return kernels != nullptr;
}

} // namespace tsm
