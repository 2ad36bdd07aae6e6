#include "Tests/Audio/VST/CComponentRig.h"
#include "Tests/Support/ResidentMemory.h"

#include <benchmark/benchmark.h>

#include <chrono>
#include <memory>
#include <random>

// What a host waits for. The framework runs all the time, as in a loaded module.

namespace tsm::test {
namespace {

using namespace Steinberg;
using namespace Steinberg::Vst;

constexpr ParamID kProgramId = 999;

class CLoadedModule {
public:
    CLoadedModule() { CProductModule::begin(); }
    ~CLoadedModule() { CProductModule::end(); }
};

/// An instance that a host has set up for stereo at 44.1 kHz.
std::unique_ptr<CComponentRig> makeInstance()
{
    auto rig = std::make_unique<CComponentRig>();
    rig->initialize();
    rig->setUp(44100.0);
    return rig;
}

CComponentRig::CChannels noise(std::size_t count)
{
    std::mt19937 generator(1);
    std::uniform_real_distribution<double> uniform(-0.7, 0.7);
    CComponentRig::CChannels channels(2, std::vector<double>(count));
    for (std::vector<double>& channel : channels)
        for (double& sample : channel)
            sample = uniform(generator);
    return channels;
}

/// What an instance holds once sound has run. The first of all, since memory that others have given
/// back is taken again unseen.
void instanceMemory(benchmark::State& state)
{
    const CComponentRig::CChannels sound = noise(16384);
    std::vector<std::unique_ptr<CComponentRig>> rigs;
    const auto addInstance = [&] {
        rigs.push_back(makeInstance());
        rigs.back()->processAll(sound, 512);
    };
    addInstance();
    const double before = residentBytes();
    for (auto _ : state)
        for (int i = 0; i < state.range(0); ++i)
            addInstance();
    const double held = residentBytes() - before;
    state.counters["KiB_each"] = held / 1024.0 / static_cast<double>(state.range(0));
}
BENCHMARK(instanceMemory)->Arg(100)->Iterations(1)->Unit(benchmark::kMillisecond);

void fromTheFactoryToTheFirstBlock(benchmark::State& state)
{
    const CLoadedModule module;
    const CComponentRig::CChannels sound = noise(512);
    for (auto _ : state) {
        const auto rig = makeInstance();
        CComponentRig::CChannels block = sound;
        rig->process(block);
        benchmark::DoNotOptimize(block[0][0]);
    }
}
BENCHMARK(fromTheFactoryToTheFirstBlock)->Unit(benchmark::kMillisecond);

void saveState(benchmark::State& state)
{
    const auto rig = makeInstance();
    for (auto _ : state)
        benchmark::DoNotOptimize(rig->getState());
}
BENCHMARK(saveState)->Unit(benchmark::kMicrosecond);

void loadState(benchmark::State& state)
{
    const auto rig = makeInstance();
    const std::string first = rig->getState();
    rig->controller->setParamNormalized(kProgramId, 1.0);
    const std::string second = rig->getState();
    bool isSecond = false;
    for (auto _ : state) {
        rig->setState(isSecond ? second : first);
        isSecond = !isSecond;
    }
}
BENCHMARK(loadState)->Unit(benchmark::kMicrosecond);

void switchProgram(benchmark::State& state)
{
    const auto rig = makeInstance();
    int program = 0;
    for (auto _ : state) {
        program = (program + 1) % 10;
        rig->controller->setParamNormalized(kProgramId, program / 9.0);
    }
}
BENCHMARK(switchProgram)->Unit(benchmark::kMicrosecond);

/// Twelve parameters moved in turn, then the block that takes all of it.
void tenThousandChangesBetweenTwoBlocks(benchmark::State& state)
{
    const auto rig = makeInstance();
    const CComponentRig::CChannels sound = noise(512);
    double value = 0.0;
    for (auto _ : state) {
        for (int i = 0; i < 10000; ++i) {
            value = value < 1.0 ? value + 1e-4 : 0.0;
            rig->controller->setParamNormalized(static_cast<ParamID>(i % 12), value);
        }
        CComponentRig::CChannels block = sound;
        rig->process(block);
    }
}
BENCHMARK(tenThousandChangesBetweenTwoBlocks)->Unit(benchmark::kMillisecond);

/// One block of each of many instances.
void manyInstances(benchmark::State& state)
{
    std::vector<std::unique_ptr<CComponentRig>> rigs;
    while (static_cast<int>(rigs.size()) < state.range(0))
        rigs.push_back(makeInstance());
    const CComponentRig::CChannels sound = noise(512);
    for (auto _ : state)
        for (const auto& rig : rigs) {
            CComponentRig::CChannels block = sound;
            rig->process(block);
        }
    const auto count = static_cast<double>(rigs.size());
    state.counters["block_each"] = benchmark::Counter(
        count, benchmark::Counter::kIsIterationInvariantRate | benchmark::Counter::kInvert);
}
BENCHMARK(manyInstances)->Arg(1)->Arg(10)->Arg(100)->Unit(benchmark::kMicrosecond);

} // namespace
} // namespace tsm::test
