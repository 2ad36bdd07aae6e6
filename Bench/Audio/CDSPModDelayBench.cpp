#include "Audio/CDSPModDelay.h"

#include <benchmark/benchmark.h>

#include <cstring>
#include <vector>

namespace tsm {
namespace {

constexpr int kBlock = 512;

void runLine(benchmark::State& state, bool isFading)
{
    CAudioBlockPool pool;
    CDSPModDelay line(pool, 1024);
    std::vector<double> samples(kBlock, 0.5);
    line.setFadeLength(isFading ? 1 << 30 : 662);
    line.setDelay(static_cast<int>(state.range(0)));
    for (int i = 0; i < 50; ++i)
        line.process(samples.data(), samples.data(), kBlock);
    if (isFading)
        line.setDelay(static_cast<int>(state.range(0)) / 2);
    for (auto _ : state)
        line.process(samples.data(), samples.data(), kBlock);
    state.SetItemsProcessed(state.iterations() * kBlock);
}

void delayBlock(benchmark::State& state)
{
    runLine(state, false);
}

void delayBlockFading(benchmark::State& state)
{
    runLine(state, true);
}

/// What delaying can't be faster than: the block in and out of memory once.
void copyBlockTwice(benchmark::State& state)
{
    std::vector<double> samples(kBlock, 0.5);
    std::vector<double> other(kBlock);
    for (auto _ : state) {
        std::memcpy(other.data(), samples.data(), kBlock * sizeof(double));
        benchmark::ClobberMemory();
        std::memcpy(samples.data(), other.data(), kBlock * sizeof(double));
        benchmark::ClobberMemory();
    }
    state.SetItemsProcessed(state.iterations() * kBlock);
}

BENCHMARK(delayBlock)->Arg(100)->Arg(584)->Arg(20000);
BENCHMARK(delayBlockFading)->Arg(584);
BENCHMARK(copyBlockTwice);

} // namespace
} // namespace tsm
