#include "Bench/Audio/Processes/CBankOfProduct.h"
#include "rsk/CDSPResampler.h"

#include <benchmark/benchmark.h>
#include <soxr.h>

#include <chrono>
#include <cmath>
#include <sys/wait.h>
#include <unistd.h>
#include <vector>

// What is slow once in a process: designs, tables, memory's first touch. Each measurement is made
// by a child process of its own, and the parent never does what it measures.

namespace tsm {
namespace {

constexpr double kSourceRate = 44100.0;
constexpr int kInCount = 26240;

/// Seconds that a call takes in a fresh child.
template <class Call>
double measureInChild(const Call& call)
{
    using CClock = std::chrono::steady_clock;
    int ends[2] = {};
    double seconds = 0.0;
    if (pipe(ends) != 0)
        return seconds;
    const pid_t child = fork();
    if (child == 0) {
        const CClock::time_point begin = CClock::now();
        call();
        seconds = std::chrono::duration<double>(CClock::now() - begin).count();
        _exit(write(ends[1], &seconds, sizeof seconds) == sizeof seconds ? 0 : 1);
    }
    if (read(ends[0], &seconds, sizeof seconds) != sizeof seconds)
        seconds = 0.0;
    waitpid(child, nullptr, 0);
    close(ends[0]);
    close(ends[1]);
    return seconds;
}

template <class Call>
void measure(benchmark::State& state, const Call& call)
{
    for (auto _ : state)
        state.SetIterationTime(measureInChild(call));
}

std::vector<double> makeInput()
{
    std::vector<double> samples(kInCount);
    for (int i = 0; i < kInCount; ++i)
        samples[static_cast<std::size_t>(i)] = std::sin(0.01 * i) * std::exp(-i / 5000.0);
    return samples;
}

std::size_t outCountFor(double rate)
{
    return static_cast<std::size_t>(std::lround(kInCount * rate / kSourceRate));
}

void resampleFirst(benchmark::State& state)
{
    constexpr int kMaxIn = 512;
    const auto rate = static_cast<double>(state.range(0));
    const std::vector<double> in = makeInput();
    measure(state, [&] {
        std::vector<double> out;
        out.reserve(outCountFor(rate));
        const std::vector<double> silence(kMaxIn);
        rsk::CDSPResampler16 chain(kSourceRate, rate, kMaxIn, 5.0, 136.45, rsk::EDSPPhase::Linear);
        for (std::size_t at = 0; out.size() < outCountFor(rate); at += kMaxIn) {
            const bool isBehind = at >= in.size();
            const std::size_t count = std::min<std::size_t>(kMaxIn, in.size() - at);
            const double* ready = nullptr;
            const int done = chain.process(isBehind ? silence.data() : in.data() + at,
                                           isBehind ? kMaxIn : static_cast<int>(count), ready);
            out.insert(out.end(), ready, ready + done);
        }
        benchmark::DoNotOptimize(out.data());
    });
}

void soxrFirst(benchmark::State& state)
{
    const auto rate = static_cast<double>(state.range(0));
    const std::vector<double> in = makeInput();
    measure(state, [&] {
        std::vector<double> out(outCountFor(rate));
        const soxr_io_spec_t io = soxr_io_spec(SOXR_FLOAT64_I, SOXR_FLOAT64_I);
        const soxr_quality_spec_t quality = soxr_quality_spec(SOXR_VHQ, 0);
        std::size_t done = 0;
        soxr_oneshot(kSourceRate, rate, 1, in.data(), in.size(), nullptr, out.data(), out.size(),
                     &done, &io, &quality, nullptr);
        benchmark::DoNotOptimize(out.data());
    });
}

/// An impulse of the bank, from its file to spectra: item, rate.
void loadFirst(benchmark::State& state)
{
    CBankOfProduct bank;
    measure(state, [&] {
        const CBankedImpulseRef impulse = bank.load(static_cast<std::uint32_t>(state.range(0)),
                                                    static_cast<double>(state.range(1)));
        benchmark::DoNotOptimize(impulse.get());
    });
}

void eachRate(benchmark::internal::Benchmark* bench)
{
    bench->Arg(48000)->Arg(352800)->UseManualTime()->Iterations(50)->Unit(benchmark::kMicrosecond);
}

BENCHMARK(resampleFirst)->Apply(eachRate);
BENCHMARK(soxrFirst)->Apply(eachRate);
BENCHMARK(loadFirst)
    ->Args({1, 44100})
    ->Args({1, 352800})
    ->Args({8, 44100})
    ->Args({8, 352800})
    ->UseManualTime()
    ->Iterations(50)
    ->Unit(benchmark::kMicrosecond);

} // namespace
} // namespace tsm
