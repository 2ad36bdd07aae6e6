#include "Audio/CAudioBlockPool.h"
#include "Audio/CAudioEnv.h"
#include "Audio/CAudioParamCollector.h"
#include "Audio/CAudioProcess.h"
#include "Audio/CAudioProcessDef.h"
#include "Audio/CAudioProcessLinkDef.h"
#include "Audio/CAudioProcessTerminal.h"
#include "Bench/Support/Check.h"
#include "Core/CApplication.h"
#include "Tests/Support/CDocumentBytes.h"

#include <benchmark/benchmark.h>

#include <cstdlib>
#include <memory>
#include <vector>

namespace tsm {
namespace {

/// Hands its input on: what is measured is the graph alone.
class CPassModule : public CAudioModule {
public:
    void processBlock() noexcept { getOutput().buffer = getInput(); }
};

class CPassDef : public CAudioProcessDefBase {
public:
    [[nodiscard]] CAudioProcessBase* createInstance() const override
    {
        return new CAudioProcessTerminal<CPassModule>;
    }
};

class CEndProcess : public CAudioProcessBase {
public:
    void process() override
    {
        pull();
        releaseInputs();
    }
};

class CEndDef : public CAudioProcessDefBase {
public:
    [[nodiscard]] CAudioProcessBase* createInstance() const override { return new CEndProcess; }
};

CTestNode chainOf(int processCount)
{
    CTestNode main{"audio:process-def", "modMain", {{"is-auto-links", "true"}}, {}};
    for (int i = 0; i < processCount; ++i)
        main.children.push_back({"pass", "p" + std::to_string(i), {}, {}});
    return main;
}

/// Branches side by side that meet in one process.
CTestNode fanOf(int branchCount)
{
    CTestNode main{"audio:process-def", "modMain", {}, {{"pass", "sum", {}, {}}}};
    const auto link = [&](const std::string& src, const std::string& dst) {
        main.children.push_back({"audio:process-link", "", {{"src", src}, {"dst", dst}}, {}});
    };
    for (int i = 0; i < branchCount; ++i) {
        const std::string name = "p" + std::to_string(i);
        main.children.push_back({"pass", name, {}, {}});
        link("*", name);
        link(name, "sum");
    }
    link("sum", "*");
    return main;
}

/// A running graph, fed with a stereo signal.
class CGraphBench {
public:
    explicit CGraphBench(CTestNode main)
        : document(
              "GraphBench.xml",
              CDocumentBytes::of({"core:object",
                                  "",
                                  {},
                                  {{"core:object", "audio", {}, {main, {"end", "end", {}, {}}}}}}))
    {
        const CCreatorRow creators[] = {creatorRow<CObject>("core:object"),
                                        creatorRow<CAudioEnv>("env"),
                                        creatorRow<CAudioParamCollector>("collector"),
                                        creatorRow<CAudioProcessDef>("audio:process-def"),
                                        creatorRow<CAudioProcessLinkDef>("audio:process-link"),
                                        creatorRow<CPassDef>("pass"),
                                        creatorRow<CEndDef>("end")};
        check(application.start(creators, std::size(creators), nullptr, "GraphBench.xml"));
        check(application.initRootObject(root, CString()));
        check(root->createChild(context.env, "env", "env", false));
        check(root->createChild(context.collector, "collector", "collector", false));
        context.pool = &pool;
        create(process, "modMain");
        create(end, "end");
        input = &CAudioProcessBase::connect(nullptr, 0, *process, 0);
        CAudioProcessBase::connect(process.get(), 0, *end, 0);
        CAudioFormat format;
        format.sampleRate = 44100.0;
        format.add({0, 0, 0});
        format.add({1, 0, 0});
        input->publish(format);
        for (int i = 0; i < 10; ++i)
            run(kMaxSubBlock);
    }
    void run(int length)
    {
        for (int channel = 0; channel < 2; ++channel)
            input->put(channel, pool.take(length), length);
        process->process();
        end->process();
    }

private:
    void create(CPtr<CAudioProcessBase>& holder, const char* name)
    {
        CAudioProcessDefBase* def = nullptr;
        check(root->findObjectChecked(def, CString("shared::audio.") + name));
        check(createProcess(holder, *def, context, nullptr, CString("plugin.") + name));
    }

    CTestResource document;
    CApplication application;
    CTreePtr<CObject> root;
    CAudioBlockPool pool;
    CAudioProcessContext context;
    CPtr<CAudioProcessBase> process;
    CPtr<CAudioProcessBase> end;
    CAudioLink* input = nullptr;
};

/// The least that passing two channels through so many stages can cost: one virtual call each.
class CBareStage {
public:
    virtual ~CBareStage() = default;
    virtual void process(CAudioBlockRef* channels) { benchmark::DoNotOptimize(channels); }
};

void runGraph(benchmark::State& state, CTestNode main, int length)
{
    CGraphBench bench(std::move(main));
    for (auto _ : state)
        bench.run(length);
    state.counters["sub-blocks"] =
        benchmark::Counter(1.0, benchmark::Counter::kIsIterationInvariantRate);
}

void passThroughChain(benchmark::State& state)
{
    runGraph(state, chainOf(static_cast<int>(state.range(0))), static_cast<int>(state.range(1)));
}

void passThroughBareCalls(benchmark::State& state)
{
    std::vector<std::unique_ptr<CBareStage>> stages;
    stages.reserve(static_cast<std::size_t>(state.range(0)));
    for (int i = 0; i < state.range(0); ++i)
        stages.push_back(std::make_unique<CBareStage>());
    CAudioBlockRef channels[2];
    for (auto _ : state)
        for (const auto& stage : stages)
            stage->process(channels);
}

void sumBranches(benchmark::State& state)
{
    runGraph(state, fanOf(static_cast<int>(state.range(0))), static_cast<int>(state.range(1)));
}

BENCHMARK(passThroughChain)->ArgsProduct({{0, 1, 20}, {32, 512}});
BENCHMARK(passThroughBareCalls)->Arg(20);
BENCHMARK(sumBranches)->ArgsProduct({{2, 4, 8}, {512}});

} // namespace
} // namespace tsm
