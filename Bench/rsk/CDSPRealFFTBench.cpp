#include "rsk/CDSPRealFFT.h"

#include <benchmark/benchmark.h>
#include <fftw3.h>

#include <cmath>

namespace tsm::rsk {
namespace {

/// Samples that don't grow out of range: each run there and back is scaled by hand at the reload.
void fill(double* samples, int count)
{
    for (int i = 0; i < count; ++i)
        samples[i] = std::sin(0.37 * i * i);
}

void transformBothWays(benchmark::State& state, EDSPBuild build)
{
    const CDSPKernels* kernels = dspKernels(build);
    if (!kernels) {
        state.SkipWithError("the processor lacks these instructions");
        return;
    }
    int order = 0;
    while (1 << order < state.range(0))
        ++order;
    const CDSPRealFFT transform(order, *kernels);
    CAlignedArray<double> samples(transform.getCount());
    CAlignedArray<double> spectrum(transform.getCount());
    CAlignedArray<double> back(transform.getCount());
    CAlignedArray<double> work(transform.getWorkCount());
    fill(samples.data(), samples.getCount());
    for (auto _ : state) {
        transform.forward(samples.data(), spectrum.data(), work.data());
        transform.inverse(spectrum.data(), back.data(), work.data());
        benchmark::DoNotOptimize(back.data());
        benchmark::ClobberMemory();
    }
}

void generic(benchmark::State& state)
{
    transformBothWays(state, EDSPBuild::Generic);
}

void fma(benchmark::State& state)
{
    transformBothWays(state, EDSPBuild::Fma);
}

void avx512(benchmark::State& state)
{
    transformBothWays(state, EDSPBuild::Avx512);
}

/// The baseline: measured plans, out of place, which are FFTW's fastest.
void fftw(benchmark::State& state)
{
    const int count = static_cast<int>(state.range(0));
    CAlignedArray<double> samples(count);
    CAlignedArray<double> bins(count + 2);
    CAlignedArray<double> back(count);
    auto* spectrum = reinterpret_cast<fftw_complex*>(bins.data());
    fftw_plan forward = fftw_plan_dft_r2c_1d(count, samples.data(), spectrum, FFTW_MEASURE);
    fftw_plan inverse = fftw_plan_dft_c2r_1d(count, spectrum, back.data(), FFTW_MEASURE);
    fill(samples.data(), count);
    for (auto _ : state) {
        fftw_execute(forward);
        fftw_execute(inverse);
        benchmark::DoNotOptimize(back.data());
        benchmark::ClobberMemory();
    }
    fftw_destroy_plan(forward);
    fftw_destroy_plan(inverse);
}

BENCHMARK(fftw)->RangeMultiplier(2)->Range(32, 16384);
BENCHMARK(generic)->RangeMultiplier(2)->Range(32, 16384);
BENCHMARK(fma)->RangeMultiplier(2)->Range(32, 16384);
BENCHMARK(avx512)->RangeMultiplier(2)->Range(32, 16384);

} // namespace
} // namespace tsm::rsk
