// The block step of both tape stages, in passes over a chunk. Compiled once per instruction set;
// see TapeCurve.inl for why all of it has internal linkage and nothing comes from std::.

#include <math.h>

#include "Audio/Processes/TapeCurve.inl"

namespace tsm {

namespace {

constexpr int kChunk = 128;
constexpr int kMaxHistory = tapeHistoryCount(kTapeMaxCenter);

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

// The two widths of a pass: one channel as double, two as CPair.

template <class V>
V gather(const double* first, const double* second, int i);
template <>
double gather(const double* first, const double*, int i)
{
    return first[i];
}
template <>
CPair gather(const double* first, const double* second, int i)
{
    return CPair{first[i], second[i]};
}

void scatter(double value, double* first, double*, int i)
{
    first[i] = value;
}
void scatter(CPair value, double* first, double* second, int i)
{
    first[i] = value[0];
    second[i] = value[1];
}

/// One or two channels at work: their states side by side, and the chunk with its past.
template <class V>
struct CWork {
    const double* in[2];
    double* out[2];
    CTapeState* state[2];
    V rollOff;
    V w1;
    V w2;
    V envelope;
    int historyCount;
    V line[kMaxHistory + kChunk]; // past, then chunk, oldest first
    alignas(32) V value[kChunk + 4];
};

template <class V>
void beginWork(CWork<V>& work, const CTapeLane* lanes, int start, int center)
{
    constexpr int kLanes = sizeof(V) / sizeof(double);
    for (int lane = 0; lane < 2; ++lane) {
        const CTapeLane& source = lanes[lane % kLanes];
        work.in[lane] = source.in + start;
        work.out[lane] = source.out + start;
        work.state[lane] = source.state;
    }
    const CTapeState& first = *work.state[0];
    const CTapeState& second = *work.state[1];
    work.rollOff = gather<V>(&first.rollOff, &second.rollOff, 0);
    work.w1 = gather<V>(&first.w1, &second.w1, 0);
    work.w2 = gather<V>(&first.w2, &second.w2, 0);
    work.envelope = gather<V>(&first.envelope, &second.envelope, 0);
    work.historyCount = tapeHistoryCount(center);
    for (int i = 0; i < work.historyCount; ++i)
        work.line[i] = gather<V>(first.history, second.history, i);
}

template <class V>
void endWork(CWork<V>& work, int count)
{
    CTapeState& first = *work.state[0];
    CTapeState& second = *work.state[1];
    scatter(work.rollOff, &first.rollOff, &second.rollOff, 0);
    scatter(work.w1, &first.w1, &second.w1, 0);
    scatter(work.w2, &first.w2, &second.w2, 0);
    scatter(work.envelope, &first.envelope, &second.envelope, 0);
    for (int i = 0; i < work.historyCount; ++i)
        scatter(work.line[count + i], first.history, second.history, i);
}

/// Four points of the past, joined by the Catmull-Rom cubic (E. Catmull, R. Rom, "A class of local
/// interpolating splines", 1974).
template <class V>
V readLine(const CWork<V>& work, const CReadTrace& trace, int i)
{
    const V* newest = work.line + work.historyCount + i - trace.age[i];
    const V x0 = newest[0];
    const V x1 = newest[-1];
    const V x2 = newest[-2];
    const V x3 = newest[-3];
    if constexpr (kHasFma)
        return (x0 * trace.weight[0][i] + x1 * trace.weight[1][i]) +
               (x2 * trace.weight[2][i] + x3 * trace.weight[3][i]);
    const double t = trace.fraction[i];
    return x1 + t * (0.5 * (x2 - x0) + t * (x0 - 2.5 * x1 + 2.0 * x2 - 0.5 * x3 +
                                            t * (0.5 * (x3 - x0) + 1.5 * (x1 - x2))));
}

/// One sample through a biquad in direct form II.
template <class V>
V stepShelf(const CShelfCoefficients& shelf, V x, V& w1, V& w2)
{
    V w;
    if constexpr (kHasFma)
        w = (x + shelf.na2 * w2) + shelf.na1 * w1; // the later state last: it is waited for
    else
        w = x + shelf.na1 * w1 + shelf.na2 * w2;
    const V y = shelf.b0 * w + shelf.b1 * w1 + shelf.b2 * w2;
    w2 = w1;
    w1 = w;
    return y;
}

/// Emphasis and roll-off of the chunk, into the line.
template <class V>
void emphasise(const CTapeCoefficients& tape, CWork<V>& work, int count)
{
    const double* in0 = work.in[0];
    const double* in1 = work.in[1];
    const CShelfCoefficients shelf = tape.shelf;
    V* line = work.line + work.historyCount;
    V rollOff = work.rollOff;
    V w1 = work.w1;
    V w2 = work.w2;
    for (int i = 0; i < count; ++i) {
        const V y = stepShelf(shelf, gather<V>(in0, in1, i), w1, w2);
        rollOff = smooth(rollOff, y, tape.rollOff);
        line[i] = y - rollOff;
    }
    work.rollOff = rollOff;
    work.w1 = w1;
    work.w2 = w2;
}

/// Whether no sample of the row reaches the bend of the curve.
bool isBelowKnee(const CWide* row, int wideCount, const CCurve& curve)
{
    // A hair less than the knee's own place, since the fold rounds.
    const double highest = 0.9999999 * curve.knee;
    const double lowest = -kNegativeScale * highest;
    auto outside = row[0] > highest;
    for (int i = 0; i < wideCount; ++i)
        outside |= (row[i] > highest) | (row[i] < lowest);
    long any = 0;
    for (int i = 0; i < static_cast<int>(sizeof(CWide) / sizeof(double)); ++i)
        any |= outside[i];
    return any == 0;
}

/// Saturation, blend and makeup, over all channels' samples as one row, which is filled up to whole
/// vectors. A row that stays below the knee, as much music does, is spared the sigmoid.
void saturateRow(const CTapeCoefficients& tape, CWide* row, int count)
{
    constexpr int kWidth = sizeof(CWide) / sizeof(double);
    const CCurve curve = makeCurve(tape.hardness);
    const double wet = tape.wet;
    const double dry = tape.dry;
    const double makeup = tape.makeup;
    const int wideCount = (count + kWidth - 1) / kWidth;
    if (isBelowKnee(row, wideCount, curve)) {
        for (int i = 0; i < wideCount; ++i) {
            const CWide straight = unfold(row[i], fold(row[i], curve));
            row[i] = (straight * wet + row[i] * dry) * makeup;
        }
        return;
    }
    for (int i = 0; i < wideCount; ++i)
        row[i] = (saturate(row[i], curve) * wet + row[i] * dry) * makeup;
}

template <class V>
void writeOut(const CWork<V>& work, int count)
{
    double* out0 = work.out[0];
    double* out1 = work.out[1];
    for (int i = 0; i < count; ++i)
        scatter(work.value[i], out0, out1, i);
}

/// Without feedback each step is a pass of its own over the chunk.
template <class V>
void runOpen(const CTapeCoefficients& tape, CWork<V>& work, const CReadTrace& trace, int count)
{
    emphasise(tape, work, count);
    const double recGain = tape.recGain;
    for (int i = 0; i < count; ++i)
        work.value[i] = readLine(work, trace, i) * recGain;
    // The row ends in whole vectors: the rest is worked too, on defined values.
    for (int i = count; i < count + 4; ++i)
        work.value[i] = V{};
    constexpr int kLanes = sizeof(V) / sizeof(double);
    saturateRow(tape, reinterpret_cast<CWide*>(work.value), count * kLanes);
}

/// The age of the youngest sample that the chunk reads.
int youngestRead(const CReadTrace& trace, int count)
{
    int youngest = trace.age[0];
    for (int i = 1; i < count; ++i)
        youngest = trace.age[i] < youngest ? trace.age[i] : youngest;
    return youngest;
}

template <class V>
V magnitude(V x)
{
    return x < 0.0 ? -x : x;
}

/// A driven sample becomes the blend of curve and dry signal; returns by how much that changed its
/// magnitude.
template <class V>
V bend(const CTapeCoefficients& tape, const CCurve& curve, V& sample)
{
    const V driven = sample;
    sample = saturate(driven, curve) * tape.wet + driven * tape.dry;
    return (1e-10 + magnitude(sample)) / (1e-10 + magnitude(driven));
}

template <class V>
auto join(V first, V second)
{
    if constexpr (sizeof(V) == sizeof(double))
        return CPair{first, second};
    else
        return __builtin_shufflevector(first, second, 0, 1, 2, 3);
}

template <class Both, class V>
void split(Both both, V* parts)
{
    if constexpr (sizeof(V) == sizeof(double)) {
        parts[0] = both[0];
        parts[1] = both[1];
    } else {
        parts[0] = __builtin_shufflevector(both, both, 0, 1);
        parts[1] = __builtin_shufflevector(both, both, 2, 3);
    }
}

/// The same for two samples, at once where a vector holds both.
template <class V>
void bendTwo(const CTapeCoefficients& tape, const CCurve& curve, V* samples, V* ratios)
{
    if constexpr (2 * sizeof(V) <= sizeof(CWide)) {
        auto both = join(samples[0], samples[1]);
        split(bend(tape, curve, both), ratios);
        split(both, samples);
    } else {
        ratios[0] = bend(tape, curve, samples[0]);
        ratios[1] = bend(tape, curve, samples[1]);
    }
}

/// With feedback a sample's gain needs what the sample before came out as. That one was read from
/// the past, so as many samples as the youngest read is old can be read and saturated together,
/// before the next ones enter.
template <class V>
void runClosed(const CTapeCoefficients& tape, CWork<V>& work, const CReadTrace& trace, int count)
{
    constexpr int kMaxRun = 8;
    const CCurve curve = makeCurve(tape.hardness);
    const double recGain = tape.recGain;
    const int untilRead = youngestRead(trace, count) + 1;
    const int room = untilRead < kMaxRun ? untilRead : kMaxRun;
    // Short runs end before joining pays, and there one channel gains more from its branch.
    const bool inPairs = room >= 4;
    const double* in0 = work.in[0];
    const double* in1 = work.in[1];
    V* line = work.line + work.historyCount;
    V envelope = work.envelope;
    V rollOff = work.rollOff;
    V w1 = work.w1;
    V w2 = work.w2;
    const auto enter = [&](int i) {
        const V y = stepShelf(tape.shelf, gather<V>(in0, in1, i) * envelope, w1, w2);
        rollOff = smooth(rollOff, y, tape.rollOff);
        line[i] = y - rollOff;
    };
    for (int from = 0; from < count; from += room) {
        const int to = from + room < count ? from + room : count;
        V ratio[kMaxRun];
        enter(from);
        int i = from;
        for (; inPairs && i + 1 < to; i += 2) {
            V samples[2] = {readLine(work, trace, i) * recGain,
                            readLine(work, trace, i + 1) * recGain};
            bendTwo(tape, curve, samples, ratio + (i - from));
            work.value[i] = samples[0] * tape.makeup;
            work.value[i + 1] = samples[1] * tape.makeup;
        }
        for (; i < to; ++i) {
            V sample = readLine(work, trace, i) * recGain;
            ratio[i - from] = bend(tape, curve, sample);
            work.value[i] = sample * tape.makeup;
        }
        for (i = from; i < to; ++i) {
            envelope = smooth(envelope, ratio[i - from], tape.envelope);
            if (i + 1 < to)
                enter(i + 1);
        }
    }
    work.envelope = envelope;
    work.rollOff = rollOff;
    work.w1 = w1;
    work.w2 = w2;
}

template <class V>
void workTape(const CTapeCoefficients& tape, const CTapeLane* lanes, const CReadTrace& trace,
              int start, int count)
{
    CWork<V> work;
    beginWork(work, lanes, start, tape.flutter.center);
    if (tape.hasFeedback)
        runClosed(tape, work, trace, count);
    else
        runOpen(tape, work, trace, count);
    writeOut(work, count);
    endWork(work, count);
}

template <class V>
void workPost(const CTapePostCoefficients& post, const CTapeLane* lanes, const CReadTrace& trace,
              int start, int count)
{
    CWork<V> work;
    beginWork(work, lanes, start, post.flutter.center);
    const double* in0 = work.in[0];
    const double* in1 = work.in[1];
    for (int i = 0; i < count; ++i)
        work.line[work.historyCount + i] = gather<V>(in0, in1, i);
    V rollOff = work.rollOff;
    V w1 = work.w1;
    V w2 = work.w2;
    for (int i = 0; i < count; ++i) {
        const V y = readLine(work, trace, i);
        rollOff = smooth(rollOff, y, post.rollOff);
        work.value[i] = stepShelf(post.shelf, y - rollOff, w1, w2);
    }
    work.rollOff = rollOff;
    work.w1 = w1;
    work.w2 = w2;
    writeOut(work, count);
    endWork(work, count);
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

/// The chunks of a block: the flutter once for all lanes, then the lanes in pairs.
template <class C, class Pair, class Single>
void workLanes(const C& coefficients, const CTapeLane* lanes, int laneCount, int count, Pair pair,
               Single single)
{
    CFlutterState flutter = lanes[0].state->flutter;
    CReadTrace trace;
    for (int start = 0; start < count; start += kChunk) {
        const int chunk = count - start < kChunk ? count - start : kChunk;
        traceFlutter(coefficients.flutter, flutter, trace, chunk);
        int lane = 0;
        for (; lane + 1 < laneCount; lane += 2)
            pair(coefficients, lanes + lane, trace, start, chunk);
        if (lane < laneCount)
            single(coefficients, lanes + lane, trace, start, chunk);
    }
    for (int lane = 0; lane < laneCount; ++lane)
        keep(lanes[lane].state->flutter, flutter);
}

void processTape(const CTapeCoefficients& coefficients, const CTapeLane* lanes, int laneCount,
                 int count) noexcept
{
    workLanes(coefficients, lanes, laneCount, count, workTape<CPair>, workTape<double>);
}

void processPost(const CTapePostCoefficients& coefficients, const CTapeLane* lanes, int laneCount,
                 int count) noexcept
{
    workLanes(coefficients, lanes, laneCount, count, workPost<CPair>, workPost<double>);
}

} // namespace

} // namespace tsm
