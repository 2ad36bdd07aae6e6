#include "Tools/conform/CRenderPlan.h"
#include "Tools/conform/ConformCases.h"

#include <algorithm>
#include <limits>

namespace tsm {

using namespace Steinberg;
using namespace Steinberg::Vst;

namespace {

constexpr double kTolerance = 1e-6;

/// The automated parameters' values at both ends, as automation would jump.
double farFrom(double value)
{
    return value < 0.5 ? 1.0 : 0.0;
}

CError* listAutomated(CPlugin& plugin, std::vector<CVstParam>& params)
{
    CVstInstance instance;
    TSM_TRY(plugin.make(instance));
    const CVstParams all(instance.getController());
    for (const CVstParam& param : all.getAll())
        if (param.has(ParameterInfo::kCanAutomate) && isUsersOwn(param))
            params.push_back(param);
    return nullptr;
}

/// A change at a frame must sound the same however the blocks lie round it: in the middle of a
/// large one, at the beginning of one, in blocks of 1.
CError* compareCuts(CPlugin& plugin, const CVstParam& param, std::size_t frame, CFindings& findings,
                    bool& isHeard)
{
    const std::string name = "parameter " + inQuotes(param.title.toUtf8()) + " changed at frame " +
                             std::to_string(frame);
    CRenderPlan plan;
    plan.frameCount = 4096;
    CChannels still;
    TSM_TRY(plan.render(plugin, findings, still));
    plan.points = {{frame, param.id, farFrom(param.defaultValue)}};
    CChannels expected;
    TSM_TRY(plan.render(plugin, findings, expected));
    const std::size_t first = findFirstGap(still, expected, kTolerance);
    isHeard = isHeard || first < plan.frameCount;
    findings.expect(first >= frame, name, "nothing heard before",
                    "heard in frame " + std::to_string(first));
    const auto offset = static_cast<int>(frame % 512);
    for (const std::vector<int>& sizes :
         {std::vector<int>{offset > 0 ? offset : 512, 512 - offset}, {1}, {37, 64, 5}}) {
        plan.sizes = sizes;
        CChannels came;
        TSM_TRY(plan.render(plugin, findings, came));
        const CSoundGap gap = findLargestGap(expected, came);
        findings.expect(gap.size <= kTolerance * std::max(peakOf(expected), 1.0),
                        name + ", blocks of " + std::to_string(sizes[0]) +
                            (sizes.size() > 1 ? " and more" : ""),
                        "the sound of blocks of 512",
                        "differs by " + numberText(gap.size) + " in frame " +
                            std::to_string(gap.frame));
    }
    return nullptr;
}

CError* checkAccuracy(CPlugin& plugin, CFindings& findings)
{
    TSM_TRY(plugin.open());
    std::vector<CVstParam> params;
    TSM_TRY(listAutomated(plugin, params));
    if (params.empty()) {
        findings.skip("no automated parameters");
        return nullptr;
    }
    int heardCount = 0;
    for (const CVstParam& param : params) {
        bool isHeard = false;
        for (const std::size_t frame : {std::size_t{1300}, std::size_t{1536}, std::size_t{1023}})
            TSM_TRY(compareCuts(plugin, param, frame, findings, isHeard));
        heardCount += isHeard ? 1 : 0;
    }
    findings.expect(heardCount > 0, "parameters that are heard when automated", "some", "none");
    findings.note(std::to_string(heardCount) + " of " + std::to_string(params.size()) +
                  " parameters heard");
    return nullptr;
}

/// A change in a call without samples counts from the next block's first sample on.
CError* checkFlush(CPlugin& plugin, CFindings& findings)
{
    TSM_TRY(plugin.open());
    std::vector<CVstParam> params;
    TSM_TRY(listAutomated(plugin, params));
    for (const CVstParam& param : params) {
        CChannels sounds[3];
        for (int way = 0; way < 3; ++way) {
            CLivePlugin live;
            TSM_TRY(live.start(plugin, CRenderPlan().setUp, findings));
            CBlockRun& run = live.getRun();
            const CChannels in = makeNoise(std::max(run.getInputCount(), 1), 2048, 0.25);
            run.process(in, 0, 512, sounds[way]);
            run.addPoint(param.id, 0, farFrom(param.defaultValue));
            if (way == 1)
                run.flush(); // without buses
            if (way == 2)
                run.process(in, 512, 0, sounds[way]); // with buses of no samples
            for (std::size_t at = 512; at < 2048; at += 512)
                run.process(in, at, 512, sounds[way]);
        }
        for (int way = 1; way < 3; ++way) {
            const CSoundGap gap = findLargestGap(sounds[0], sounds[way]);
            findings.expect(gap.size <= kTolerance * std::max(peakOf(sounds[0]), 1.0),
                            "parameter " + inQuotes(param.title.toUtf8()) +
                                " changed in a call without " + (way == 1 ? "buses" : "samples"),
                            "the sound of a change at the next block's first sample",
                            "differs by " + numberText(gap.size) + " in frame " +
                                std::to_string(gap.frame));
        }
    }
    return nullptr;
}

/// A list of changes that gives nothing for its queues, as hosts' lists do at their limits.
class CEmptyChanges : public FObject, public IParameterChanges {
public:
    tresult queryInterface(const TUID wanted, void** obj) override
    {
        if (giveInterface<IParameterChanges>(wanted, obj, this))
            return kResultOk;
        return FObject::queryInterface(wanted, obj);
    }
    TSM_VST_REFCOUNT(FObject)

