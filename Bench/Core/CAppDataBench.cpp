#include "Core/CAppDataLocal.h"

#include <benchmark/benchmark.h>

namespace tsm {
namespace {

/// What each control asks for when an editor opens: an item that is in memory.
void readSetting(benchmark::State& state)
{
    CAppDataLocal store;
    store.writeText("bench", "0.8", nullptr);
    for (auto _ : state)
        benchmark::DoNotOptimize(store.readText("bench", "0.5"));
}
BENCHMARK(readSetting);

/// A setting without an item: the disk is asked each time.
void readMissingSetting(benchmark::State& state)
{
    CAppDataLocal store;
    for (auto _ : state)
        benchmark::DoNotOptimize(store.readText("bench-missing", "0.5"));
}
BENCHMARK(readMissingSetting);

/// A step of a knob that is stored, up to the medium.
void writeSetting(benchmark::State& state)
{
    CAppDataLocal store;
    int value = 0;
    for (auto _ : state)
        store.writeText("bench", ++value % 2 ? "0.8" : "0.9", nullptr);
}
BENCHMARK(writeSetting)->UseRealTime();

} // namespace
} // namespace tsm
