// The saturation curve and the coefficients of both tape stages. Part of the kernels, so that all
// of it is compiled once per instruction set; everything has internal linkage, since a shared
// inline function would let the linker put fused multiply-adds into the generic build.

#include <math.h>

namespace tsm {

namespace {

constexpr bool kHasFma = TSM_TAPE_FMA != 0;
constexpr double kPi = 3.141592653589793;
constexpr double kDbPerNeper = 8.685889638065037; // 20 / ln 10
constexpr double kNegativeScale = 0.98;           // the curve's negative half against its positive

// Two channels of one sample, and as many doubles as the build works on at once.
typedef double CPair __attribute__((vector_size(16)));
typedef double CWide __attribute__((vector_size(kHasFma ? 32 : 16)));

/// A rational approximation of tanh for u >= 0, within about 0.001.
template <class V>
V sigmoid(V u)
{
    const V numerator = u * (u * u * (0.8785524976458703 * u + 0.9403501925936697) +
                             (2.423509618411691 * u + 2.395631787739572));
    const V denominator =
        (u + 0.8766349762624457 * u * u) * (u * u + 2.3636579090766805) + 2.397102514234356;
    return numerator / denominator;
}

/// The curve's constants, made once a block.
struct CCurve {
    double knee;
    double range;
    double perRange;
    double perNegativeScale;
};

CCurve makeCurve(double hardness)
{
    const double knee = 0.999999 * hardness;
    return {knee, 1.0 - knee, 1.0 / (1.0 - knee), -1.0 / kNegativeScale};
}

/// The signal with its negative half stretched to the positive one's scale.
template <class V>
V fold(V x, const CCurve& curve)
{
    // A divide costs more than all the rest, and the last bit is free with fused multiply-add.
    if constexpr (kHasFma)
        return x < 0.0 ? x * curve.perNegativeScale : x;
    else
        return x < 0.0 ? x / -kNegativeScale : x;
}

template <class V>
V unfold(V x, V folded)
{
    return x < 0.0 ? folded * -kNegativeScale : folded;
}

/// The curve: linear up to the knee, the sigmoid from there to full scale; the negative half is the
/// positive one scaled by 0.98. It is odd but for that scale, so it is worked on the folded signal
/// and the sign comes last.
template <class V>
V saturate(V x, const CCurve& curve)
{
    const V folded = fold(x, curve);
    // One channel alone waits for each divide: there a branch is worth its mispredictions.
    if constexpr (sizeof(V) == sizeof(double))
        if (curve.knee >= folded)
            return unfold(x, folded);
    V u;
    if constexpr (kHasFma)
        u = (folded - curve.knee) * curve.perRange;
    else
        u = (folded - curve.knee) / curve.range;
    // Below the knee u is negative and the sigmoid meaningless, yet it is never chosen there.
    const V bent = sigmoid(u) * curve.range + curve.knee;
    return unfold(x, curve.knee >= folded ? folded : bent);
}

double saturateValue(double value, double hardness) noexcept
{
    return saturate(value, makeCurve(hardness));
}

/// Half away from zero for what is not negative.
double roundUpHalf(double value)
{
    return floor(value + 0.5);
}

/// Any rate, not a number included, brought into the range the stages are made for.
double usableRate(double sampleRate)
{
    const double atLeast = sampleRate > kTapeMinRate ? sampleRate : kTapeMinRate;
    return atLeast < kTapeMaxRate ? atLeast : kTapeMaxRate;
}

/// The coefficient c of the smoother y += (x - y) * c with its corner at `cornerHz`: the pole that
/// makes the response there fall by 3 dB exactly.
double onepole(double cornerHz, double sampleRate)
{
    const double angle = 2.0 * kPi * cornerHz / sampleRate;
    const double w = angle < kPi ? angle : kPi;
    const double q = 2.0 - cos(w);
    return 1.0 - q + sqrt(q * q - 1.0);
}

/// The high shelf at 1000 Hz, 4 octaves wide (R. Bristow-Johnson, "Cookbook formulae for audio
/// equalizer biquad filter coefficients", highShelf with the bandwidth form of alpha).
CShelfCoefficients makeShelf(double gainDb, double sampleRate)
{
    const double a = sqrt(exp(gainDb / kDbPerNeper));
    const double w0 = 6283.185307179586 / sampleRate;
    // ln 2 / 2 times the bandwidth in octaves.
    const double alpha = sin(w0) * sinh(1.3862943611198906 * w0 / sin(w0));
    const double v = 2.0 * sqrt(a) * alpha;
    const double c = cos(w0);
    const double a0 = (a + 1.0) - (a - 1.0) * c + v;
    return {a * ((a + 1.0) + (a - 1.0) * c + v) / a0, -2.0 * a * ((a - 1.0) + (a + 1.0) * c) / a0,
            a * ((a + 1.0) + (a - 1.0) * c - v) / a0, -2.0 * ((a - 1.0) - (a + 1.0) * c) / a0,
            -((a + 1.0) - (a - 1.0) * c - v) / a0};
}

/// Noise of a given band moves less at a higher rate, since the same noise is spread over more
/// frequencies: the depth grows by the power 1.5 of the rate.
CFlutterCoefficients makeFlutter(double amount, int flutterMode, double sampleRate)
{
    CFlutterCoefficients flutter;
    flutter.length = static_cast<int>(roundUpHalf(0.001 * sampleRate));
    flutter.center = static_cast<int>(ceil(sampleRate * 4.5351473922902495e-05));
    const double r = sampleRate / 44100.0;
    flutter.depth = exp((24.0 * amount - 12.0) / kDbPerNeper) * 1.1025 * sqrt(r) * r;
    const bool isPro = flutterMode != 0;
    if (isPro)
        flutter.depth *= 2.5;
    flutter.c0 = onepole(isPro ? 110.0 : 200.0, sampleRate);
    flutter.c1 = onepole(isPro ? 110.0 : 400.0, sampleRate);
    flutter.c2 = onepole(isPro ? 110.0 : 800.0, sampleRate);
    flutter.c3 = onepole(isPro ? 50.0 : 40.0, sampleRate);
    return flutter;
}

/// The corner of the feedback gain for a mode above 0: a time constant T as 1 / (2 T).
double envelopeCornerHz(int feedbackMode)
{
    constexpr double kSeconds[] = {0.025, 0.05, 0.1, 0.15};
    return 1.0 / (2.0 * kSeconds[feedbackMode < 4 ? feedbackMode - 1 : 3]);
}

/// The mean of the curve's inverse gains at four levels, so that the stage keeps its loudness.
double makeupGain(const CTapeCoefficients& tape)
{
    const CCurve curve = makeCurve(tape.hardness);
    constexpr double kLevels[] = {0.05, 0.2, 0.7, 0.95};
    double sum = 0.0;
    for (const double level : kLevels) {
        const double x = level * tape.recGain;
        sum += level / (saturate(x, curve) * tape.wet + x * tape.dry);
    }
    return 0.25 * sum;
}

CTapeCoefficients updateTape(const CTapeSettings& settings) noexcept
{
    const double rate = usableRate(settings.sampleRate);
    CTapeCoefficients tape;
    tape.recGain = settings.recGain;
    tape.wet = settings.wet;
    tape.dry = 1.0 - settings.wet;
    tape.hardness = settings.hardness;
    tape.shelf = makeShelf(settings.emphasisDb, rate);
    tape.flutter = makeFlutter(settings.flutter, settings.flutterMode, rate);
    tape.rollOff = onepole(5.0, rate);
    tape.hasFeedback = settings.feedbackMode > 0;
    if (tape.hasFeedback)
        tape.envelope = onepole(envelopeCornerHz(settings.feedbackMode), rate);
    tape.makeup = makeupGain(tape);
    return tape;
}

CTapePostCoefficients updatePost(const CTapePostSettings& settings) noexcept
{
    const double rate = usableRate(settings.sampleRate);
    CTapePostCoefficients post;
    post.shelf = makeShelf(settings.highGainDb - settings.emphasisDb, rate);
    post.flutter = makeFlutter(settings.flutter, settings.flutterMode, rate);
    post.rollOff = onepole(20.0, rate);
    return post;
}

} // namespace

} // namespace tsm
