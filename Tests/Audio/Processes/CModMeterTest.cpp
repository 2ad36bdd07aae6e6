#include "Audio/Processes/CKWeighting.h"
#include "Audio/Processes/CModMeterModule.h"
#include "Tests/Support/CProcessTree.h"
#include "Tests/Support/CVizStream.h"
#include "Tests/Support/TapeRig.h"

#include <cmath>
#include <complex>
#include <deque>
#include <limits>
#include <numbers>

namespace tsm::test {

namespace {

constexpr double kRate = 44100.0;
constexpr int kFrame = 1103; // 25 ms
constexpr auto kPi = std::numbers::pi_v<long double>;

/// Times in seconds, gains linear; what the slots of a meter hold.
struct CSettings {
    double peakTime = 1.0;
    double rmsTime = 0.01;
    double gain = 1.0;
    double biasTime = 0.2;
    double useBias = 0.0;
    double release = 0.1;
    double peakGain = 1.0;
    double rmsTime2 = 0.03;
    double release2 = 0.02;
    double useTime2 = 0.0;
    double useEbu128 = 0.0;
};

class AMeter : public AProcess {
protected:
    using CAttributes = std::vector<std::pair<std::string, std::string>>;

    /// A watched meter of one channel for each group.
    void startMeter(const CSettings& s, CAttributes attrs,
                    const std::vector<std::uint32_t>& groups = {0}, double rate = kRate)
    {
        attrs.emplace_back("is-smooth-update", "false");
        startProcess("audio:modMeter",
                     {{"peak-time", s.peakTime},
                      {"rms-time", s.rmsTime},
                      {"gain", s.gain},
                      {"bias-time", s.biasTime},
                      {"use-bias", s.useBias},
                      {"release", s.release},
                      {"peak-gain", s.peakGain},
                      {"rms-time2", s.rmsTime2},
                      {"release2", s.release2},
                      {"use-time2", s.useTime2},
                      {"use-ebu128", s.useEbu128}},
                     attrs);
        viz->addListener(viz->getSource("plugin.modTest"));
        viz->takePending();
        viz->applyPending();
        setFormat(groups, rate);
    }
    /// What the meter sends of that signal; time goes on from call to call.
    std::vector<CSeenLevel> measure(const CChannels& in, const CChannels& reference = {},
                                    int blockLength = 331)
    {
        std::vector<CSeenLevel> seen;
        for (std::size_t at = 0; at < in[0].size(); at += static_cast<std::size_t>(blockLength)) {
            const CChannels block = cut(in, at, blockLength);
            run(block, cut(reference, at, blockLength));
            env->streamTime += static_cast<double>(block[0].size()) / format.sampleRate;
            for (const CSeenLevel& each : requestLevels(*viz, env->vizRate))
                seen.push_back(each);
        }
        return seen;
    }
    void setWindowRate(double fps) { (void)requestVizBytes(*viz, fps); }

private:
    static CChannels cut(const CChannels& from, std::size_t at, int length)
    {
        CChannels block;
        for (const auto& channel : from)
            block.emplace_back(channel.begin() + static_cast<std::ptrdiff_t>(at),
                               channel.begin() +
                                   static_cast<std::ptrdiff_t>(std::min(
                                       at + static_cast<std::size_t>(length), channel.size())));
        return block;
    }
};

long double coefficient(double seconds, double rate = kRate)
{
    const long double q =
        2.0L - std::cos(2.0L * kPi / static_cast<long double>(rate) / (seconds * 1.362L));
    return 1.0L - q + std::sqrt(q * q - 1.0L);
}

enum class EModel { Plain, Minimum, Ratio };

/// What a meter should have followed, in long double, with the peak as the extreme of the frames
/// in the window.
class CModel {
public:
    CModel(EModel kind, const CSettings& settings) : model(kind), s(settings)
    {
        const bool hasBias = s.useBias > 0.0 && model != EModel::Plain;
        rms = rms2 = rel = bias = now = hasBias ? 1.0L : 0.0L;
        const long count = std::max(std::lround(s.peakTime * kRate / kFrame), 1L);
        frames.assign(static_cast<std::size_t>(count), now);
    }
    void add(double x, double reference)
    {
        long double square = static_cast<long double>(x) * x;
        const long double biasStep = coefficient(s.biasTime);
        if (model == EModel::Minimum && s.useBias > 0.0) {
            bias += (square - bias) * biasStep;
            square /= bias;
        }
        rms += (square - rms) * rmsStep;
        if (model == EModel::Ratio) {
            rms2 += (static_cast<long double>(reference) * reference - rms2) * rmsStep;
            const long double ratio = (1e-15L + rms) / (1e-15L + rms2);
            bias += (ratio - bias) * biasStep;
            rel = square = ratio / bias;
        } else if (model == EModel::Plain ? rms > rel : rms < rel) {
            rel = rms;
        } else {
            rel += (rms - rel) * releaseStep;
        }
        now = extreme(now, extreme(square, rel));
        if (++samples % kFrame == 0) {
            frames.pop_front();
            frames.push_back(now);
            now = rel;
        }
    }
    [[nodiscard]] double getRms() const { return static_cast<double>(std::sqrt(rel)); }
    [[nodiscard]] double getPeak() const
    {
        long double peak = now;
        for (const long double frame : frames)
            peak = extreme(peak, frame);
        return static_cast<double>(std::sqrt(peak));
    }

private:
    [[nodiscard]] long double extreme(long double a, long double b) const
    {
        return model == EModel::Plain ? std::max(a, b) : std::min(a, b);
    }

