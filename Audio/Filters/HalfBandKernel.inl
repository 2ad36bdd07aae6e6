// The half-band filter over vectors of branches; compiled once per instruction set. All of it has
// internal linkage and nothing comes from std::, since a shared inline function would let the
// linker put one build's code into another. Each build says how a section computes
// (TSM_HALF_BAND_FUSED); the compiler may fuse nothing by itself.

#include "Audio/Filters/HalfBandKernels.h"

#if TSM_HALF_BAND_FUSED
#include <immintrin.h>
#endif

namespace tsm {

namespace {

// Both branches of one channel, or of two.
typedef double COne __attribute__((vector_size(16)));
typedef double CTwo __attribute__((vector_size(32)));

// A section's output, c (u - y2) + u2. A step waits for the one before through y2 only: fused, that
// is one operation, c u + u2 being ready by then; as it is written down, it is three.
#if TSM_HALF_BAND_FUSED
COne section(COne c, COne u, COne u2, COne y2)
{
    return _mm_fnmadd_pd(c, y2, _mm_fmadd_pd(c, u, u2));
}
CTwo section(CTwo c, CTwo u, CTwo u2, CTwo y2)
{
    return _mm256_fnmadd_pd(c, y2, _mm256_fmadd_pd(c, u, u2));
}
#else
template <class V>
V section(V c, V u, V u2, V y2)
{
    return c * (u - y2) + u2;
}
#endif

template <class V>
constexpr int kLanesOf = sizeof(V) / sizeof(COne);

COne gather(const double* const (&from)[1], int i)
{
    return COne{from[0][i], from[0][i]};
}
CTwo gather(const double* const (&from)[2], int i)
{
    return CTwo{from[0][i], from[0][i], from[1][i], from[1][i]};
}

typedef double CPairMemory __attribute__((vector_size(16), aligned(8), may_alias));

/// Two samples for each channel.
void put(double* const (&to)[1], int i, COne samples)
{
    *reinterpret_cast<CPairMemory*>(to[0] + i) = samples;
}
void put(double* const (&to)[2], int i, CTwo samples)
{
    *reinterpret_cast<CPairMemory*>(to[0] + i) = __builtin_shufflevector(samples, samples, 0, 1);
    *reinterpret_cast<CPairMemory*>(to[1] + i) = __builtin_shufflevector(samples, samples, 2, 3);
}

/// The first branches of two samples side by side, or the second ones.
COne firstBranches(COne a, COne b)
{
    return __builtin_shufflevector(a, b, 0, 2);
}
CTwo firstBranches(CTwo a, CTwo b)
{
    return __builtin_shufflevector(a, b, 0, 4, 2, 6);
}
COne secondBranches(COne a, COne b)
{
    return __builtin_shufflevector(a, b, 1, 3);
}
CTwo secondBranches(CTwo a, CTwo b)
{
    return __builtin_shufflevector(a, b, 1, 5, 3, 7);
}

/// All sections of one parity, with their past.
template <class V, int Sections>
struct CSections {
    V past[Sections + 1];

    void load(const CHalfBandLane* lanes, bool isNext)
    {
        for (int s = 0; s <= Sections; ++s)
            for (int lane = 0; lane < kLanesOf<V>; ++lane) {
                const CHalfBandState& state = *lanes[lane].state;
                const double* branches = state.past[isNext ? state.turn : 1 - state.turn][s];
                past[s][2 * lane] = branches[0];
                past[s][2 * lane + 1] = branches[1];
            }
    }
    void store(const CHalfBandLane* lanes, bool isNext) const
    {
        for (int s = 0; s <= Sections; ++s)
            for (int lane = 0; lane < kLanesOf<V>; ++lane) {
                CHalfBandState& state = *lanes[lane].state;
                double* branches = state.past[isNext ? state.turn : 1 - state.turn][s];
                branches[0] = past[s][2 * lane];
                branches[1] = past[s][2 * lane + 1];
            }
    }
    /// One sample of this parity; gives both branches' outputs.
    V step(const V* coefficients, V input)
    {
        V pastInput = past[0];
        past[0] = input;
        for (int s = 0; s < Sections; ++s) {
            const V output = section(coefficients[s], input, pastInput, past[s + 1]);
            pastInput = past[s + 1];
            past[s + 1] = output;
            input = output;
        }
        return input;
    }
};

template <class V, int Sections>
void run(const double (*coefficients)[2], const CHalfBandLane* lanes, int count,
         bool isSparse) noexcept
{
    constexpr int kLanes = kLanesOf<V>;
    V c[Sections];
    for (int s = 0; s < Sections; ++s)
        for (int lane = 0; lane < kLanes; ++lane) {
            c[s][2 * lane] = coefficients[s][0];
            c[s][2 * lane + 1] = coefficients[s][1];
        }
    CSections<V, Sections> next;
    CSections<V, Sections> other;
    next.load(lanes, true);
    other.load(lanes, false);
    const double* in[kLanes];
    double* out[kLanes];
    V before = {}; // both branches at the sample before; only the second is heard again
    for (int lane = 0; lane < kLanes; ++lane) {
        in[lane] = lanes[lane].in;
        out[lane] = lanes[lane].out;
        before[2 * lane + 1] = lanes[lane].state->late;
    }
    int i = 0;
    if (isSparse) {
        // The zeros leave nothing: what is heard late of the sample before is zero, too.
        for (; i + 2 <= count; i += 2)
            put(out, i, 0.5 * next.step(c, gather(in, i)));
    } else {
        for (; i + 2 <= count; i += 2) {
            const V second = gather(in, i + 1);
            const V a = next.step(c, gather(in, i));
            const V b = other.step(c, second);
            put(out, i, 0.5 * (firstBranches(a, b) + secondBranches(before, a)));
            before = b;
        }
    }
    if (i < count) {
        const V a = next.step(c, gather(in, i));
        for (int lane = 0; lane < kLanes; ++lane)
            out[lane][i] = 0.5 * (a[2 * lane] + before[2 * lane + 1]);
        before = a;
    }
    next.store(lanes, true);
    other.store(lanes, false);
    for (int lane = 0; lane < kLanes; ++lane) {
        CHalfBandState& state = *lanes[lane].state;
        state.late = before[2 * lane + 1];
        state.turn ^= count & 1;
    }
}

/// A table of `run` for 1 to 8 sections.
#define TSM_HALF_BAND_RUNS(V)                                                                      \
    {                                                                                              \
        &run<V, 1>, &run<V, 2>, &run<V, 3>, &run<V, 4>, &run<V, 5>, &run<V, 6>, &run<V, 7>,        \
            &run<V, 8>                                                                             \
    }

} // namespace

} // namespace tsm
