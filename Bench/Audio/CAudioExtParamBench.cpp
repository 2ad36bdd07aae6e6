#include "Audio/CAudioEnv.h"
#include "Audio/CAudioExtParamList.h"
#include "Audio/CAudioParamDef.h"
#include "Audio/ProductCreators.h"
#include "Bench/Support/Check.h"
#include "Core/CApplication.h"
#include "Core/CPtr.h"

#include <benchmark/benchmark.h>

namespace tsm {
namespace {

constexpr int kWritesPerBlock = 32; // what is taken of one automation curve in a host block

/// The objects of an instance, with one host parameter described and the engine running.
class CBenchInstance {
public:
    CBenchInstance()
    {
        check(startProduct(application));
        check(application.initRootObject(root, CString()));
        CObject* plugin = nullptr;
        check(root->createChild(plugin, "plugin", "plugin", true));
        check(root->findObjectChecked(env, "plugin.audio-env"));
        check(root->findObjectChecked(collector, "plugin.param-collector"));
        CAudioExtParamList* list = nullptr;
        check(root->findObjectChecked(list, "plugin.ext-param-list"));
        CAudioParamDef* def = nullptr;
        check(root->findObjectChecked(def, "shared::audio.modMain.modReelpath.recgain"));
        extParam = &(*list)[1];
        extParam->getParam().attachInfo(def->getInfo());
        env->isProcessing = true;
    }
    void takeChanges() const
    {
        {
            const CLockScope hold(env->lock);
            collector->takeQueue();
        }
        collector->applyQueue();
    }

    CApplication application;
    CTreePtr<CObject> root;
    CAudioEnv* env = nullptr;
    CAudioParamCollector* collector = nullptr;
    CAudioExtParam* extParam = nullptr;
};

/// Runs a block's writes and the taking of them; the time is that of one write.
template <class Write>
void runBlocks(benchmark::State& state, const CBenchInstance& instance, Write write)
{
    double value = 0.0;
    for (auto _ : state) {
        for (int i = 0; i < kWritesPerBlock; ++i) {
            value = value < 0.999 ? value + 0.001 : 0.0;
            write(value);
        }
        instance.takeChanges();
    }
    state.SetItemsProcessed(state.iterations() * kWritesPerBlock);
}

void hostWrite(benchmark::State& state)
{
    const CBenchInstance instance;
    runBlocks(state, instance, [&](double value) { instance.extParam->setNormalized(value); });
}
BENCHMARK(hostWrite);

void repeatedHostWrite(benchmark::State& state)
{
    const CBenchInstance instance;
    runBlocks(state, instance, [&](double) { instance.extParam->setNormalized(0.25); });
}
BENCHMARK(repeatedHostWrite);

/// The change of the parameter alone, which the host then is told of.
void plainWrite(benchmark::State& state)
{
    const CBenchInstance instance;
    CAudioParam& param = instance.extParam->getParam();
    runBlocks(state, instance, [&](double value) { param.setValue(0, 0, 1.0 + value); });
}
BENCHMARK(plainWrite);

void readForTheHost(benchmark::State& state)
{
    const CBenchInstance instance;
    for (auto _ : state)
        benchmark::DoNotOptimize(instance.extParam->normalized());
}
BENCHMARK(readForTheHost);

} // namespace
} // namespace tsm
