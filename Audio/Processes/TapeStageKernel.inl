// The block step of both tape stages, in passes over a chunk. Compiled once per instruction set;
// see TapeCurve.inl for why all of it has internal linkage and nothing comes from std::.

#include "Audio/Processes/TapeFlutter.inl"

namespace tsm {

namespace {

constexpr int kMaxHistory = tapeHistoryCount(kTapeMaxCenter);

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
