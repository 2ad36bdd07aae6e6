// The tape stages beside their recurrence written down sample by sample. Loud noise makes the
// recurrence's branches unpredictable, silence is its best case: so the signal stands in the name.

#include "Audio/Processes/CTapePostStage.h"
#include "Audio/Processes/CTapeStage.h"
#include "Bench/Audio/Processes/CPlainTape.h"
#include "Platform/CFloatControl.h"

#include <benchmark/benchmark.h>

#include <cmath>
#include <numbers>
#include <random>
#include <string>
#include <vector>

namespace {

using namespace tsm;

constexpr int kBlock = 512;
// Long enough that no branch predictor learns the noise by heart.
constexpr int kBlocks = 128;

enum class ESignal { Noise, Sine, Silence };

std::vector<double> makeSignal(ESignal kind, unsigned seed)
{
    std::mt19937 generator(seed);
    std::uniform_real_distribution<double> uniform(-1.5, 1.5);
    std::vector<double> signal(kBlocks * kBlock);
    for (std::size_t i = 0; i < signal.size(); ++i) {
        const double sine = std::sin(2.0 * std::numbers::pi * 8.0 * double(i) / kBlock);
        signal[i] = kind == ESignal::Noise  ? uniform(generator)
                    : kind == ESignal::Sine ? sine
                                            : 0.0;
    }
    return signal;
}

struct CCase {
    bool isPost;
    ESignal signal;
    int feedbackMode;
    int channels;
    double sampleRate;
};

std::string nameOf(const CCase& at)
{
    constexpr const char* kSignals[] = {"noise", "sine", "silence"};
    std::string name = at.isPost ? "post/" : at.feedbackMode ? "tape_feedback/" : "tape/";
    name += kSignals[static_cast<int>(at.signal)];
    name += at.sampleRate > 100000.0 ? "/352800" : "/44100";
    return name + (at.channels == 1 ? "/mono" : "/stereo");
}

void countSamples(benchmark::State& state, int channels)
{
    state.counters["per_sample"] = benchmark::Counter(
        double(kBlock) * channels,
        benchmark::Counter::kIsIterationInvariantRate | benchmark::Counter::kInvert);
}

template <class Stage, class Settings>
void runKernel(benchmark::State& state, const CCase& at, const Settings& settings,
               EKernelBuild build)
{
    const CFloatControl floatControl;
    const EKernelBuild former = &tapeKernels() == tapeKernels(EKernelBuild::Generic)
                                    ? EKernelBuild::Generic
                                    : EKernelBuild::Fma;
    if (!selectTapeKernels(build)) {
        state.SkipWithError("not for this processor");
        return;
    }
    std::vector<Stage> stages(static_cast<std::size_t>(at.channels));
    std::vector<std::vector<double>> buffers;
    std::vector<typename Stage::CLane> lanes;
    buffers.reserve(8);
    for (Stage& stage : stages) {
        stage.update(settings);
        const double* in =
            buffers.emplace_back(makeSignal(at.signal, unsigned(buffers.size()))).data();
        double* out = buffers.emplace_back(kBlock).data();
        stage.setHistory(buffers.emplace_back(stage.getHistoryCount()).data());
        lanes.push_back({in, out, &stage});
    }
    int block = 0;
    for (auto _ : state) {
        for (auto& lane : lanes)
            lane.in += block == 0 ? 0 : kBlock;
        Stage::process(lanes.data(), at.channels, kBlock);
        benchmark::ClobberMemory();
        if (++block == kBlocks) {
            for (auto& lane : lanes)
                lane.in -= (kBlocks - 1) * kBlock;
            block = 0;
        }
    }
    countSamples(state, at.channels);
    selectTapeKernels(former);
}

template <class Coefficients>
void runPlain(benchmark::State& state, const CCase& at, const Coefficients& coefficients)
{
    const CFloatControl floatControl;
    std::vector<CPlainTape> tapes(static_cast<std::size_t>(at.channels),
                                  CPlainTape(coefficients.flutter));
    std::vector<std::vector<double>> in;
    for (unsigned i = 0; i < tapes.size(); ++i)
        in.push_back(makeSignal(at.signal, i));
    std::vector<double> out(kBlock);
    int block = 0;
    for (auto _ : state) {
        for (std::size_t i = 0; i < tapes.size(); ++i)
            tapes[i].process(coefficients, in[i].data() + block * kBlock, out.data(), kBlock);
        benchmark::ClobberMemory();
        block = (block + 1) % kBlocks;
    }
    countSamples(state, at.channels);
}

CTapeSettings tapeSettings(const CCase& at)
{
    return {at.sampleRate, 1.0, 1.0, 0.5, 0.5, 10.0, at.feedbackMode, 0};
}

CTapePostSettings postSettings(const CCase& at)
{
    return {at.sampleRate, 0.5, 10.0, 0.0, 0};
}

void addCase(const CCase& at)
{
    const std::string name = nameOf(at);
    const CTapeKernels& generic = *tapeKernels(EKernelBuild::Generic);
    benchmark::RegisterBenchmark((name + "/plain").c_str(),
                                 [at, &generic](benchmark::State& state) {
                                     if (at.isPost)
                                         runPlain(state, at, generic.updatePost(postSettings(at)));
                                     else
                                         runPlain(state, at, generic.updateTape(tapeSettings(at)));
                                 });
    for (const EKernelBuild build : {EKernelBuild::Generic, EKernelBuild::Fma}) {
        const char* suffix = build == EKernelBuild::Fma ? "/fma" : "/generic";
        benchmark::RegisterBenchmark((name + suffix).c_str(), [at, build](benchmark::State& state) {
            if (at.isPost)
                runKernel<CTapePostStage>(state, at, postSettings(at), build);
            else
                runKernel<CTapeStage>(state, at, tapeSettings(at), build);
        });
    }
}

const bool kIsRegistered = [] {
    for (const double sampleRate : {44100.0, 352800.0})
        for (const int channels : {1, 2})
            for (const ESignal signal : {ESignal::Noise, ESignal::Sine, ESignal::Silence}) {
                addCase({false, signal, 0, channels, sampleRate});
                addCase({false, signal, 1, channels, sampleRate});
                addCase({true, signal, 0, channels, sampleRate});
            }
    return true;
}();

} // namespace
