#include "Audio/CAudioEnv.h"
#include "Audio/CAudioParamRegistry.h"
#include "Audio/ProductCreators.h"
#include "Bench/Audio/CBenchWrapper.h"
#include "Bench/Support/Check.h"
#include "Core/CApplication.h"
#include "Core/CMemoryReader.h"
#include "Core/CWriteSeqBuffer.h"

#include <benchmark/benchmark.h>

#include <cstdlib>
#include <memory>

namespace tsm {
namespace {

/// An instance whose engine stands; its queue is emptied after each round, as the audio thread does
/// it, so that it has the same length in all of them.
class CRegistryBench {
public:
    CRegistryBench()
    {
        check(startProduct(application));
        wrapper = CBenchWrapper::make();
        registry = CAudioParamRegistry::find(getCollector(), "plugin.param-registry");
        undo = dynamic_cast<CAudioParamUndo*>(getCollector().findObject("plugin.interface-base"));
        if (!registry || !undo)
            std::abort();
    }
    [[nodiscard]] CAudioParamCollector& getCollector() const
    {
        return wrapper->getParamCollector();
    }
    void takeQueue() const
    {
        {
            const CLockScope lock(wrapper->getEnvironment().lock);
            getCollector().takeQueue();
        }
        getCollector().applyQueue();
    }
    void save(CByteBuffer& bytes) const
    {
        CWriteSeqBuffer stream;
        check(registry->acquirePreset(false, -1, -1, stream));
        stream.takeData(bytes);
    }

    CAudioParamRegistry* registry = nullptr;
    CAudioParamUndo* undo = nullptr;

private:
    CApplication application;
    std::unique_ptr<CBenchWrapper> wrapper;
};

/// From one program of the factory bank to the next: storing the live one, applying the other.
void selectProgram(benchmark::State& state)
{
    const CRegistryBench bench;
    const int count = bench.registry->getProgramCount();
    int index = 0;
    for (auto _ : state) {
        index = (index + 1) % count;
        bench.registry->selectProgram(index, nullptr);
        bench.takeQueue();
    }
}
BENCHMARK(selectProgram)->Unit(benchmark::kMicrosecond);

/// Taking a whole preset back, or making it again.
void undoPreset(benchmark::State& state)
{
    const CRegistryBench bench;
    check(bench.registry->activateRomPreset(1));
    int position = 1;
    for (auto _ : state) {
        position = 1 - position;
        bench.undo->setPosition(position, true);
        bench.takeQueue();
    }
}
BENCHMARK(undoPreset)->Unit(benchmark::kMicrosecond);

/// The instance's state as bytes, before compression.
void saveState(benchmark::State& state)
{
    const CRegistryBench bench;
    CByteBuffer bytes;
    for (auto _ : state) {
        bench.save(bytes);
        benchmark::DoNotOptimize(bytes.data());
    }
    state.counters["bytes"] = bytes.getSize();
}
BENCHMARK(saveState)->Unit(benchmark::kMicrosecond);

void loadState(benchmark::State& state)
{
    const CRegistryBench bench;
    CByteBuffer bytes;
    bench.save(bytes);
    for (auto _ : state) {
        CMemoryReader reader(bytes);
        check(bench.registry->activatePreset(reader, false, -1, true));
        bench.takeQueue();
    }
}
BENCHMARK(loadState)->Unit(benchmark::kMicrosecond);

/// What the same bytes cost without a registry: the baseline of the two above.
void copyState(benchmark::State& state)
{
    const CRegistryBench bench;
    CByteBuffer bytes;
    bench.save(bytes);
    for (auto _ : state) {
        CMemoryReader reader(bytes);
        CAudioPreset preset;
        check(preset.load(reader));
        CWriteSeqBuffer stream;
        check(preset.save(stream));
        benchmark::DoNotOptimize(stream.getSize());
    }
}
BENCHMARK(copyState)->Unit(benchmark::kMicrosecond);

} // namespace
} // namespace tsm
