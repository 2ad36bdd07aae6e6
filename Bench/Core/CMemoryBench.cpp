#include "Core/CMemory.h"

#include <benchmark/benchmark.h>

#include <array>
#include <atomic>
#include <cstdint>
#include <cstdlib>
#include <random>
#include <vector>

namespace tsm {

namespace {

struct CBlocks {
    static void* alloc(std::size_t size) { return allocBlock(size); }
    static void free(void* block) { freeBlock(block); }
};

struct CSystemHeap {
    static void* alloc(std::size_t size) { return std::malloc(size); }
    static void free(void* block) { std::free(block); }
};

// One block at a time, of one size: the shortest road of both.
template <class Heap>
void allocAndFree(benchmark::State& state)
{
    const auto size = static_cast<std::size_t>(state.range(0));
    for (auto _ : state) {
        void* block = Heap::alloc(size);
        benchmark::DoNotOptimize(block);
        Heap::free(block);
    }
}

std::vector<std::size_t> mixedSizes(unsigned seed)
{
    // Small ones are the rule, as names and nodes are: sizes spread evenly by their logarithm.
    std::mt19937 random(seed);
    std::vector<std::size_t> sizes(4096);
    for (std::size_t& size : sizes)
        size = (std::size_t{16} << random() % 8) + random() % 16;
    return sizes;
}

// A working set of 256 blocks of mixed sizes, of which one is replaced in each round.
template <class Heap>
void replaceMixed(benchmark::State& state)
{
    const auto sizes = mixedSizes(static_cast<unsigned>(state.thread_index()));
    std::array<void*, 256> held{};
    for (std::size_t i = 0; i < held.size(); ++i)
        held[i] = Heap::alloc(sizes[i]);
    std::size_t round = 0;
    for (auto _ : state) {
        void*& place = held[round * 167 % held.size()];
        Heap::free(place);
        place = Heap::alloc(sizes[round++ % sizes.size()]);
        benchmark::DoNotOptimize(place);
    }
    for (void* block : held)
        Heap::free(block);
}

// Blocks change hands through shared slots: most are freed by another thread than allocated them.
template <class Heap>
void handOver(benchmark::State& state)
{
    static std::array<std::atomic<void*>, 1024> slots;
    std::mt19937 random(static_cast<unsigned>(state.thread_index()));
    const auto sizes = mixedSizes(static_cast<unsigned>(state.thread_index()));
    std::size_t round = 0;
    for (auto _ : state) {
        void* made = Heap::alloc(sizes[round++ % sizes.size()]);
        if (void* taken = slots[random() % slots.size()].exchange(made, std::memory_order_acq_rel))
            Heap::free(taken);
    }
    // The first thread takes the rest away; the others leave theirs for the next run.
    if (state.thread_index() == 0)
        for (std::atomic<void*>& slot : slots)
            if (void* taken = slot.exchange(nullptr, std::memory_order_acq_rel))
                Heap::free(taken);
}

BENCHMARK(allocAndFree<CBlocks>)->Arg(16)->Arg(256)->Arg(4080)->Threads(1)->Threads(4);
BENCHMARK(allocAndFree<CSystemHeap>)->Arg(16)->Arg(256)->Arg(4080)->Threads(1)->Threads(4);
BENCHMARK(replaceMixed<CBlocks>)->Threads(1)->Threads(4);
BENCHMARK(replaceMixed<CSystemHeap>)->Threads(1)->Threads(4);
BENCHMARK(handOver<CBlocks>)->Threads(1)->Threads(4);
BENCHMARK(handOver<CSystemHeap>)->Threads(1)->Threads(4);

} // namespace

} // namespace tsm
