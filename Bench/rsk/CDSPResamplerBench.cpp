#include "rsk/CDSPFracBank.h"
#include "rsk/CDSPResampler.h"

#include <benchmark/benchmark.h>
#include <soxr.h>

#include <cmath>
#include <vector>

namespace tsm::rsk {
namespace {

// The longest impulse of the bank.
constexpr int kInCount = 26240;
constexpr int kMaxIn = 512;
constexpr double kSourceRate = 44100.0;

std::vector<double> makeInput()
{
    std::vector<double> samples(kInCount);
    for (int i = 0; i < kInCount; ++i)
        samples[static_cast<std::size_t>(i)] = std::sin(0.01 * i) * std::exp(-i / 5000.0);
    return samples;
}

int outCountFor(double rate)
{
    return static_cast<int>(std::lround(kInCount * rate / kSourceRate));
}

/// One channel, set-up included; the designs are those of the run before.
void resampleImpulse(benchmark::State& state)
{
    const auto rate = static_cast<double>(state.range(0));
    const std::vector<double> in = makeInput();
    const std::vector<double> silence(kMaxIn);
    std::vector<double> out(static_cast<std::size_t>(outCountFor(rate)));
    for (auto _ : state) {
        CDSPResampler16 chain(kSourceRate, rate, kMaxIn, 5.0, 136.45, EDSPPhase::Linear);
        std::size_t done = 0;
        for (std::size_t at = 0; done < out.size(); at += kMaxIn) {
            const bool isBehind = at >= in.size();
            const std::size_t length =
                isBehind ? kMaxIn : std::min<std::size_t>(kMaxIn, in.size() - at);
            const double* ready = nullptr;
            const auto count = static_cast<std::size_t>(chain.process(
                isBehind ? silence.data() : in.data() + at, static_cast<int>(length), ready));
            const std::size_t wanted = std::min(count, out.size() - done);
            std::copy_n(ready, wanted, out.data() + done);
            done += wanted;
        }
        benchmark::DoNotOptimize(out.data());
        benchmark::ClobberMemory();
    }
}

/// A first load: no designs are there yet, but for the transforms.
void designLowPass(benchmark::State& state)
{
    for (auto _ : state) {
        const CDSPLowPass lowPass({0.5, 5.0, 136.45, EDSPPhase::Linear, 2.0});
        benchmark::DoNotOptimize(&lowPass);
    }
}

/// The same for the interpolator: fractions, and whether it is a spline's.
void designBank(benchmark::State& state)
{
    for (auto _ : state) {
        const CDSPFracBank bank({static_cast<int>(state.range(0)), 136.45, state.range(1) != 0});
        benchmark::DoNotOptimize(&bank);
    }
}

/// The baseline at its best setting.
void soxrImpulse(benchmark::State& state)
{
    const auto rate = static_cast<double>(state.range(0));
    const std::vector<double> in = makeInput();
    std::vector<double> out(static_cast<std::size_t>(outCountFor(rate)));
    const soxr_io_spec_t io = soxr_io_spec(SOXR_FLOAT64_I, SOXR_FLOAT64_I);
    const soxr_quality_spec_t quality = soxr_quality_spec(SOXR_VHQ, 0);
    for (auto _ : state) {
        std::size_t done = 0;
        soxr_oneshot(kSourceRate, rate, 1, in.data(), in.size(), nullptr, out.data(), out.size(),
                     &done, &io, &quality, nullptr);
        benchmark::DoNotOptimize(out.data());
        benchmark::ClobberMemory();
    }
}

BENCHMARK(resampleImpulse)->Arg(48000)->Arg(88200)->Arg(96000)->Arg(192000)->Arg(352800);
BENCHMARK(soxrImpulse)->Arg(48000)->Arg(88200)->Arg(96000)->Arg(192000)->Arg(352800);
BENCHMARK(designLowPass);
BENCHMARK(designBank)->Args({80, 0})->Args({320, 0})->Args({256, 1});

} // namespace
} // namespace tsm::rsk
