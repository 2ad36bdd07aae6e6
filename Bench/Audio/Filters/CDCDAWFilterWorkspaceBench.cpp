#include "Audio/Filters/CDCDAWFilterWorkspace.h"

#include <benchmark/benchmark.h>

#include <vector>

namespace tsm {
namespace {

constexpr int kBlock = 512;
constexpr int kSections = 5;
constexpr double kSteep[] = {0.017201989192148732, 0.14343641647193758, 0.34790076963109384,
                             0.57735026918962573,  0.81051797007260162, 0.066817741883400714,
                             0.23966776783586008,  0.46181636331192544, 0.69311655842787734,
                             0.9338597752912563};

/// One channel at the raised rate.
void halfBandBlock(benchmark::State& state)
{
    CDCDAWFilterWorkspace filter(kSteep, kSections);
    std::vector<double> samples(kBlock, 0.5);
    std::vector<double> out(kBlock);
    for (auto _ : state) {
        filter.process(samples.data(), out.data(), kBlock);
        benchmark::ClobberMemory();
    }
    state.SetItemsProcessed(state.iterations() * kBlock);
}

/// The baseline: the recurrence as it is written down, one branch after the other.
struct CPlainBranch {
    double past[kSections][2] = {};
    double xPast[kSections][2] = {};

    double step(const double* c, double u)
    {
        for (int s = 0; s < kSections; ++s) {
            const double y = c[s] * (u - past[s][1]) + xPast[s][1];
            past[s][1] = past[s][0];
            past[s][0] = y;
            xPast[s][1] = xPast[s][0];
            xPast[s][0] = u;
            u = y;
        }
        return u;
    }
};

void halfBandPlain(benchmark::State& state)
{
    CPlainBranch a;
    CPlainBranch b;
    double late = 0.0;
    std::vector<double> samples(kBlock, 0.5);
    std::vector<double> out(kBlock);
    for (auto _ : state) {
        for (std::size_t i = 0; i < samples.size(); ++i) {
            out[i] = 0.5 * (a.step(kSteep, samples[i]) + late);
            late = b.step(kSteep + kSections, samples[i]);
        }
        benchmark::ClobberMemory();
    }
    state.SetItemsProcessed(state.iterations() * kBlock);
}

BENCHMARK(halfBandBlock);
BENCHMARK(halfBandPlain);

} // namespace
} // namespace tsm
