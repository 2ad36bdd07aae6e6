#include "Tools/conform/CRenderPlan.h"
#include "Tools/conform/ConformCases.h"

#include <algorithm>
#include <cmath>

namespace tsm {

using namespace Steinberg;
using namespace Steinberg::Vst;

namespace {

constexpr int kBlock = 512;
constexpr int kMostLatency = 1 << 20;

const CVstParam* findBypass(const CLivePlugin& live)
{
    for (const CVstParam& param : live.getParams().getAll())
        if (param.has(ParameterInfo::kIsBypass))
            return &param;
    return nullptr;
}

/// Noise through the plug-in, both in blocks; some of it to settle first.
void runNoise(CLivePlugin& live, std::size_t frameCount, CChannels& in, CChannels& out)
{
    CBlockRun& run = live.getRun();
    const CChannels before = makeNoise(std::max(run.getInputCount(), 1), 24000, 0.1, 7);
    CChannels ignored;
    run.processAll(before, {kBlock}, ignored);
    in = makeNoise(std::max(run.getInputCount(), 1), frameCount, 0.1, 8);
    out.clear();
    run.processAll(in, {kBlock}, out);
}

/// The latency by correlation. Finds it when what is reported is another.
void compareLatency(CLivePlugin& live, const std::string& when, int reported, CFindings& findings)
{
    // The peak of a filter's answer may lie beside its delay, by about a sample.
    constexpr int kRoom = 2;
    constexpr int kSearch = 1024; // beyond what is reported
    CChannels in;
    CChannels out;
    runNoise(live, static_cast<std::size_t>(2 * reported + 2 * kSearch) + 8192, in, out);
    if (live.getRun().getInputCount() == 0 || out.empty()) {
        findings.skip("no way from an input to an output");
        return;
    }
    const CLag lag = findLag(in[0], out[0], 2 * reported + kSearch);
    if (std::abs(lag.correlation) < 0.3) {
        findings.note("the output" + when + " isn't like the input, its latency not measured");
        return;
    }
    findings.expect(std::abs(lag.samples - reported) <= kRoom, "latency" + when,
                    std::to_string(lag.samples) + " samples, as measured by correlation",
                    std::to_string(reported) + " reported");
    findings.note(std::to_string(reported) + " samples" + when);
}

CError* checkLatency(CPlugin& plugin, CFindings& findings)
{
    TSM_TRY(plugin.open());
    for (const double rate : {44100.0, 96000.0}) {
        CLivePlugin live;
        CVstSetUp setUp = CRenderPlan().setUp;
        setUp.rate = rate;
        TSM_TRY(live.start(plugin, setUp, findings));
        const int reported = live.getInstance().getLatency();
        if (!findings.expect(reported <= kMostLatency, "latency", "at most 2^20 samples",
                             std::to_string(reported)))
            return nullptr;
        compareLatency(live, " at " + numberText(rate) + " Hz", reported, findings);
        findings.expectEqual("latency while sound runs", reported, live.getInstance().getLatency());
        if (const CVstParam* const bypass = findBypass(live)) {
            live.setAll({{bypass->id, 1.0}});
            compareLatency(live, " at " + numberText(rate) + " Hz with bypass", reported, findings);
        }
    }
    return nullptr;
}

/// Bypassed, the output is the input, as late as ever.
CError* checkBypass(CPlugin& plugin, CFindings& findings)
{
    TSM_TRY(plugin.open());
    CLivePlugin live;
    TSM_TRY(live.start(plugin, CRenderPlan().setUp, findings));
    const CVstParam* const bypass = findBypass(live);
    if (!bypass || live.getRun().getInputCount() != live.getRun().getOutputCount()) {
        findings.skip("no bypass");
        return nullptr;
    }
    live.setAll(live.drawValues(3));
    live.setAll({{bypass->id, 1.0}});
    CChannels in;
    CChannels out;
    runNoise(live, 16384, in, out);
    const auto latency = static_cast<std::size_t>(live.getInstance().getLatency());
    CChannels expected = in;
    for (std::vector<double>& channel : expected) {
        channel.insert(channel.begin(), latency, 0.0);
        channel.resize(in[0].size());
    }
    // What came before the input is still on its way through; 60 dB is what a cross-fade or a
    // filter at the band's edge may leave.
    const CSoundGap gap = findLargestGap(expected, out, latency);
    findings.expect(
        gap.size <= 1e-3 * peakOf(in), "the output with bypass", "the input, late by the latency",
        "differs by " + numberText(gap.size) + " in frame " + std::to_string(gap.frame));
    findings.expect(live.getParams().getValue(*bypass) > 0.5, "the bypass parameter", "on", "off");
    // And back.
    live.setAll({{bypass->id, 0.0}});
    runNoise(live, 4096, in, out);
    findings.expect(isFinite(out) && peakOf(out) > 0.0, "the output behind bypass", "a sound",
                    "none");
    return nullptr;
}

/// What still sounds when the tail is over must be what silence sounds like.
CError* checkTail(CPlugin& plugin, CFindings& findings)
{
    TSM_TRY(plugin.open());
    CLivePlugin live;
    CLivePlugin silent;
    TSM_TRY(live.start(plugin, CRenderPlan().setUp, findings));
    TSM_TRY(silent.start(plugin, CRenderPlan().setUp, findings));
    const uint32 tail = live.getInstance().getProcessor().getTailSamples();
    if (tail == kInfiniteTail || tail > 60u * 48000u) {
        findings.skip("an endless tail, or one of more than a minute");
        return nullptr;
    }
    const std::size_t over = tail + static_cast<std::size_t>(live.getInstance().getLatency());
    const int channelCount = std::max(live.getRun().getInputCount(), 1);
    const CChannels silence = makeSilence(channelCount, over + 8192);
    CChannels in;
    CChannels ignored;
    runNoise(live, 48000, in, ignored);
    CChannels out;
    CChannels floor;
    live.getRun().processAll(silence, {kBlock}, out);
    silent.getRun().processAll(silence, {kBlock}, floor);
    silent.getRun().processAll(silence, {kBlock}, floor);
    const double limit = std::max(2.0 * peakOf(floor), 1e-4);
    findings.expect(peakOf(out, over) <= limit,
                    "what sounds " + std::to_string(tail) + " samples behind the input's end",
                    "at most " + numberText(limit) +
                        ", 80 dB below full scale or as silence sounds",
                    numberText(peakOf(out, over)));
    findings.note(std::to_string(tail) + " samples");
    return nullptr;
}

constexpr CConformCase kCases[] = {
    {"timing.latency", "the latency reported is the one measured", checkLatency},
    {"timing.bypass", "with bypass the output is the input, as late as ever", checkBypass},
    {"timing.tail", "the tail is over when it is said to be", checkTail},
};

} // namespace

std::span<const CConformCase> timingCases()
{
    return kCases;
}

} // namespace tsm
