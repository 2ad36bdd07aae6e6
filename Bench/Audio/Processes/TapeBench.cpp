// The tape stages beside their recurrence written down sample by sample. Loud noise makes the
// recurrence's branches unpredictable, silence is its best case: so the signal stands in the name.

#include "Audio/Processes/CTapePostStage.h"
#include "Audio/Processes/CTapeStage.h"
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

double sigmoid(double u)
{
    const double a = std::fabs(u);
    const double n = u * (u * u * (0.8785524976458703 * a + 0.9403501925936697) +
                          (2.423509618411691 * a + 2.395631787739572));
    const double d = std::fabs(u + 0.8766349762624457 * u * a) * (u * u + 2.3636579090766805) +
                     2.397102514234356;
    return n / d;
}

double saturate(double x, double hardness)
{
    if (x >= 0.0) {
        const double t = 0.999999 * hardness;
        return t >= x ? x : sigmoid((x - t) / (1.0 - t)) * (1.0 - t) + t;
    }
    const double t = -0.999999 * hardness;
    const double z = x / 0.98;
    return z >= t ? z * 0.98 : 0.98 * (sigmoid((z - t) / (t + 1.0)) * (1.0 + t) + t);
}

/// One channel of either stage, sample by sample, on the doubled ring.
class CPlainTape {
public:
    explicit CPlainTape(const CFlutterCoefficients& flutter)
        : ring(2 * static_cast<std::size_t>(flutter.length))
    {
        state.flutter.position = flutter.length - 1;
    }

    void process(const CTapeCoefficients& tape, const double* __restrict in, double* __restrict out,
                 int count)
    {
        // Locals: a store to out[] or the ring must not force a reload each sample.
        CTapeState s = state;
        const CTapeCoefficients c = tape;
        for (int i = 0; i < count; ++i) {
            const double fl = stepFlutter(c.flutter, s.flutter);
            const double y = stepShelf(c.shelf, in[i] * s.envelope, s);
            s.rollOff += (y - s.rollOff) * c.rollOff;
            const double g = stepDelay(c.flutter, s.flutter, y - s.rollOff, fl) * c.recGain;
            const double o = saturate(g, c.hardness) * c.wet + g * c.dry;
            if (c.hasFeedback) {
                const double ratio = (1e-10 + std::fabs(o)) / (1e-10 + std::fabs(g));
                s.envelope += (ratio - s.envelope) * c.envelope;
            }
            out[i] = o * c.makeup;
        }
        state = s;
    }

    void process(const CTapePostCoefficients& post, const double* __restrict in,
                 double* __restrict out, int count)
    {
        CTapeState s = state;
        const CTapePostCoefficients c = post;
        for (int i = 0; i < count; ++i) {
            const double fl = stepFlutter(c.flutter, s.flutter);
            const double y = stepDelay(c.flutter, s.flutter, in[i], fl);
            s.rollOff += (y - s.rollOff) * c.rollOff;
            out[i] = stepShelf(c.shelf, y - s.rollOff, s);
        }
        state = s;
    }

private:
    static double stepFlutter(const CFlutterCoefficients& c, CFlutterState& s)
    {
        const std::uint32_t n1 = s.noise * 30013 + 30011;
        const std::uint32_t n2 = n1 * 30013 + 30011;
        s.noise = n2 * 30013 + 30011;
        const double white =
            ((n1 & 0xffffff) + (n2 & 0xffffff) + (s.noise & 0xffffff)) * 0x1p-24 - 1.5;
        s.s0 += (white - s.s0) * c.c0;
        s.s1 += (s.s0 - s.s1) * c.c1;
        s.s2 += (s.s1 - s.s2) * c.c2;
        s.s3 += (s.s2 - s.s3) * c.c3;
        return s.s2 - s.s3;
    }

    static double stepShelf(const CShelfCoefficients& c, double x, CTapeState& s)
    {
        const double w = x + c.na1 * s.w1 + c.na2 * s.w2;
        const double y = c.b0 * w + c.b1 * s.w1 + c.b2 * s.w2;
        s.w2 = s.w1;
        s.w1 = w;
        return y;
    }

    double stepDelay(const CFlutterCoefficients& c, CFlutterState& s, double in, double fl)
    {
        double* __restrict at = ring.data();
        at[s.position] = in;
        at[s.position + c.length] = in;
        const double p = c.center + s.position + fl * c.depth;
        const int k = static_cast<int>(p);
        const double t = p - k;
        const double x0 = at[k];
        const double x1 = at[k + 1];
        const double x2 = at[k + 2];
        const double x3 = at[k + 3];
        s.position = s.position == 0 ? c.length - 1 : s.position - 1;
        return x1 + t * (0.5 * (x2 - x0) + t * (x0 - 2.5 * x1 + 2.0 * x2 - 0.5 * x3 +
                                                t * (0.5 * (x3 - x0) + 1.5 * (x1 - x2))));
    }

    CTapeState state;
    std::vector<double> ring;
};

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
