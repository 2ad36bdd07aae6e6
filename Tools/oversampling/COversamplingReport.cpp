#include "Tools/oversampling/COversamplingReport.h"

#include "Tools/analyze/CAliasMeasure.h"
#include "Tools/analyze/CTextTable.h"

#include <cmath>
#include <complex>
#include <numbers>

namespace tsm {

namespace {

constexpr double kTones[] = {5000.0, 12000.0};
constexpr double kRecGainDb = 12.0;
constexpr double kToneLevel = 0.5; // peak: with the gain four times as much
constexpr double kAliasRate = 44100.0;

std::vector<double> makeSine(double cycles, double level, int count)
{
    std::vector<double> sine(static_cast<std::size_t>(count));
    for (int i = 0; i < count; ++i)
        sine[static_cast<std::size_t>(i)] = level * std::sin(2.0 * std::numbers::pi * cycles * i);
    return sine;
}

/// The delay in samples next to `near` of a chain that turned a sine into `out`.
double delayOf(const std::vector<double>& out, double cycles, double near)
{
    std::complex<double> sum = 0.0;
    for (std::size_t i = out.size() / 2; i < out.size(); ++i)
        sum += out[i] * std::polar(1.0, -2.0 * std::numbers::pi * cycles * static_cast<double>(i));
    const double turns = -(std::arg(sum) + 0.5 * std::numbers::pi) / (2.0 * std::numbers::pi);
    const double late = turns / cycles;
    return late + std::round((near - late) * cycles) / cycles;
}

std::string nameOf(const COversamplingChoice& choice)
{
    const std::string name = std::to_string(choice.factor) + "X";
    if (choice.factor == 1)
        return choice.isLinear ? name + ", linear phase on" : name;
    return name + (choice.isLinear ? ", linear phase" : ", half-band");
}

std::string row(const std::vector<std::string>& cells)
{
    std::string line = "|";
    for (const std::string& cell : cells)
        line += " " + cell + " |";
    return line + "\n";
}

} // namespace

CError* COversamplingReport::measure()
{
    for (const double rate : {44100.0, 48000.0, 88200.0, 96000.0, 192000.0})
        for (const bool isLinear : {false, true})
            for (const int factor : {1, 2, 4, 8})
                TSM_TRY(measureLatency({factor, isLinear, rate}));
    TSM_TRY(measureAliasing({1, false, kAliasRate}));
    for (const bool isLinear : {false, true})
        for (const int factor : {2, 4, 8})
            TSM_TRY(measureAliasing({factor, isLinear, kAliasRate}));
    return nullptr;
}

CError* COversamplingReport::measureLatency(const COversamplingChoice& choice)
{
    constexpr double kCycles = 0.03;
    constexpr int kCount = 16384;
    CChainProbe probe;
    TSM_TRY(probe.open(choice, 0.0, 100.0));
    CLatencyRow row{choice, 0.0, probe.getLatency()};
    // The phase tells the delay up to whole waves, of 33 and 30 samples: the two agree once in 333.
    const std::vector<double> out = probe.process(makeSine(kCycles, 0.01, kCount));
    const std::vector<double> second = probe.process(makeSine(kCycles * 1.1, 0.01, kCount));
    double best = 1e9;
    for (double near = row.reported - 16.0; near < row.reported + 280.0; near += 16.0) {
        const double late = delayOf(out, kCycles, near);
        const double lateAgain = delayOf(second, kCycles * 1.1, late);
        if (std::abs(late - lateAgain) < best) {
            best = std::abs(late - lateAgain);
            row.real = late;
        }
    }
    latencies.push_back(row);
    return nullptr;
}

CError* COversamplingReport::measureAliasing(const COversamplingChoice& choice)
{
    constexpr int kSettle = 22050;
    constexpr int kCount = 65536;
    CAliasRow row{choice, {}};
    for (const double hz : kTones) {
        CChainProbe probe;
        TSM_TRY(probe.open(choice, kRecGainDb, 20.0));
        std::vector<double> out =
            probe.process(makeSine(hz / choice.rate, kToneLevel, kSettle + kCount));
        out.erase(out.begin(), out.begin() + kSettle);
        row.levels.push_back(CAliasMeasure::aliasDb(out, choice.rate, hz));
    }
    aliases.push_back(row);
    return nullptr;
}

std::string COversamplingReport::toMarkdown() const
{
    std::string text =
        "# Oversampling, measured\n\n"
        "Made by `build/release/bin/reelpath-oversampling Docs/oversampling.md`.\n\n"
        "## Latency\n\n"
        "Samples at the host's rate. *Real* is the delay of a low sine through the whole chain, "
        "*told*\n"
        "what the host compensates. The half-band filters' group delay, a few samples, is told\n"
        "nowhere. With linear phase all factors shall have one figure, 584; from 2X on the "
        "filters\n"
        "need more than that, and the chain is late by the difference. The dry path of the bypass "
        "is\n"
        "aligned with the real delay of the figures that stages tell each other.\n\n";
    text += row({"rate", "setting", "real", "told", "difference"}) + "|--:|---|--:|--:|--:|\n";
    for (const CLatencyRow& latency : latencies)
        text += row({formatNumber(latency.choice.rate, 0), nameOf(latency.choice),
                     formatNumber(latency.real, 1), std::to_string(latency.reported),
                     formatNumber(latency.real - latency.reported, 1)});
    text += "\n## Aliasing\n\n"
            "A sine of -6 dBFS with 12 dB of recording gain at hardness 20 %, at 44.1 kHz: the "
            "power of\n"
            "all harmonics that were folded back into the band, in dB below the tone.\n\n";
    text += row({"setting", "5 kHz", "12 kHz"}) + "|---|--:|--:|\n";
    for (const CAliasRow& alias : aliases)
        text += row({nameOf(alias.choice), formatNumber(alias.levels[0], 1),
                     formatNumber(alias.levels[1], 1)});
    return text;
}

std::string COversamplingReport::toPlotData() const
{
    std::string text = "setting \"5 kHz\" \"12 kHz\"\n";
    for (const CAliasRow& alias : aliases)
        text += "\"" + nameOf(alias.choice) + "\" " + formatNumber(alias.levels[0], 2) + " " +
                formatNumber(alias.levels[1], 2) + "\n";
    return text;
}

} // namespace tsm
