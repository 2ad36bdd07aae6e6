#include "Audio/CAudioVizCollector.h"
#include "Audio/ProductCreators.h"
#include "Bench/Audio/CBenchWrapper.h"
#include "Bench/Support/Check.h"
#include "Core/CApplication.h"
#include "Core/COutputStream.h"
#include "Tests/Support/ResidentMemory.h"

#include <benchmark/benchmark.h>

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <initializer_list>
#include <memory>
#include <random>
#include <vector>

namespace tsm {
namespace {

/// Takes every answer and drops it.
class CDeafOutput : public COutputStream {
public:
    [[nodiscard]] CError* write(const void*, int) override { return nullptr; }
};

/// A stereo instance at 44.1 kHz on loud noise, in per cent of a core at the speed of the sound.
/// `watched` are the meters that windows look at, who ask 30 times a second.
void runInstance(benchmark::State& state, std::initializer_list<const char*> watched)
{
    const auto count = static_cast<int>(state.range(0));
    CApplication application;
    check(startProduct(application));
    const auto wrapper = CBenchWrapper::make();
    wrapper->startProcessing();
    CAudioVizCollector& viz = wrapper->getVizCollector();
    for (const char* name : watched)
        viz.addListener(viz.getSource(name));
    CDeafOutput window;
    int untilRequest = 0;
    std::mt19937 generator(1);
    std::uniform_real_distribution<double> uniform(-0.7, 0.7);
    std::vector<double> in(2 * 65536);
    for (double& sample : in)
        sample = uniform(generator);
    std::vector<double> out(2 * static_cast<std::size_t>(count));
    std::size_t at = 0;
    const auto begin = std::chrono::steady_clock::now();
    for (auto _ : state) {
        const void* const inputs[] = {in.data() + at, in.data() + 65536 + at};
        void* const outputs[] = {out.data(), out.data() + count};
        wrapper->processBlock(inputs, outputs, count);
        benchmark::DoNotOptimize(out.data());
        at = (at + static_cast<std::size_t>(count)) % 65536;
        untilRequest -= count;
        if (untilRequest <= 0 && watched.size() > 0) {
            check(viz.writeStream(window, 30.0));
            untilRequest = 44100 / 30;
        }
    }
    const std::chrono::duration<double> elapsed = std::chrono::steady_clock::now() - begin;
    const double sound = static_cast<double>(state.iterations()) * count / 44100.0;
    state.counters["core_percent"] = 100.0 * elapsed.count() / sound;
}

void wholeInstance(benchmark::State& state)
{
    runInstance(state, {});
}
BENCHMARK(wholeInstance)->Arg(32)->Arg(64)->Arg(512)->Arg(4096);

void withOutputMeter(benchmark::State& state)
{
    runInstance(state, {"plugin.modMain.modMeterOut"});
}
BENCHMARK(withOutputMeter)->Arg(32)->Arg(512);

void withBothMeters(benchmark::State& state)
{
    runInstance(state, {"plugin.modMain.modMeterOut", "plugin.modMain.modMeterIODiff"});
}
BENCHMARK(withBothMeters)->Arg(32)->Arg(512);

/// The shared tree from the compiled document.
void startSharedTree(benchmark::State& state)
{
    for (auto _ : state) {
        CApplication application;
        check(startProduct(application));
        benchmark::DoNotOptimize(application.getSharedRoot());
    }
}
BENCHMARK(startSharedTree)->Unit(benchmark::kMillisecond);

/// An instance beside others that exist: made, primed, ended.
void furtherInstance(benchmark::State& state)
{
    CApplication application;
    check(startProduct(application));
    const auto first = CBenchWrapper::make();
    for (auto _ : state)
        benchmark::DoNotOptimize(CBenchWrapper::make());
}
BENCHMARK(furtherInstance)->Unit(benchmark::kMillisecond);

/// What an instance holds, as the growth of the process by many of them.
void instanceMemory(benchmark::State& state)
{
    constexpr int kInstances = 64;
    CApplication application;
    check(startProduct(application));
    std::vector<std::unique_ptr<CBenchWrapper>> instances;
    instances.push_back(CBenchWrapper::make());
    const double before = residentBytes();
    for (auto _ : state)
        for (int i = 0; i < kInstances; ++i)
            instances.push_back(CBenchWrapper::make());
    state.counters["KiB_each"] = (residentBytes() - before) / 1024.0 / kInstances;
}
BENCHMARK(instanceMemory)->Iterations(1)->Unit(benchmark::kMillisecond);

} // namespace
} // namespace tsm
