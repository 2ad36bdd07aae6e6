#include "Audio/Processes/TapeKernels.h"
#include "Tests/Audio/CTestInstance.h"
#include "Tests/Support/ImpulseReference.h"
#include "Tests/Support/TapeReference.h"
#include "Tests/Support/TapeRig.h"

#include <cmath>
#include <deque>
#include <numbers>
#include <numeric>

namespace tsm {
namespace {

using test::CTapePostReference;
using test::CTapeStageReference;
using test::noise;

/// Chooses a kernel build for a scope.
class CKernelScope {
public:
    explicit CKernelScope(EKernelBuild build) : isAvailable(selectTapeKernels(build)) {}
    ~CKernelScope()
    {
        if (!selectTapeKernels(EKernelBuild::Fma))
            selectTapeKernels(EKernelBuild::Generic);
    }
    CKernelScope(const CKernelScope&) = delete;
    CKernelScope& operator=(const CKernelScope&) = delete;

    bool isAvailable;
};

struct CSetting {
    const char* name;
    double rate;
    double recGain;
    double saturation;
    double flutter;
    double hardness;
    double emphasisDb;
    double highGainDb;
    int mode;
    int flutterMode;
    double outGain;
};

constexpr CSetting kSettings[] = {
    {"defaults", 44100.0, 1.0, 1.0, 0.5, 0.5, 10.0, 0.0, 0, 0, 1.0},
    {"hot, with feedback", 48000.0, 4.0, 0.75, 1.0, 0.0, 18.0, -6.0, 1, 1, 0.5},
    {"soft", 96000.0, 0.25, 0.5, 0.0, 1.0, -18.0, 12.0, 0, 0, 2.0},
    {"slow feedback", 22050.0, 8.0, 1.0, 0.25, 0.75, 0.0, 3.0, 4, 1, 1.0},
};

/// The chain written down from its formulas: tape stage, impulse, post stage, gain. With the
/// impulse switched off, a delay to where it would have its peak.
class CChainReference {
public:
    explicit CChainReference(const CSetting& s)
        : impulse(static_cast<std::size_t>(std::lround(0.00131519 * s.rate)) + 1),
          tape({s.rate, s.recGain, s.saturation, s.flutter, s.hardness, s.emphasisDb, s.mode,
                s.flutterMode}),
          post({s.rate, s.flutter, s.emphasisDb, s.highGainDb, s.flutterMode}), gain(s.outGain)
    {
        impulse.back() = 1.0;
    }
    double step(double in) { return post.step(convolve(tape.step(in))) * gain; }
    double convolve(double in)
    {
        past.push_front(in);
        past.resize(std::min(past.size(), impulse.size()));
        return std::inner_product(past.begin(), past.end(), impulse.begin(), 0.0);
    }

    CChannel impulse;