    int32 getParameterCount() override { return 3; }
    IParamValueQueue* getParameterData(int32) override { return nullptr; }
    IParamValueQueue* addParameterData(const ParamID&, int32&) override { return nullptr; }
};

CError* checkOddPoints(CPlugin& plugin, CFindings& findings)
{
    TSM_TRY(plugin.open());
    constexpr double kNan = std::numeric_limits<double>::quiet_NaN();
    constexpr double kInf = std::numeric_limits<double>::infinity();
    constexpr int kLarge = std::numeric_limits<int>::max();
    CLivePlugin live;
    TSM_TRY(live.start(plugin, CRenderPlan().setUp, findings));
    CBlockRun& run = live.getRun();
    const CChannels in = makeNoise(run.getInputCount(), 512, 0.25);
    std::vector<ParamID> ids{kNoParamId, kMaxParamId, 0x80000000, 12345};
    for (const CVstParam& param : live.getParams().getAll())
        ids.push_back(param.id);
    CChannels out;
    for (const ParamID id : ids)
        for (const double value : {kNan, kInf, -kInf, -1.0, 2.0, 1e300, 0.5}) {
            for (const int offset : {0, 100, 511, 512, 513, 100000, kLarge, -1, -kLarge})
                run.addPoint(id, offset, value);
            run.process(in, 0, 512, out);
        }
    // As many as a block has samples, for all parameters at once.
    for (const ParamID id : ids)
        for (int i = 0; i < 512; ++i)
            run.addPoint(id, i, i % 2);
    run.process(in, 0, 512, out);
    const auto empty = IPtr<CEmptyChanges>::owned(new CEmptyChanges);
    IParameterChanges* const usual = run.getData().inputParameterChanges;
    run.getData().inputParameterChanges = empty.get();
    run.process(in, 0, 512, out);
    run.getData().inputParameterChanges = usual;
    for (int i = 0; i < 20; ++i)
        run.process(in, 0, 512, out);
    findings.expect(isFinite(out), "the output behind odd points", "finite samples", "others");
    for (const CVstParam& param : live.getParams().getAll()) {
        const double value = live.getParams().getValue(param);
        findings.expect(value >= 0.0 && value <= 1.0,
                        "parameter " + inQuotes(param.title.toUtf8()) + " behind odd points",
                        "0 to 1", numberText(value));
    }
    return nullptr;
}

constexpr CConformCase kCases[] = {
    {"automation.accuracy", "a change at a sample is heard there, however the blocks lie",
     checkAccuracy, 2},
    {"automation.flush", "changes in calls without samples count from the next block on",
     checkFlush},
    {"automation.odd-points", "places, values, parameters and lists that are none do no harm",
     checkOddPoints},
};

} // namespace

std::span<const CConformCase> automationCases()
{
    return kCases;
}

} // namespace tsm
