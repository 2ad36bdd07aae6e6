#include "Audio/Filters/CDCDAWFilterWorkspace.h"
#include "Audio/Filters/HalfBandKernels.h"
#include "Bench/Audio/Filters/CPlainHalfBand.h"

#include <benchmark/benchmark.h>

#include <cmath>
#include <vector>

namespace tsm {
namespace {

constexpr int kBlock = 512;
/// A block at the raised rate with the zeros that an interpolator leaves, or without.
std::vector<double> makeBlock(bool isSparse)
{
    std::vector<double> samples(kBlock);
    for (int i = 0; i < kBlock; ++i)
        samples[static_cast<std::size_t>(i)] =
            isSparse && i % 2 == 1 ? 0.0 : std::sin(0.01 * i * i);
    return samples;
}

void countSamples(benchmark::State& state, int channels)
{
    state.counters["low_rate_sample"] =
        benchmark::Counter(0.5 * kBlock * channels, benchmark::Counter::kIsIterationInvariantRate |
                                                        benchmark::Counter::kInvert);
}

using CPlainRun = void (CPlainHalfBand::*)(const double*, double*, int);

/// The same recurrence with the same rounding: the stage must give its bits.
bool isStageEqual(CPlainRun run)
{
    const std::vector<double> samples = makeBlock(false);
    std::vector<double> plain(kBlock);
    std::vector<double> stage(kBlock);
    CPlainHalfBand plainFilter;
    CDCDAWFilterWorkspace filter(CPlainHalfBand::kSteep, CPlainHalfBand::kSections);
    (plainFilter.*run)(samples.data(), plain.data(), kBlock);
    filter.process(samples.data(), stage.data(), kBlock);
    return plain == stage;
}

/// Channels, and whether the rate goes up.
void halfBandPlain(benchmark::State& state, bool isFused)
{
    if (isFused && !halfBandKernels().isFused) {
        state.SkipWithError("not on this processor");
        return;
    }
    const CPlainRun run = isFused ? &CPlainHalfBand::processFused : &CPlainHalfBand::process;
    if (isFused == halfBandKernels().isFused && !isStageEqual(run)) {
        state.SkipWithError("the stage's bits differ");
        return;
    }
    const auto channels = static_cast<std::size_t>(state.range(0));
    std::vector<CPlainHalfBand> filters(channels);
    const std::vector<double> samples = makeBlock(state.range(1) != 0);
    std::vector<double> out(kBlock);
    for (auto _ : state) {
        for (CPlainHalfBand& filter : filters)
            (filter.*run)(samples.data(), out.data(), kBlock);
        benchmark::ClobberMemory();
    }
    countSamples(state, static_cast<int>(channels));
}

void halfBandStage(benchmark::State& state)
{
    const auto channels = static_cast<std::size_t>(state.range(0));
    const bool isSparse = state.range(1) != 0;
    std::vector<CDCDAWFilterWorkspace> filters(
        channels, CDCDAWFilterWorkspace(CPlainHalfBand::kSteep, CPlainHalfBand::kSections));
    const std::vector<double> samples = makeBlock(isSparse);
    std::vector<std::vector<double>> out(channels, std::vector<double>(kBlock));
    std::vector<CDCDAWFilterWorkspace::CLane> lanes;
    for (std::size_t i = 0; i < channels; ++i)
        lanes.push_back({samples.data(), out[i].data(), &filters[i], isSparse});
    for (auto _ : state) {
        CDCDAWFilterWorkspace::process(lanes.data(), static_cast<int>(channels), kBlock);
        benchmark::ClobberMemory();
    }
    countSamples(state, static_cast<int>(channels));
}

void eachCase(benchmark::internal::Benchmark* bench)
{
    bench->ArgNames({"channels", "up"});
    for (const int isUp : {1, 0})
        for (const int channels : {1, 2})
            bench->Args({channels, isUp});
}

BENCHMARK_CAPTURE(halfBandPlain, asWritten, false)->Apply(eachCase);
BENCHMARK_CAPTURE(halfBandPlain, fused, true)->Apply(eachCase);
BENCHMARK(halfBandStage)->Apply(eachCase);

} // namespace
} // namespace tsm