    CTapeStageReference<double> tape;
    CTapePostReference<double> post;

private:
    std::deque<double> past;
    double gain;
};

class AChain : public AnInstance {
protected:
    void apply(const CSetting& s)
    {
        set("modReelpath.recgain", s.recGain);
        set("modReelpath.saturation", s.saturation);
        set("modReelpath.flutter", s.flutter);
        set("modReelpath.hardness", s.hardness);
        set("modReelpath.emphasis", s.emphasisDb);
        set("modReelpath.highgain", s.highGainDb);
        set("modReelpath.mode", s.mode);
        set("modReelpath.fluttermode", s.flutterMode);
        set("modOutGain.gain", s.outGain);
        set("modReelpath.cab-enable", 0.0);
    }
    /// The largest difference between the engine and the formulas over all settings.
    double worstError()
    {
        double worst = 0.0;
        for (const CSetting& setting : kSettings) {
            SCOPED_TRACE(setting.name);
            makeInstance();
            apply(setting);
            begin(2, setting.rate);
            const CChannel in = noise(30000, 1.0);
            const std::vector<CChannel> out = process({in, in}, 480);

            CChainReference reference(setting);
            reference.step(0.0); // the pass of the start
            for (std::size_t i = 0; i < in.size(); ++i)
                worst = std::max(worst, std::abs(out[0][i] - reference.step(in[i])));
            EXPECT_EQ(out[0], out[1]);
        }
        return worst;
    }
};

TEST_F(AChain, EqualsItsFormulasInTheGenericBuild)
{
    const CKernelScope scope(EKernelBuild::Generic);
    EXPECT_LT(worstError(), 1e-12); // -240 dBFS
}

TEST_F(AChain, EqualsItsFormulasInTheFusedBuild)
{
    const CKernelScope scope(EKernelBuild::Fma);
    if (!scope.isAvailable)
        GTEST_SKIP() << "this processor has no fused multiply-add";
    EXPECT_LT(worstError(), 1e-8); // -160 dBFS
}

TEST_F(AChain, GoesThroughTheImpulseOfItsBank)
{
    const CKernelScope scope(EKernelBuild::Generic);
    const CSetting& setting = kSettings[0];
    apply(setting);
    set("modReelpath.cab-enable", 1.0);
    set("modReelpath.cab-index", 4.0);
    begin(1, setting.rate);
    const CChannel in = noise(6000, 1.0);
    const CChannel out = process(in, 480);

    CChainReference reference(setting);
    reference.impulse = test::readBankImpulse(4).channels[0];
    const double gain = test::referenceGain({reference.impulse}, setting.rate);
    for (double& tap : reference.impulse)
        tap *= gain;
    reference.step(0.0); // the pass of the start
    double worst = 0.0;
    for (std::size_t i = 0; i < in.size(); ++i)
        worst = std::max(worst, std::abs(out[i] - reference.step(in[i])));
    EXPECT_LT(worst, 1e-12); // -240 dBFS
}

TEST_F(AChain, FadesFromOneTapeToTheNext)
{
    const CKernelScope scope(EKernelBuild::Generic);
    constexpr int kAt = 1234;
    constexpr int kWait = 3;   // the new stage's own delay
    constexpr int kFade = 662; // 15 ms, rounded half away from zero
    const CSetting before = kSettings[0];
    CSetting after = before;
    after.recGain = 4.0;

    apply(before);
    wrapper->eventParams = {&wrapper->param("modReelpath.recgain")};
    begin();
    const CChannel in = noise(4000, 0.7);
    wrapper->queueParamEvent(kAt, 0, after.recGain);
    const CChannel out = process(in, 4000);

    CChainReference old(before);
    old.step(0.0); // the pass of the start
    CChainReference fresh(after);
    double worst = 0.0;
    for (int i = 0; i < 4000; ++i) {
        const double x = in[static_cast<std::size_t>(i)];
        const double from = old.tape.step(x);
        const double to = i >= kAt ? fresh.tape.step(x) : 0.0;
        const double place = std::clamp((i - kAt - kWait) / double(kFade), 0.0, 1.0);
        const double share = 0.5 + 0.5 * std::cos(std::numbers::pi * place);
        const double expected = old.post.step(old.convolve(share * from + (1.0 - share) * to));
        worst = std::max(worst, std::abs(out[static_cast<std::size_t>(i)] - expected));
    }
    EXPECT_LT(worst, 1e-10); // the engine's recurrence for the cosine drifts by its rounding
}

TEST_F(AChain, KeepsAChangeThatComesDuringAFade)
{
    const CKernelScope scope(EKernelBuild::Generic);
    wrapper->eventParams = {&wrapper->param("modOutGain.gain")};
    begin();
    const CChannel in = noise(4000, 0.7);
    wrapper->queueParamEvent(100, 0, 0.5);
    wrapper->queueParamEvent(300, 0, 0.25);
    wrapper->queueParamEvent(301, 0, 0.125);
    const CChannel out = process(in, 4000);

    makeInstance();
    begin();
    const CChannel plain = process(in, 4000);
    // The first fade runs its whole length, then another one to the last value.
    for (std::size_t i = 100; i < 4000; ++i) {
        const double place = std::clamp((double(i) - 100.0) / 662.0, 0.0, 1.0);
        const double first = 0.75 + 0.25 * std::cos(std::numbers::pi * place);
        if (i < 100 + 662) {
            ASSERT_NEAR(out[i], plain[i] * first, 1e-12) << i;
        }
    }
    for (std::size_t i = 100 + 2 * 662 + 512; i < 4000; ++i)
        ASSERT_NEAR(out[i], plain[i] * 0.125, 1e-13) << i; // in other blocks, so rounded otherwise
}

} // namespace
} // namespace tsm
