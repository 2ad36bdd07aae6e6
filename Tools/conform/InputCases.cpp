#include "Tools/conform/CRenderPlan.h"
#include "Tools/conform/ConformCases.h"

#include <algorithm>
#include <functional>
#include <limits>

#include <xmmintrin.h>

namespace tsm {

using namespace Steinberg;
using namespace Steinberg::Vst;

namespace {

constexpr int kBlock = 512;

/// Of the input's peak, or of full scale below that: 60 dB, more than any gain is good for.
constexpr double kMostGain = 1000.0;

CChannels fill(int channelCount, const std::function<double(std::size_t)>& sampleAt)
{
    CChannels sound = makeSilence(channelCount, kBlock);
    for (std::vector<double>& channel : sound)
        for (std::size_t i = 0; i < channel.size(); ++i)
            channel[i] = sampleAt(i);
    return sound;
}

/// Every kind of bad sample, alone among good ones and as a whole block.
CError* checkBadSamples(CPlugin& plugin, CFindings& findings)
{
    TSM_TRY(plugin.open());
    constexpr double kNan = std::numeric_limits<double>::quiet_NaN();
    constexpr double kInf = std::numeric_limits<double>::infinity();
    for (const double bad : {kNan, -kNan, kInf, -kInf, 3e38, -3e38}) {
        CLivePlugin live;
        TSM_TRY(live.start(plugin, CRenderPlan().setUp, findings));
        CBlockRun& run = live.getRun();
        const CChannels noise = makeNoise(run.getInputCount(), kBlock, 0.25);
        CChannels ignored;
        for (const std::size_t period : {std::size_t{1}, std::size_t{100}})
            run.process(fill(run.getInputCount(),
                             [&](std::size_t i) { return i % period == 0 ? bad : 0.25; }),
                        0, kBlock, ignored);
        // A second to get over it; then all must be as before.
        CChannels after;
        for (int i = 0; i < 48000 / kBlock; ++i)
            run.process(noise, 0, kBlock, ignored);
        for (int i = 0; i < 8; ++i)
            run.process(noise, 0, kBlock, after);
        findings.expect(isFinite(after), "the output a second behind samples of " + numberText(bad),
                        "finite samples", "others");
        findings.expect(peakOf(after) <= kMostGain,
                        "the output a second behind samples of " + numberText(bad),
                        "no more than 60 dB above full scale", numberText(peakOf(after)));
        findings.expect(peakOf(after) > 0.0,
                        "the output a second behind samples of " + numberText(bad), "a sound",
                        "silence");
    }
    return nullptr;
}

/// Numbers close to nothing, and the floating-point modes that the host has set.
CError* checkDenormals(CPlugin& plugin, CFindings& findings)
{
    TSM_TRY(plugin.open());
    CLivePlugin live;
    TSM_TRY(live.start(plugin, CRenderPlan().setUp, findings));
    CBlockRun& run = live.getRun();
    const unsigned before = _mm_getcsr();
    constexpr unsigned kFlags = 0x3f; // what happened, not how to count
    CChannels out;
    for (const double tiny : {1e-38, 1e-40, 1.4e-45, -1e-42, 0.0})
        for (int i = 0; i < 20; ++i)
            run.process(fill(run.getInputCount(),
                             [tiny](std::size_t frame) { return frame % 2 ? tiny : -tiny; }),
                        0, kBlock, out);
    findings.expect(isFinite(out), "the output of denormal numbers", "finite samples", "others");
    findings.expect(((before ^ _mm_getcsr()) & ~kFlags) == 0,
                    "the host's floating-point modes behind process()", std::to_string(before),
                    std::to_string(_mm_getcsr()));
    return nullptr;
}

/// Loud and odd signals through random settings.
CError* checkBounds(CPlugin& plugin, CFindings& findings)
{
    TSM_TRY(plugin.open());
    struct CSignal {
        const char* name;
        std::function<double(std::size_t)> sampleAt;
    };
    const CSignal signals[] = {
        {"full scale", [](std::size_t i) { return i % 100 < 50 ? 1.0 : -1.0; }},
        {"24 dB above full scale", [](std::size_t i) { return i % 7 < 3 ? 16.0 : -16.0; }},
        {"a constant", [](std::size_t) { return 1.0; }},
        {"the highest frequency", [](std::size_t i) { return i % 2 ? 1.0 : -1.0; }},
        {"impulses", [](std::size_t i) { return i % 64 == 0 ? 1.0 : 0.0; }},
        {"silence", [](std::size_t) { return 0.0; }}};
    const int rounds = plugin.countRounds(40, 8);
    for (int round = 0; round < rounds; ++round) {
        CLivePlugin live;
        TSM_TRY(live.start(plugin, CRenderPlan().setUp, findings));
        CBlockRun& run = live.getRun();
        for (const CSignal& signal : signals) {
            live.setAll(live.drawValues(static_cast<unsigned>(round) + 1));
            const CChannels in = fill(run.getInputCount(), signal.sampleAt);
            CChannels out;
            for (int i = 0; i < 20; ++i)
                run.process(in, 0, kBlock, out);
            const double limit = kMostGain * std::max(peakOf(in), 1.0);
            findings.expect(isFinite(out) && peakOf(out) <= limit,
                            "the output of " + std::string(signal.name) + ", random settings " +
                                std::to_string(round),
                            "finite samples, at most " + numberText(limit),
                            isFinite(out) ? numberText(peakOf(out)) : "others");
        }
    }
    return nullptr;
}

constexpr CConformCase kCases[] = {
    {"input.not-finite", "NaN, infinity and huge samples leave no damage", checkBadSamples},
    {"input.denormals", "denormal samples; the host's floating-point modes are kept",
     checkDenormals},
    {"input.bounds", "loud signals through random settings stay finite and bounded", checkBounds},
};

} // namespace

std::span<const CConformCase> inputCases()
{
    return kCases;
}

} // namespace tsm