    EModel model;
    CSettings s;
    long double rmsStep = coefficient(s.rmsTime);
    long double releaseStep = s.release > 0.0 ? coefficient(s.release) : 1.0L;
    long double rms, rms2, rel, bias, now;
    std::deque<long double> frames;
    int samples = 0;
};

/// Noise whose level jumps about, with single loud and silent samples.
CSignal unsteady(int count, unsigned seed)
{
    CSignal signal = noise(count, 1.0, seed);
    std::mt19937 generator(seed);
    double level = 0.5;
    for (double& sample : signal) {
        if (generator() % 3000 == 0)
            level = std::pow(10.0, -static_cast<double>(generator() % 60) / 20.0);
        sample *= generator() % 5000 == 0 ? 1.0 : level;
    }
    return signal;
}

void expectNear(double value, double wanted, const std::string& what)
{
    EXPECT_NEAR(value, wanted, 1e-7 * std::abs(wanted) + 1e-14) << what;
}

struct CCase {
    const char* name;
    EModel model;
    CSettings settings;
    std::vector<std::pair<std::string, std::string>> attrs;
    int blockLength;
};

void PrintTo(const CCase& each, std::ostream* out)
{
    *out << each.name;
}

class AMeterKind : public AMeter, public testing::WithParamInterface<CCase> {};

TEST_P(AMeterKind, FollowsTheLevelAndHoldsItsPeaks)
{
    const CCase& each = GetParam();
    auto attrs = each.attrs;
    attrs.emplace_back("fps", "50");
    startMeter(each.settings, attrs);
    addDryInput();
    const CSignal in = unsteady(3 * 44100, 5);
    const CSignal reference = unsteady(3 * 44100, 6);
    const std::vector<CSeenLevel> seen = measure({in}, {reference}, each.blockLength);
    ASSERT_EQ(seen.size(), 150u);
    CModel model(each.model, each.settings);
    std::size_t next = 0;
    for (std::size_t i = 0; i < in.size(); ++i) {
        model.add(in[i], reference[i]);
        if ((i + 1) % 882 != 0)
            continue;
        const CSeenLevel& record = seen[next++];
        const std::string what = each.name + std::to_string(i);
        EXPECT_NEAR(record.time, (static_cast<double>(i) + 1.0 - 441.0) / kRate, 1e-9);
        expectNear(record.rms, each.settings.gain * model.getRms(), what);
        expectNear(record.peak, each.settings.gain * each.settings.peakGain * model.getPeak(),
                   what);
    }
}

INSTANTIATE_TEST_SUITE_P(
    Kinds, AMeterKind,
    testing::Values(
        CCase{"plain", EModel::Plain, {.peakTime = 0.3}, {}, 331},
        CCase{"plain, bias without effect", EModel::Plain, {.useBias = 1.0, .release = 2.0}, {}, 1},
        CCase{"plain, no release, gains",
              EModel::Plain,
              {.peakTime = 0.001, .gain = 2.0, .release = 0.0, .peakGain = 0.5},
              {},
              512},
        CCase{"minimum", EModel::Minimum, {.peakTime = 0.2}, {{"is-compression", "true"}}, 97},
        CCase{"minimum over bias",
              EModel::Minimum,
              {.peakTime = 0.2, .useBias = 1.0},
              {{"is-compression", "true"}},
              331},
        CCase{"ratio over bias",
              EModel::Ratio,
              {.peakTime = 0.4, .gain = 0.5, .useBias = 1.0, .peakGain = 3.0},
              {{"is-diff", "true"}},
              331}),
    [](const auto& each) { return std::to_string(each.index); });

TEST_F(AMeter, RisesAndFallsByItsTimes)
{
    const CSettings s{.rmsTime = 0.05, .release = 0.4};
    startMeter(s, {{"fps", "10"}});
    CSignal in(44100, 0.5);
    in.resize(2 * 44100, 0.0);
    const std::vector<CSeenLevel> seen = measure({in});
    ASSERT_EQ(seen.size(), 20u);
    // Both stages are one-poles, so a step has closed forms.
    const double p = 1.0 - static_cast<double>(coefficient(s.rmsTime));
    const double q = 1.0 - static_cast<double>(coefficient(s.release));
    const double top = 0.25 * (1.0 - std::pow(p, 44100));
    const double mix = top * (1.0 - q) * p / (p - q);
    for (std::size_t i = 0; i < 10; ++i) {
        const auto samples = static_cast<double>(i + 1) * 4410.0;
        expectNear(seen[i].rms, std::sqrt(0.25 * (1.0 - std::pow(p, samples))), "rise");
        const double fall = mix * std::pow(p, samples) + (top - mix) * std::pow(q, samples);
        expectNear(seen[10 + i].rms, std::sqrt(fall), "fall");
    }
}

TEST_F(AMeter, ComparesItsInputs)
{
    startMeter({.gain = 2.0, .peakGain = 0.5}, {{"is-diff", "true"}, {"fps", "6"}}, {0, 1});
    addDryInput();
    const CSignal silence(7350, 0.0);
    std::vector<CSeenLevel> seen = measure({silence, silence}, {silence, silence});
    ASSERT_EQ(seen.size(), 2u);
    EXPECT_EQ(seen[0].rms, 2.0);
    EXPECT_EQ(seen[0].peak, 1.0);
    const CSignal loud(7350, 0.5);
    const CSignal soft(7350, 0.05);
    seen = measure({soft, loud}, {loud, soft});
    ASSERT_EQ(seen.size(), 2u);
    EXPECT_NEAR(seen[0].rms, 0.2, 1e-12);
    EXPECT_NEAR(seen[1].rms, 20.0, 1e-9);
}

TEST_F(AMeter, TakesAMissingReferenceForSilence)
{
    startMeter({}, {{"is-diff", "true"}, {"fps", "6"}});
    const std::vector<CSeenLevel> seen = measure({CSignal(7350, 1.0)});
    ASSERT_EQ(seen.size(), 1u);
    EXPECT_NEAR(seen[0].rms, std::sqrt(1e15), 1e3);
}

TEST_F(AMeter, SendsReciprocalsAndNeverInfinity)
{
    startMeter({.rmsTime = 0.001}, {{"is-inverted", "true"}, {"fps", "6"}});
    EXPECT_DOUBLE_EQ(measure({CSignal(7350, 0.0)}).at(0).rms, 1e15);
    const CSeenLevel seen = measure({CSignal(7350, 0.25)}).at(0);
    EXPECT_NEAR(seen.rms, 4.0, 1e-9);
    EXPECT_NEAR(seen.peak, 4.0, 1e-9);
}

TEST_F(AMeter, KeepsChannelsAndTheirGroupsApart)
{
    startMeter({.rmsTime = 0.001}, {{"fps", "6"}}, {0, 3});
    set("gain", 10.0, 3);
    const std::vector<CSeenLevel> seen = measure({CSignal(7350, 0.5), CSignal(7350, 0.25)});
    ASSERT_EQ(seen.size(), 2u);
    EXPECT_EQ(seen[0].index, 0u);
    EXPECT_EQ(seen[0].group, 0u);
    EXPECT_NEAR(seen[0].rms, 0.5, 1e-9);
    EXPECT_EQ(seen[1].index, 1u);
    EXPECT_EQ(seen[1].group, 3u);
    EXPECT_NEAR(seen[1].rms, 2.5, 1e-9);
}

TEST_F(AMeter, SendsAtItsOwnRate)
{
    struct CRow {
        const char* fps;
        int interval;
    };
    for (const CRow& row :
         {CRow{"6", 7350}, CRow{"1000", 44}, CRow{"43.9", 1006}, CRow{"9999", 32}}) {
        startMeter({}, {{"fps", row.fps}});
        const CSignal in(static_cast<std::size_t>(2 * row.interval), 0.5);
        const std::vector<CSeenLevel> seen = measure({in}, {}, 64);
        ASSERT_EQ(seen.size(), 2u) << row.fps;
        EXPECT_NEAR(seen[0].time, 0.5 * row.interval / kRate, 1e-12);
        EXPECT_NEAR(seen[1].time, 1.5 * row.interval / kRate, 1e-12);
        TearDown();
    }
}

TEST_F(AMeter, FollowsTheRateOfTheWindows)
{
    startMeter({}, {{"fps", ""}});
    EXPECT_EQ(measure({CSignal(1469, 0.5)}).size(), 0u);
    setWindowRate(50.0);
    // The interval that runs stays that of 30 a second; then come three of 882 samples.
    std::vector<CSeenLevel> seen = measure({CSignal(1 + 3 * 882, 0.5)});
    ASSERT_EQ(seen.size(), 4u);
    EXPECT_NEAR(seen[0].time, 735.0 / kRate, 1e-12);
    EXPECT_NEAR(seen[1].time, (1470.0 + 441.0) / kRate, 1e-12);
    setWindowRate(1e9);
    seen = measure({CSignal(882 + 10 * 32, 0.5)});
    EXPECT_EQ(seen.size(), 11u);
    setWindowRate(1e-9);
    seen = measure({CSignal(32 + 44100, 0.5)});
    EXPECT_EQ(seen.size(), 2u);
}

TEST_F(AMeter, StartsAnewWithFormatsAndTimesButNotWithGains)
{
    startMeter({.peakTime = 10.0, .rmsTime = 5.0, .release = 5.0}, {{"fps", "10"}});
    const CSignal silence(4410, 0.0);
    measure({CSignal(44100, 1.0)});
    set("gain", 0.5);
    CSeenLevel seen = measure({silence}).at(0);
    EXPECT_NEAR(seen.peak, 0.5, 1e-12);
    EXPECT_GT(seen.rms, 0.05);
    set("release", 4.0);
    EXPECT_EQ(measure({silence}).at(0).rms, 0.0);
    measure({CSignal(4410, 1.0)});
    process->reset();
    EXPECT_EQ(measure({silence}).at(0).peak, 0.0);
    measure({CSignal(4410, 1.0)});
    set("use-time2", 1.0);
    EXPECT_EQ(measure({silence}).at(0).peak, 0.0);

    measure({CSignal(4410 + 100, 1.0)});
    env->streamTime = 7.0;
    setFormat({0, 0}, 96000.0);
    const CSignal longer(9600, 0.0);
    const std::vector<CSeenLevel> both = measure({longer, longer});
    ASSERT_EQ(both.size(), 2u);
    EXPECT_EQ(both[0].peak, 0.0);
    EXPECT_NEAR(both[1].time, 7.05, 1e-9);
}

TEST_F(AMeter, SurvivesSamplesThatAreNotFinite)
{
    for (const double bad : {std::numeric_limits<double>::quiet_NaN(),
                             std::numeric_limits<double>::infinity(), 1e300}) {
        startMeter({.rmsTime = 0.001}, {{"fps", "6"}});
        CSignal in(2 * 7350, 0.5);
        in[3000] = bad;
        const std::vector<CSeenLevel> seen = measure({in}); // the reader refuses what isn't finite
        ASSERT_EQ(seen.size(), 2u);
        EXPECT_NEAR(seen[1].rms, 0.5, 1e-9);
        EXPECT_NEAR(seen[1].peak, 0.5, 1e-9);
        TearDown();
    }
}

// Loudness

double gainDb(const CKWeighting& weighting, double hz, double rate)
{
    const std::complex<double> z = std::polar(1.0, -2.0 * std::numbers::pi * hz / rate);
    double gain = 1.0;
    for (const CKWeighting::CSection& s : {weighting.getShelf(), weighting.getHighPass()})
        gain *= std::abs((s.b0 + s.b1 * z + s.b2 * z * z) / (1.0 + s.a1 * z + s.a2 * z * z));
    return 20.0 * std::log10(gain);
}

/// The sections of a second-order shelf and high-pass at any rate, from corner, quality and gain
/// that give the standard's tables at 48 kHz.
double prototypeDb(double hz)
{
    const std::complex<double> s1(0.0, hz / 1681.974450955533);
    const double high = std::pow(10.0, 3.999843853973347 / 20.0);
    const double middle = std::pow(high, 0.4996667741545416) / 0.7071752369554196;
    const std::complex<double> shelf =
        (high * s1 * s1 + middle * s1 + 1.0) / (s1 * s1 + s1 / 0.7071752369554196 + 1.0);
    const std::complex<double> s2(0.0, hz / 38.13547087602444);
    const std::complex<double> highPass = s2 * s2 / (s2 * s2 + s2 / 0.5003270373238773 + 1.0);
    return 20.0 * std::log10(std::abs(shelf * highPass));
}

TEST(TheKWeighting, IsTheStandardsAtItsRate)
{
    CKWeighting weighting;
    weighting.prepare(48000.0);
    const CKWeighting::CSection shelf = weighting.getShelf();
    const CKWeighting::CSection highPass = weighting.getHighPass();
    const double made[] = {shelf.b0,    shelf.b1,    shelf.b2,    shelf.a1,    shelf.a2,
                           highPass.b0, highPass.b1, highPass.b2, highPass.a1, highPass.a2};
    const double printed[] = {1.53512485958697,
                              -2.69169618940638,
                              1.19839281085285,
                              -1.69065929318241,
                              0.73248077421585,
                              1.0,
                              -2.0,
                              1.0,
                              -1.99004745483398,
                              0.99007225036621};
    for (std::size_t i = 0; i < std::size(made); ++i)
        EXPECT_NEAR(made[i], printed[i], 1e-13) << i;
}

TEST(TheKWeighting, HasItsResponseAtEachRate)
{
    // The printed high-pass has round numerators, so its pass band lies a little above 0 dB.
    const double printedGainDb =
        20.0 * std::log10(4.0 / (1.0 + 1.99004745483398 + 0.99007225036621));
    CKWeighting weighting;
    for (const double rate : {44100.0, 88200.0, 192000.0, 352800.0}) {
        weighting.prepare(rate);
        // The bilinear transform narrows what comes near half the rate.
        for (const double hz : {20.0, 38.0, 100.0, 500.0, 997.0, 1700.0, 3000.0})
            EXPECT_NEAR(gainDb(weighting, hz, rate), prototypeDb(hz) + printedGainDb, 0.02)
                << rate << " " << hz;
        // The standard's own calibration: its offset of -0.691 dB cancels the gain at 997 Hz.
        EXPECT_NEAR(gainDb(weighting, 997.0, rate), 0.691, 0.01) << rate;
    }
}

TEST_F(AMeter, MeasuresLoudnessOverItsIntegrationTime)
{
    for (const double rate : {44100.0, 48000.0, 192000.0}) {
        startMeter({.peakTime = 1.0, .rmsTime = 0.4, .useEbu128 = 1.0}, {{"fps", "10"}}, {0}, rate);
        const auto second = static_cast<int>(rate);
        const std::vector<CSeenLevel> seen = measure({sine(second, 997.0, rate, 0.8)}, {}, 441);
        const double level =
            0.927414538975768 * 0.8 / std::sqrt(2.0) * std::pow(10.0, 0.691 / 20.0);
        EXPECT_NEAR(seen.back().rms, level, 0.002);
        EXPECT_NEAR(seen.back().peak, 0.8, 0.001);
        // Half of the window is still silence.
        EXPECT_NEAR(seen[1].rms, level / std::sqrt(2.0), 0.03);
        const std::vector<CSeenLevel> after =
            measure({CSignal(static_cast<std::size_t>(second), 0.0)}, {}, 441);
        EXPECT_LT(after[4].rms, 1e-3);
        TearDown();
    }
}

} // namespace

} // namespace tsm::test
