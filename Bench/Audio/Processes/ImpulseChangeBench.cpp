#include "Bench/Audio/Processes/CBankOfProduct.h"
#include "rsk/CDSPZeroLatencyConvolver.h"

#include <benchmark/benchmark.h>

// What a change of impulse costs the audio thread, in stereo: item of the bank, rate.

namespace tsm {
namespace {

/// To an impulse that this process had before, and back.
void changeToKnown(benchmark::State& state)
{
    CBankOfProduct bank;
    const auto rate = static_cast<double>(state.range(1));
    rsk::CDSPZeroLatencyConvolver convolvers[] = {rsk::CDSPZeroLatencyConvolver(0),
                                                  rsk::CDSPZeroLatencyConvolver(1)};
    const CBankedImpulseRef held[] = {bank.load(2, rate),
                                      bank.load(static_cast<std::uint32_t>(state.range(0)), rate)};
    for (auto _ : state)
        for (const std::uint32_t id : {2U, static_cast<std::uint32_t>(state.range(0))}) {
            const CBankedImpulseRef impulse = bank.load(id, rate);
            for (rsk::CDSPZeroLatencyConvolver& convolver : convolvers)
                convolver.load(channelOf(impulse, 0));
        }
    state.counters["time_per_change"] = benchmark::Counter(
        2.0, benchmark::Counter::kIsIterationInvariantRate | benchmark::Counter::kInvert);
}

/// To one that nobody had, at rates that others had.
void changeToNew(benchmark::State& state)
{
    CBankOfProduct bank;
    for (auto _ : state) {
        CBankedImpulseCache::get().clear();
        const CBankedImpulseRef impulse = bank.load(static_cast<std::uint32_t>(state.range(0)),
                                                    static_cast<double>(state.range(1)));
        rsk::CDSPZeroLatencyConvolver left(0);
        rsk::CDSPZeroLatencyConvolver right(1);
        left.load(channelOf(impulse, 0));
        right.load(channelOf(impulse, 1));
        benchmark::DoNotOptimize(&right);
    }
}

void eachImpulse(benchmark::internal::Benchmark* bench)
{
    for (const int id : {1, 8})
        for (const int rate : {44100, 48000, 352800})
            bench->Args({id, rate});
    bench->Unit(benchmark::kMicrosecond);
}

BENCHMARK(changeToKnown)->Apply(eachImpulse);
BENCHMARK(changeToNew)->Apply(eachImpulse);

} // namespace
} // namespace tsm
