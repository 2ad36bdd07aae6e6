#include "Audio/Filters/CDCDAWFilterWorkspace.h"

#include <benchmark/benchmark.h>

#include <cmath>
#include <vector>

namespace tsm {
namespace {

constexpr int kBlock = 512;
constexpr int kSections = 5;
constexpr double kSteep[] = {0.017201989192148732, 0.14343641647193758, 0.34790076963109384,
                             0.57735026918962573,  0.81051797007260162, 0.066817741883400714,
                             0.23966776783586008,  0.46181636331192544, 0.69311655842787734,
                             0.9338597752912563};

/// The recurrence as it is written down, at the raised rate: each section of each branch with a
/// ring of four inputs and four outputs.
class CPlainHalfBand {
public:
    void process(const double* in, double* out, int count)
    {
        for (int i = 0; i < count; ++i) {
            const double a = step(0, in[i]);
            out[i] = 0.5 * (a + late);
            late = step(1, in[i]);
            index = (index + 3) & 3;
        }
    }

private:
    double step(int branch, double u)
    {
        const int past = (index + 2) & 3;
        for (int s = 0; s < kSections; ++s) {
            CRing& ring = rings[branch][s];
            const double y =
                kSteep[branch * kSections + s] * (u - ring.outputs[past]) + ring.inputs[past];
            ring.inputs[index] = u;
            ring.outputs[index] = y;
            u = y;
        }
        return u;
    }

    struct CRing {
        double inputs[4] = {};
        double outputs[4] = {};
    };
    CRing rings[2][kSections];
    double late = 0.0;
    int index = 3;
};

/// A block at the raised rate with the zeros that an interpolator leaves, or without.
std::vector<double> makeBlock(bool isSparse)
{
    std::vector<double> samples(kBlock);
    for (int i = 0; i < kBlock; ++i)
        samples[static_cast<std::size_t>(i)] =
            isSparse && i % 2 == 1 ? 0.0 : std::sin(0.01 * i * i);
    return samples;
}

void countSamples(benchmark::State& state, int channels)
{
    state.counters["low_rate_sample"] =
        benchmark::Counter(0.5 * kBlock * channels, benchmark::Counter::kIsIterationInvariantRate |
                                                        benchmark::Counter::kInvert);
}

/// Channels, and whether the rate goes up.
void halfBandPlain(benchmark::State& state)
{
    const auto channels = static_cast<std::size_t>(state.range(0));
    std::vector<CPlainHalfBand> filters(channels);
    const std::vector<double> samples = makeBlock(state.range(1) != 0);
    std::vector<double> out(kBlock);
    for (auto _ : state) {
        for (CPlainHalfBand& filter : filters)
            filter.process(samples.data(), out.data(), kBlock);
        benchmark::ClobberMemory();
    }
    countSamples(state, static_cast<int>(channels));
}

void halfBandStage(benchmark::State& state)
{
    const auto channels = static_cast<std::size_t>(state.range(0));
    const bool isSparse = state.range(1) != 0;
    std::vector<CDCDAWFilterWorkspace> filters(channels, CDCDAWFilterWorkspace(kSteep, kSections));
    const std::vector<double> samples = makeBlock(isSparse);
    std::vector<std::vector<double>> out(channels, std::vector<double>(kBlock));
    std::vector<CDCDAWFilterWorkspace::CLane> lanes;
    for (std::size_t i = 0; i < channels; ++i)
        lanes.push_back({samples.data(), out[i].data(), &filters[i], isSparse});
    for (auto _ : state) {
        CDCDAWFilterWorkspace::process(lanes.data(), static_cast<int>(channels), kBlock);
        benchmark::ClobberMemory();
    }
    countSamples(state, static_cast<int>(channels));
}

void eachCase(benchmark::internal::Benchmark* bench)
{
    bench->ArgNames({"channels", "up"});
    for (const int isUp : {1, 0})
        for (const int channels : {1, 2})
            bench->Args({channels, isUp});
}

BENCHMARK(halfBandPlain)->Apply(eachCase);
BENCHMARK(halfBandStage)->Apply(eachCase);

} // namespace
} // namespace tsm
