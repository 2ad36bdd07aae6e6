#include "Tools/conform/CRenderPlan.h"
#include "Tools/conform/ConformCases.h"
#include "Tools/conform/ProcessResources.h"

#include <algorithm>
#include <random>

namespace tsm {

using namespace Steinberg;
using namespace Steinberg::Vst;

namespace {

constexpr CVstSetUp kSetUp{.rate = 48000.0, .maxBlock = 512, .channelCount = 0, .isDouble = false};

CError* liveOnce(CPlugin& plugin, int round, CFindings& findings)
{
    CLivePlugin live;
    TSM_TRY(live.start(plugin, kSetUp, findings));
    live.setAll(live.drawValues(static_cast<unsigned>(round) % 16 + 1));
    std::string state;
    TSM_TRY(live.getInstance().getState(state));
    TSM_TRY(live.getInstance().setState(state));
    IPtr<IPlugView>::owned(live.getInstance().getController().createView(kEditorViewType)).reset();
    const CChannels noise = makeNoise(live.getRun().getInputCount(), 64, 0.25);
    CChannels out;
    live.getRun().process(noise, 0, 64, out);
    return nullptr;
}

/// Ten thousand instances come and go.
CError* checkCycles(CPlugin& plugin, CFindings& findings)
{
    TSM_TRY(plugin.open());
    const int rounds = plugin.countRounds(10000, 150);
    // Tables and pools of the plug-in's module get their size in the first of them.
    const int warmUp = std::max(rounds / 5, 50);
    CProcessResources before;
    for (int i = 0; i < rounds + warmUp; ++i) {
        if (i == warmUp)
            before = CProcessResources::measure();
        TSM_TRY(liveOnce(plugin, i, findings));
        if (findings.hasFailed())
            return nullptr;
    }
    CProcessResources::measure().compare(before, rounds, findings);
    findings.note(std::to_string(rounds) + " cycles");
    return nullptr;
}

/// A long run of one instance, with all that users do.
CError* checkLongRun(CPlugin& plugin, CFindings& findings)
{
    TSM_TRY(plugin.open());
    CLivePlugin live;
    TSM_TRY(live.start(plugin, kSetUp, findings));
    CBlockRun& run = live.getRun();
    const CChannels noise = makeNoise(run.getInputCount(), 512, 0.25);
    std::string state;
    TSM_TRY(live.getInstance().getState(state));
    const int rounds = plugin.countRounds(2000, 200);
    const int warmUp = rounds / 2;
    CProcessResources before;
    for (int i = 0; i < rounds + warmUp; ++i) {
        if (i == warmUp)
            before = CProcessResources::measure();
        live.setAll(live.drawValues(static_cast<unsigned>(i) % 16 + 1));
        CChannels out;
        for (int block = 0; block < 4; ++block)
            run.process(noise, 0, 512, out);
        // The handler's list of edits is the tool's own.
        static_cast<void>(live.getInstance().getHandler().takeNotes());
    }
    CProcessResources::measure().compare(before, rounds, findings);
    return nullptr;
}

/// One kind of block for the heap's watch.
struct CWatched {
    const char* name;
    std::int64_t calls = 0;
    int blocks = 0;
    CHeapCalls first = {};

    void add(const CHeapCalls& came)
    {
        if (came.callCount > 0 && calls == 0)
            first = came;
        calls += came.callCount;
        ++blocks;
    }
    void report(CFindings& findings) const
    {
        findings.expect(calls == 0, "calls of the heap in process(), " + std::string(name),
                        "none in " + std::to_string(blocks) + " blocks",
                        std::to_string(calls) + ", the first from " + describeFirstCall(first));
    }
};

/// The process call alone: the tool's own data are made before.
CHeapCalls watch(CBlockRun& run, const CChannels& in, int count)
{
    run.load(in, 0, count);
    beginHeapWatch();
    run.call();
    return endHeapWatch();
}

/// What is watched, in turn.
struct CWatches {
    CWatched steady{"blocks of one size"};
    CWatched sizes{"blocks of all sizes"};
    CWatched automated{"blocks with parameter changes"};

    void run(CBlockRun& run, const std::vector<CVstParam>& params)
    {
        const CChannels noise = makeNoise(run.getInputCount(), 512, 0.25);
        for (int i = 0; i < 200; ++i)
            steady.add(watch(run, noise, 512));
        for (int size = 0; size <= 512; ++size)
            sizes.add(watch(run, noise, size));
        std::mt19937 random(9);
        std::uniform_real_distribution<double> anywhere(0.0, 1.0);
        for (int i = 0; i < 200 && !params.empty(); ++i) {
            const CVstParam& param = params[random() % params.size()];
            for (int point = 0; point < 4; ++point)
                run.addPoint(param.id, point * 100, anywhere(random));
            automated.add(watch(run, noise, 512));
        }
    }
    [[nodiscard]] std::int64_t getCalls() const
    {
        return steady.calls + sizes.calls + automated.calls;
    }
};

CError* checkAllocation(CPlugin& plugin, CFindings& findings)
{
    TSM_TRY(plugin.open());
    CLivePlugin live;
    TSM_TRY(live.start(plugin, kSetUp, findings));
    std::vector<CVstParam> params;
    for (const CVstParam& param : live.getParams().getAll())
        if (param.has(ParameterInfo::kCanAutomate) && isUsersOwn(param) &&
            !plugin.mayLoad(param.title))
            params.push_back(param);
    // The tool's lists of changes get their size before anything is watched.
    for (const CVstParam& param : params)
        for (int i = 0; i < 4; ++i)
            live.getRun().addPoint(param.id, i * 100, param.defaultValue);
    live.getRun().flush();
    // A plug-in's own pools fill when each kind of block comes for the first time. That is seldom
    // heard and never again; what goes on is what counts.
    // Twice: cross-fades of the last changes reach into what comes next.
    CWatches first;
    first.run(live.getRun(), params);
    first.run(live.getRun(), params);
    CWatches later;
    later.run(live.getRun(), params);
    later.steady.report(findings);
    later.sizes.report(findings);
    later.automated.report(findings);
    if (first.getCalls() > 0)
        findings.note(std::to_string(first.getCalls()) + " calls when blocks are the first of "
                                                         "their kind");
    return nullptr;
}

constexpr CConformCase kCases[] = {
    {"resources.cycles", "instances come and go without leaving anything", checkCycles, 10},
    {"resources.long-run", "an instance that works for long doesn't grow", checkLongRun, 3},
    {"resources.allocation", "process() asks for no memory and gives none back", checkAllocation},
};

} // namespace

std::span<const CConformCase> resourceCases()
{
    return kCases;
}

} // namespace tsm
