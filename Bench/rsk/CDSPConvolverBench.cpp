#include "Bench/rsk/CStagedPlan.h"
#include "rsk/CDSPFIRConvolver.h"
#include "rsk/CDSPRealFFTPool.h"
#include "rsk/CDSPZeroLatencyConvolver.h"

#include <benchmark/benchmark.h>
#include <zita-convolver.h>

#include <algorithm>
#include <array>
#include <chrono>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <map>
#include <memory>
#include <utility>
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

/// A convolver with its impulse and work space.
class CBenchConvolver {
public:
    CBenchConvolver(int length, int phase) : convolver(phase)
    {
        const std::vector<double> taps = decay(length);
        const CDSPImpulseRef impulse(new CDSPConvolverImpulse(taps.data(), length, 1.0));
        convolver.load(impulse);
        work.allocate(impulse->getWorkCount());
    }
    void process(const double* in, double* out, int count)
    {
        convolver.process(in, out, count, work.data());
    }

private:
    CDSPZeroLatencyConvolver convolver;
    CAlignedArray<double> work;
};

/// Impulse length, block size.
void convolveBlock(benchmark::State& state)
{
    const int length = static_cast<int>(state.range(0));
    const int count = static_cast<int>(state.range(1));
    CBenchConvolver convolver(length, 0);
    std::vector<double> in = decay(count);
    std::vector<double> out(in.size());
    for (auto _ : state) {
        convolver.process(in.data(), out.data(), count);
        benchmark::DoNotOptimize(out.data());
        benchmark::ClobberMemory();
    }
    countSamples(state, count);
}

/// A baseline that computes something else would be none.
void checkBaseline(int length)
{
    CBenchConvolver convolver(length, 3);
    const std::vector<double> taps = decay(length);
    CStagedPlan plan(taps.data(), length, 3);
    const std::vector<double> in = decay(2 * length);
    std::vector<double> a(in.size());
    std::vector<double> b(in.size());
    convolver.process(in.data(), a.data(), 2 * length);
    plan.process(in.data(), b.data(), 2 * length);
    for (std::size_t i = 0; i < in.size(); ++i)
        if (!(std::abs(a[i] - b[i]) < 1e-9)) {
            std::fprintf(stderr, "the baseline's sample %zu differs\n", i);
            std::abort();
        }
}

/// The baseline: stages that grow by four, coded plainly.
void convolveAsDescribed(benchmark::State& state)
{
    const int length = static_cast<int>(state.range(0));
    const int count = static_cast<int>(state.range(1));
    checkBaseline(length);
    const std::vector<double> taps = decay(length);
    CStagedPlan plan(taps.data(), length, 0);
    std::vector<double> in = decay(count);
    std::vector<double> out(in.size());
    for (auto _ : state) {
        plan.process(in.data(), out.data(), count);
        benchmark::DoNotOptimize(out.data());
        benchmark::ClobberMemory();
    }
    countSamples(state, count);
}

/// Impulse length, block size, the longest partition (that of a block for one level, without
/// threads), whether the library measures its transforms and multiplies vectors.
using CZitaArgs = std::array<int, 4>;

/// A library's convolver; null when it can't be set up. Never ended: its threads may still be at
/// work on what the end takes away.
Convproc* makeZita(const CZitaArgs& args)
{
    const auto [length, count, longest, isTuned] = args;
    std::vector<float> taps;
    for (const double tap : decay(length))
        taps.push_back(static_cast<float>(tap));
    auto convolver = std::make_unique<Convproc>();
    if (isTuned)
        convolver->set_options(Convproc::OPT_FFTW_MEASURE | Convproc::OPT_VECTOR_MODE);
    const auto block = static_cast<unsigned>(count);
    if (convolver->configure(1, 1, static_cast<unsigned>(length), block, block,
                             static_cast<unsigned>(longest), 0.0F) != 0 ||
        convolver->impdata_create(0, 0, 1, taps.data(), 0, length) != 0 ||
        convolver->start_process(0, SCHED_OTHER) != 0)
        return nullptr;
    return convolver.release();
}

