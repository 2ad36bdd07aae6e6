#include "rsk/CDSPFIRConvolver.h"
#include "rsk/CDSPRealFFTPool.h"
#include "rsk/CDSPZeroLatencyConvolver.h"

#include <benchmark/benchmark.h>

#include <cmath>
#include <vector>

namespace tsm::rsk {
namespace {

std::vector<double> decay(int length)
{
    std::vector<double> taps(static_cast<std::size_t>(length));
    for (int i = 0; i < length; ++i)
        taps[static_cast<std::size_t>(i)] = std::sin(0.3 * i * i) * std::exp(-4.0 * i / length);
    return taps;
}

void countSamples(benchmark::State& state, int count)
{
    state.counters["time_per_sample"] = benchmark::Counter(
        static_cast<double>(count),
        benchmark::Counter::kIsIterationInvariantRate | benchmark::Counter::kInvert);
}

/// Impulse length, block size.
void convolveBlock(benchmark::State& state)
{
    const int length = static_cast<int>(state.range(0));
    const int count = static_cast<int>(state.range(1));
    const std::vector<double> taps = decay(length);
    CDSPZeroLatencyConvolver convolver(0);
    const CDSPImpulseRef impulse(new CDSPConvolverImpulse(taps.data(), length, 1.0));
    convolver.load(impulse);
    CAlignedArray<double> work(impulse->getWorkCount(count));
    std::vector<double> in = decay(count);
    std::vector<double> out(in.size());
    for (auto _ : state) {
        convolver.process(in.data(), out.data(), count, work.data());
        benchmark::DoNotOptimize(out.data());
        benchmark::ClobberMemory();
    }
    countSamples(state, count);
}

/// The filters of an oversampler with linear phase: taps, latency.
void convolveFilter(benchmark::State& state)
{
    constexpr int kCount = 512;
    const int tapCount = static_cast<int>(state.range(0));
    const std::vector<double> taps = decay(tapCount);
    CDSPFIRConvolver convolver(static_cast<int>(state.range(1)), taps.data(), tapCount);
    std::vector<double> in = decay(kCount);
    std::vector<double> out(in.size());
    for (auto _ : state) {
        convolver.process(in.data(), out.data(), kCount);
        benchmark::DoNotOptimize(out.data());
        benchmark::ClobberMemory();
    }
    countSamples(state, kCount);
}

/// The baseline: overlap-save in one partition, with the latency of the whole impulse.
void convolveWhole(benchmark::State& state)
{
    const int length = static_cast<int>(state.range(0));
    int order = kMinFFTOrder;
    while (1 << order < 2 * length)
        ++order;
    const CDSPRealFFT& transform = CDSPRealFFTPool::get(order);
    CAlignedArray<double> in(transform.getCount());
    CAlignedArray<double> spectrum(transform.getCount());
    CAlignedArray<double> frame(transform.getCount());
    CAlignedArray<double> work(transform.getWorkCount());
    for (auto _ : state) {
        transform.forward(in.data(), frame.data(), work.data());
        transform.multiply(frame.data(), spectrum.data(), frame.data());
        transform.inverse(frame.data(), frame.data(), work.data());
        benchmark::ClobberMemory();
    }
    countSamples(state, transform.getCount() - length + 1);
}

void eachBlockSize(benchmark::internal::Benchmark* bench)
{
    for (const int length : {40, 168, 680, 2728, 4498, 26240, 209920})
        for (const int count : {16, 32, 64, 128, 256, 480, 512, 2048, 4096})
            bench->Args({length, count});
}

BENCHMARK(convolveBlock)->Apply(eachBlockSize);
BENCHMARK(convolveFilter)->Args({661, 64})->Args({1063, 128})->Args({65, 32});
BENCHMARK(convolveWhole)->Arg(4498)->Arg(26240)->Arg(209920);

} // namespace
} // namespace tsm::rsk
