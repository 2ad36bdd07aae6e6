#include "Bench/Core/CBenchNames.h"
#include "Core/CMap.h"
#include "Core/CString.h"

#include <benchmark/benchmark.h>

#include <algorithm>
#include <cstddef>
#include <map>
#include <random>

namespace tsm {

namespace {

using CNames = std::vector<std::string>;

// The order of the questions has nothing to do with the order of entry.
CNames shuffled(CNames names)
{
    std::shuffle(names.begin(), names.end(), std::mt19937(7));
    return names;
}

void findInMap(benchmark::State& state, const CNames& names)
{
    CMap<CString, int> map;
    std::vector<CString> questions;
    for (const std::string& name : names)
        map[name.c_str()] = 1;
    for (const std::string& name : shuffled(names))
        questions.emplace_back(name.c_str());
    std::size_t round = 0;
    for (auto _ : state) {
        benchmark::DoNotOptimize(map.find(questions[round]));
        round = round + 1 < questions.size() ? round + 1 : 0;
    }
}

void findInStandardMap(benchmark::State& state, const CNames& names)
{
    std::map<std::string, int> map;
    for (const std::string& name : names)
        map[name] = 1;
    const CNames questions = shuffled(names);
    std::size_t round = 0;
    for (auto _ : state) {
        benchmark::DoNotOptimize(map.find(questions[round]));
        round = round + 1 < questions.size() ? round + 1 : 0;
    }
}

// Entering and removing each name once; time a name.
template <class Map, class Key>
void fill(benchmark::State& state)
{
    std::vector<Key> keys;
    for (const std::string& name : shuffled(pathNames()))
        keys.emplace_back(name.c_str());
    for (auto _ : state) {
        Map map;
        for (const Key& key : keys)
            map[key] = 1;
        benchmark::DoNotOptimize(map);
    }
    state.SetItemsProcessed(state.iterations() * static_cast<std::int64_t>(keys.size()));
}

BENCHMARK_CAPTURE(findInMap, attributes, attributeNames());
BENCHMARK_CAPTURE(findInStandardMap, attributes, attributeNames());
BENCHMARK_CAPTURE(findInMap, paths, pathNames());
BENCHMARK_CAPTURE(findInStandardMap, paths, pathNames());
BENCHMARK(fill<CMap<CString, int>, CString>);
BENCHMARK(fill<std::map<std::string, int>, std::string>);

} // namespace

} // namespace tsm
