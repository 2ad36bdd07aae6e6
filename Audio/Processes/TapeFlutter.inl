// The flutter of both tape stages: where each sample is read. Part of the kernels, like
// TapeCurve.inl.

#include "Audio/Processes/TapeCurve.inl"

namespace tsm {

namespace {

// Samples that are worked at once.
constexpr int kChunk = 128;

/// Three steps of the noise generator, `sample` times over: state * multiplier + increment, modulo
/// 2^32. It lets the states of a chunk be computed side by side instead of one after another.
struct CNoiseJump {
    unsigned multiplier[kChunk + 1];
    unsigned increment[kChunk + 1];
};

constexpr unsigned kNoiseFactor = 30013;
constexpr unsigned kNoiseTerm = 30011;

constexpr CNoiseJump makeNoiseJump()
{
    CNoiseJump jump{};
    jump.multiplier[0] = 1;
    for (int i = 0; i < kChunk; ++i) {
        unsigned multiplier = jump.multiplier[i];
        unsigned increment = jump.increment[i];
        for (int step = 0; step < 3; ++step) {
            multiplier *= kNoiseFactor;
            increment = increment * kNoiseFactor + kNoiseTerm;
        }
        jump.multiplier[i + 1] = multiplier;
        jump.increment[i + 1] = increment;
    }
    return jump;
}

constexpr CNoiseJump kNoiseJump = makeNoiseJump();

/// Where each sample of a chunk is read: `age` whole samples back, `fraction` beyond that.
struct CReadTrace {
    double wave[kChunk]; // white noise, then the flutter
    double fraction[kChunk];
    double weight[4][kChunk]; // of the four points, newest first; with fused multiply-add only
    int age[kChunk];
};

/// The sum of three uniform numbers a sample, -1.5 to 1.5; exact in any order, since all are
/// multiples of 2^-24.
void makeNoise(unsigned& noise, double* __restrict white, int count)
{
    const unsigned start = noise;
    for (int i = 0; i < count; ++i) {
        const unsigned before = start * kNoiseJump.multiplier[i] + kNoiseJump.increment[i];
        const unsigned n1 = before * kNoiseFactor + kNoiseTerm;
        const unsigned n2 = n1 * kNoiseFactor + kNoiseTerm;
        const unsigned n3 = n2 * kNoiseFactor + kNoiseTerm;
        const unsigned sum = (n1 & 0xffffff) + (n2 & 0xffffff) + (n3 & 0xffffff);
        white[i] = static_cast<int>(sum) * 0x1p-24 - 1.5;
    }
    noise = start * kNoiseJump.multiplier[count] + kNoiseJump.increment[count];
}

/// One step of the smoother y += (x - y) * c.
template <class V>
V smooth(V y, V x, double c)
{
    // The loop waits for the way from y to y: with fused multiply-add it is one operation.
    if constexpr (kHasFma)
        return y * (1.0 - c) + x * c;
    else
        return y + (x - y) * c;
}

/// Band-limits the noise in `wave`: three low-pass stages, and a fourth that takes out what is
/// constant.
void filterFlutter(const CFlutterCoefficients& flutter, CFlutterState& state,
                   double* __restrict wave, int count)
{
    const double c0 = flutter.c0;
    const double c1 = flutter.c1;
    const double c2 = flutter.c2;
    const double c3 = flutter.c3;
    double s0 = state.s0;
    double s1 = state.s1;
    double s2 = state.s2;
    double s3 = state.s3;
    for (int i = 0; i < count; ++i) {
        s0 = smooth(s0, wave[i], c0);
        s1 = smooth(s1, s0, c1);
        s2 = smooth(s2, s1, c2);
        s3 = smooth(s3, s2, c3);
        wave[i] = s2 - s3;
    }
    state.s0 = s0;
    state.s1 = s1;
    state.s2 = s2;
    state.s3 = s3;
}

/// Turns the flutter of [from, to) into the places to read from; the position counter stands at
/// `position` for the first and doesn't wrap before the last.
void placeReads(const CFlutterCoefficients& flutter, CReadTrace& trace, int from, int to,
                int position)
{
    const int center = flutter.center;
    const double depth = flutter.depth;
    const double* __restrict wave = trace.wave;
    double* __restrict fraction = trace.fraction;
    int* __restrict age = trace.age;
    for (int i = from; i < to; ++i) {
        // The place counts from the position counter, not from the sample: its rounding does too.
        const int at = position - (i - from);
        const double lowest = at;
        const double highest = at + 2 * center;
        double place = (at + center) + wave[i] * depth;
        // The noise never gets here, yet nothing outside may be read; not-a-number fails the first.
        place = place > lowest ? place : lowest;
        place = place < highest ? place : highest;
        const int whole = static_cast<int>(place);
        fraction[i] = place - whole;
        age[i] = whole - at;
    }
}

/// The weights of the four points, so that channels needn't each work out the same cubic.
[[maybe_unused]] void weighReads(CReadTrace& trace, int from, int to)
{
    for (int i = from; i < to; ++i) {
        const double t = trace.fraction[i];
        const double half = 0.5 * t;
        const double halfSquare = half * t;
        const double halfCube = halfSquare * t;
        trace.weight[0][i] = 2.0 * halfSquare - half - halfCube;
        trace.weight[1][i] = 3.0 * halfCube - 5.0 * halfSquare + 1.0;
        trace.weight[2][i] = 4.0 * halfSquare - 3.0 * halfCube + half;
        trace.weight[3][i] = halfCube - halfSquare;
    }
}

/// The flutter of one chunk, for all channels.
void traceFlutter(const CFlutterCoefficients& flutter, CFlutterState& state, CReadTrace& trace,
                  int count)
{
    makeNoise(state.noise, trace.wave, count);
    // In short runs: the filters wait for themselves, and the processor fills that time with the
    // run before and the run behind as long as it sees both.
    constexpr int kRun = 16;
    for (int from = 0; from < count;) {
        const int toWrap = from + state.position + 1;
        const int runEnd = from + kRun < count ? from + kRun : count;
        const int to = toWrap < runEnd ? toWrap : runEnd;
        filterFlutter(flutter, state, trace.wave + from, to - from);
        placeReads(flutter, trace, from, to, state.position);
        if constexpr (kHasFma)
            weighReads(trace, from, to);
        state.position = to == toWrap ? flutter.length - 1 : state.position - (to - from);
        from = to;
    }
}

/// Member by member: the compiler would write a copy of the whole together on the stack and read it
/// from there in wider pieces, for which the processor has to wait until all stores before are
/// done.
void keep(CFlutterState& place, const CFlutterState& flutter)
{
    place.noise = flutter.noise;
    place.s0 = flutter.s0;
    place.s1 = flutter.s1;
    place.s2 = flutter.s2;
    place.s3 = flutter.s3;
    place.position = flutter.position;
}

} // namespace

} // namespace tsm
