#include "Bench/Core/CBenchNames.h"
#include "Core/CString.h"
#include "Core/CText.h"

#include <benchmark/benchmark.h>

#include <cstdio>
#include <cstdlib>

namespace tsm {

namespace {

// Neighbours in the list have the longest common beginnings.
template <class Text>
void compareNeighbours(benchmark::State& state)
{
    std::vector<Text> texts;
    for (const std::string& name : pathNames())
        texts.emplace_back(name.c_str());
    std::size_t round = 1;
    for (auto _ : state) {
        benchmark::DoNotOptimize(texts[round - 1] < texts[round]);
        round = round + 1 < texts.size() ? round + 1 : 1;
    }
}

void compareMixedWidths(benchmark::State& state)
{
    const CString narrow(pathNames().front().c_str());
    CString wide(narrow);
    wide.widen();
    for (auto _ : state)
        benchmark::DoNotOptimize(CString::compare(narrow, wide));
}

// What loading a definition does for each name and attribute text.
void decodeUtf8(benchmark::State& state)
{
    const auto names = state.range(0) ? pathNames() : attributeNames();
    std::size_t round = 0;
    for (auto _ : state) {
        CString text = CString::fromUtf8(names[round]);
        benchmark::DoNotOptimize(text);
        round = round + 1 < names.size() ? round + 1 : 0;
    }
}

void constructStandard(benchmark::State& state)
{
    const auto names = state.range(0) ? pathNames() : attributeNames();
    std::size_t round = 0;
    for (auto _ : state) {
        std::string text(names[round].data(), names[round].size());
        benchmark::DoNotOptimize(text);
        round = round + 1 < names.size() ? round + 1 : 0;
    }
}

void formatOurs(benchmark::State& state)
{
    double value = 0.0;
    for (auto _ : state)
        benchmark::DoNotOptimize(toFixed(value += 0.37, 2));
}

void formatPrintf(benchmark::State& state)
{
    double value = 0.0;
    char text[64];
    for (auto _ : state)
        benchmark::DoNotOptimize(std::snprintf(text, sizeof text, "%.2f", value += 0.37));
}

void parseOurs(benchmark::State& state)
{
    const CString text("-12.0371");
    double value = 0.0;
    for (auto _ : state)
        benchmark::DoNotOptimize(parseDouble(text, value));
}

void parseStrtod(benchmark::State& state)
{
    for (auto _ : state) {
        const char* text = "-12.0371";
        benchmark::DoNotOptimize(text);
        benchmark::DoNotOptimize(std::strtod(text, nullptr));
    }
}

BENCHMARK(compareNeighbours<CString>);
BENCHMARK(compareNeighbours<std::string>);
BENCHMARK(compareMixedWidths);
BENCHMARK(decodeUtf8)->Arg(0)->Arg(1);
BENCHMARK(constructStandard)->Arg(0)->Arg(1);
BENCHMARK(formatOurs);
BENCHMARK(formatPrintf);
BENCHMARK(parseOurs);
BENCHMARK(parseStrtod);

} // namespace

} // namespace tsm