/// In single precision, and with threads of its own for the long blocks, whose time counts too.
void zitaBlock(benchmark::State& state)
{
    static std::map<CZitaArgs, Convproc*> convolvers;
    CZitaArgs args;
    for (std::size_t i = 0; i < args.size(); ++i)
        args[i] = static_cast<int>(state.range(i));
    const int count = args[1];
    Convproc*& convolver = convolvers[args];
    if (!convolver)
        convolver = makeZita(args);
    if (!convolver) {
        state.SkipWithError("can't be set up");
        return;
    }
    for (auto _ : state) {
        std::fill_n(convolver->inpdata(0), count, 0.25F);
        convolver->process(true);
        benchmark::DoNotOptimize(convolver->outdata(0));
        benchmark::ClobberMemory();
    }
    countSamples(state, count);
}

/// How unevenly the work falls on a host's blocks: the dearest one over the mean, of blocks over
/// one period of the longest stage. Each block's cost is the least of many runs, so that what the
/// machine does meanwhile doesn't count. Two channels, as in an instance; impulse length, block.
void worstBlock(benchmark::State& state)
{
    using CClock = std::chrono::steady_clock;
    constexpr int kPeriod = 8192;
    constexpr int kRuns = 200;
    const int length = static_cast<int>(state.range(0));
    const int count = static_cast<int>(state.range(1));
    CBenchConvolver left(length, 0);
    CBenchConvolver right(length, 1);
    const std::vector<double> in = decay(count);
    std::vector<double> out(in.size());
    std::vector<double> least(static_cast<std::size_t>(kPeriod / count), 1e9);
    // A past that isn't known yet costs nothing.
    for (int done = 0; done < length + 3 * kPeriod; done += kPeriod)
        for (std::size_t i = 0; i < least.size(); ++i) {
            left.process(in.data(), out.data(), count);
            right.process(in.data(), out.data(), count);
        }
    for (auto _ : state)
        for (int run = 0; run < kRuns; ++run)
            for (double& cost : least) {
                const CClock::time_point begin = CClock::now();
                left.process(in.data(), out.data(), count);
                right.process(in.data(), out.data(), count);
                const std::chrono::duration<double, std::nano> taken = CClock::now() - begin;
                cost = std::min(cost, taken.count());
            }
    double worst = 0.0;
    double sum = 0.0;
    for (const double cost : least) {
        worst = std::max(worst, cost);
        sum += cost;
    }
    const double mean = sum / static_cast<double>(least.size());
    state.counters["worst_ns"] = worst;
    state.counters["mean_ns"] = mean;
    state.counters["worst_over_mean"] = worst / mean;
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
    for (const int length : {4498, 26240, 209920})
        for (const int count : {32, 64, 512, 4096})
            bench->Args({length, count});
}

void eachComparison(benchmark::internal::Benchmark* bench)
{
    for (const int length : {4498, 26240})
        for (const int count : {64, 512})
            bench->Args({length, count});
}

void eachZita(benchmark::internal::Benchmark* bench)
{
    for (const int length : {4498, 26240})
        for (const int count : {64, 512})
            for (const int longest : {count, 8192})
                for (const int isTuned : {0, 1})
                    bench->Args({length, count, longest, isTuned});
    bench->MeasureProcessCPUTime();
}

BENCHMARK(convolveBlock)->Apply(eachBlockSize);
BENCHMARK(convolveAsDescribed)->Apply(eachComparison);
BENCHMARK(zitaBlock)->Apply(eachZita);
// 32 samples of the host, at its rate and at eight times that.
BENCHMARK(worstBlock)
    ->Args({4498, 32})
    ->Args({26240, 32})
    ->Args({35984, 256})
    ->Args({209920, 256})
    ->Iterations(1)
    ->Unit(benchmark::kMillisecond);
BENCHMARK(convolveFilter)->Args({661, 64})->Args({1063, 128})->Args({65, 32});
BENCHMARK(convolveWhole)->Arg(4498)->Arg(26240)->Arg(209920);

} // namespace
} // namespace tsm::rsk
