// A whole instance beside its chain as the recurrences are written down: stereo, 44.1 kHz, blocks
// of 512, loud noise, a tape impulse of 4,498 samples, plainly or at eight times the rate.

#include "Audio/Processes/TapeKernels.h"
#include "Audio/ProductCreators.h"
#include "Bench/Audio/CBenchWrapper.h"
#include "Bench/Audio/Filters/CPlainHalfBand.h"
#include "Bench/Audio/Processes/CPlainTape.h"
#include "Bench/Support/Check.h"
#include "Bench/rsk/CStagedPlan.h"
#include "Core/CApplication.h"
#include "Platform/CFloatControl.h"

#include <benchmark/benchmark.h>

#include <algorithm>
#include <cmath>
#include <random>
#include <vector>

namespace tsm {
namespace {

constexpr int kBlock = 512;
constexpr int kFrames = 65536;
constexpr double kRate = 44100.0;
constexpr int kImpulse = 4498;

/// Two channels of noise.
std::vector<double> makeNoise()
{
    std::mt19937 generator(1);
    std::uniform_real_distribution<double> uniform(-0.7, 0.7);
    std::vector<double> noise(2 * kFrames);
    for (double& sample : noise)
        sample = uniform(generator);
    return noise;
}

void tellCost(benchmark::State& state)
{
    state.counters["core_percent"] =
        benchmark::Counter(kBlock / (100.0 * kRate), benchmark::Counter::kIsIterationInvariantRate |
                                                         benchmark::Counter::kInvert);
}

/// One channel of the chain, without a graph round it.
class CPlainChain {
public:
    CPlainChain(int rateFactor, const std::vector<double>& impulse)
        : factor(rateFactor),
          tape(tapeKernels(EKernelBuild::Generic)
                   ->updateTape({factor * kRate, 1.0, 1.0, 0.5, 0.2, 10.0, 0, 1})),
          post(tapeKernels(EKernelBuild::Generic)->updatePost({factor * kRate, 0.5, 10.0, 0.0, 1})),
          tapeStage(tape.flutter), postStage(post.flutter),
          convolver(impulse.data(), static_cast<int>(impulse.size()), 0)
    {
        for (int at = 2; at <= factor; at *= 2) {
            up.emplace_back();
            down.emplace_back();
        }
        for (auto& buffer : buffers)
            buffer.resize(static_cast<std::size_t>(factor) * kBlock);
    }

    void process(const double* in, double* out)
    {
        double* now = buffers[0].data();
        double* next = buffers[1].data();
        std::copy_n(in, kBlock, now);
        int count = kBlock;
        for (CPlainHalfBand& filter : up) {
            for (int i = 0; i < count; ++i) {
                next[2 * i] = 2.0 * now[i];
                next[2 * i + 1] = 0.0;
            }
            count *= 2;
            filter.process(next, now, count);
        }
        tapeStage.process(tape, now, next, count);
        convolver.process(next, now, count);
        postStage.process(post, now, next, count);
        std::swap(now, next);
        for (CPlainHalfBand& filter : down) {
            filter.process(now, next, count);
            count /= 2;
            for (int i = 0; i < count; ++i)
                now[i] = next[2 * i];
        }
        std::copy_n(now, kBlock, out);
    }

private:
    int factor;
    CTapeCoefficients tape;
    CTapePostCoefficients post;
    CPlainTape tapeStage;
    CPlainTape postStage;
    rsk::CStagedPlan convolver;
    std::vector<CPlainHalfBand> up;
    std::vector<CPlainHalfBand> down;
    std::vector<double> buffers[2];
};

/// The rate's factor.
void plainChain(benchmark::State& state)
{
    const CFloatControl floatControl;
    const int factor = static_cast<int>(state.range(0));
    std::vector<double> impulse(static_cast<std::size_t>(factor) * kImpulse);
    for (std::size_t i = 0; i < impulse.size(); ++i)
        impulse[i] = std::exp(-4.0 * static_cast<double>(i) / static_cast<double>(impulse.size())) /
                     static_cast<double>(factor) *
                     std::sin(0.3 * static_cast<double>(i * i % 1000));
    CPlainChain chains[] = {{factor, impulse}, {factor, impulse}};
    const std::vector<double> in = makeNoise();
    std::vector<double> out(2 * kBlock);
    int at = 0;
    for (auto _ : state) {
        for (int i = 0; i < 2; ++i)
            chains[i].process(in.data() + i * kFrames + at, out.data() + i * kBlock);
        benchmark::DoNotOptimize(out.data());
        at = (at + kBlock) % kFrames;
    }
    tellCost(state);
}
BENCHMARK(plainChain)->Arg(1)->Arg(8);

/// By factor and tape impulse; impulse 0 is none.
void oversampledInstance(benchmark::State& state)
{
    CApplication application;
    check(startProduct(application));
    const auto wrapper = CBenchWrapper::make();
    wrapper->set("oversampling", 1.0 + std::log2(static_cast<double>(state.range(0))));
    wrapper->set("modReelpath.cab-enable", state.range(1) > 0 ? 1.0 : 0.0);
    wrapper->set("modReelpath.cab-index", static_cast<double>(state.range(1)));
    wrapper->startProcessing();
    const std::vector<double> in = makeNoise();
    std::vector<double> out(2 * kBlock);
    int at = 0;
    for (auto _ : state) {
        const void* const inputs[] = {in.data() + at, in.data() + kFrames + at};
        void* const outputs[] = {out.data(), out.data() + kBlock};
        wrapper->processBlock(inputs, outputs, kBlock);
        benchmark::DoNotOptimize(out.data());
        at = (at + kBlock) % kFrames;
    }
    tellCost(state);
}
BENCHMARK(oversampledInstance)
    ->ArgNames({"factor", "impulse"})
    ->ArgsProduct({{1, 2, 4, 8}, {0, 1, 2, 3, 4, 5, 6, 7, 8}});

} // namespace
} // namespace tsm
