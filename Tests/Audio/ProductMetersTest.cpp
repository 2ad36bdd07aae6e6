#include "Tests/Audio/CTestInstance.h"
#include "Tests/Support/CVizStream.h"
#include "Tests/Support/HeapAllocations.h"
#include "Tests/Support/TapeRig.h"

#include <cmath>

namespace tsm {
namespace {

using test::noise;
using test::sine;

constexpr const char* kOut = "plugin.modMain.modMeterOut";
constexpr const char* kDiff = "plugin.modMain.modMeterIODiff";
constexpr int kRate = 44100;
constexpr std::size_t kSecond = kRate;

/// Over the last second.
double levelOf(const CChannel& out)
{
    double sum = 0.0;
    for (std::size_t i = out.size() - kSecond; i < out.size(); ++i)
        sum += out[i] * out[i];
    return std::sqrt(sum / kRate);
}

double peakOf(const CChannel& out)
{
    double peak = 0.0;
    for (std::size_t i = out.size() - kSecond; i < out.size(); ++i)
        peak = std::max(peak, std::abs(out[i]));
    return peak;
}

class TheMeters : public AnInstance {
protected:
    void SetUp() override
    {
        AnInstance::SetUp();
        // They are stored, for the next test too.
        setTimes({.rms = 0.3, .release = 0.75, .peak = 1.0});
        begin(2);
        pass(CChannel(64, 0.0));
    }
    struct CTimes {
        double rms, release, peak; // seconds
    };
    void setTimes(const CTimes& times)
    {
        set("meter-rmstime", times.rms);
        set("meter-releasetime", times.release);
        set("meter-peaktime", times.peak);
    }
    void watch(const char* name)
    {
        CAudioVizCollector& viz = wrapper->getVizCollector();
        viz.addListener(viz.getSource(name));
        // One block sets the switch, the next hears of it.
        pass(CChannel(64, 0.0));
    }
    void leave(const char* name)
    {
        CAudioVizCollector& viz = wrapper->getVizCollector();
        viz.removeListener(viz.getSource(name));
    }
    std::vector<CChannel> pass(const CChannel& in, int blockSize = 331)
    {
        return process({in, in}, blockSize);
    }
    std::vector<CSeenLevel> request() { return requestLevels(wrapper->getVizCollector()); }
};

TEST_F(TheMeters, RunWhileTheyAreWatchedAndLeaveTheSoundAlone)
{
    set("bypass-enable", 1.0); // what goes in comes out, exactly; the meters stand before that
    set("meter-peaktime", 10.0);
    pass(CChannel(kSecond, 0.0));
    const CChannel in = noise(kRate, 0.5);
    const std::vector<CChannel> alone = pass(in);
    EXPECT_TRUE(request().empty());
    pass(CChannel(64, 0.0));

    watch(kOut);
    EXPECT_EQ(wrapper->param("modMeterOut-enable").value(0, 0), 1.0);
    const double start = wrapper->getEnvironment().streamTime;
    const std::vector<CChannel> watched = pass(in);
    for (std::size_t i = 100; i < in.size(); ++i)
        ASSERT_EQ(watched[1][i], alone[1][i]) << i;
    const std::vector<CSeenLevel> seen = request();
    ASSERT_EQ(seen.size(), 60u); // two channels, 30 a second
    for (std::size_t i = 0; i < seen.size(); ++i) {
        const int frame = static_cast<int>(i) / 2;
        EXPECT_EQ(seen[i].source, kOut);
        EXPECT_EQ(seen[i].index, i % 2);
        EXPECT_NEAR(seen[i].time, start + (frame + 0.5) / 30.0, 1e-9);
    }

    leave(kOut);
    pass(CChannel(kSecond, 0.0), 512);
    EXPECT_EQ(wrapper->param("modMeterOut-enable").value(0, 0), 0.0);
    watch(kOut);
    pass(CChannel(kSecond, 0.0));
    // The meter was gone meanwhile: it doesn't hold the noise's peak.
    const std::vector<CSeenLevel> after = request();
    ASSERT_EQ(after.size(), 60u);
    EXPECT_LT(after.back().peak, 1e-12);
}

TEST_F(TheMeters, ShowTheLevelAndWhatTheProgramAdds)
{
    watch(kOut);
    watch(kDiff);
    pass(CChannel(kSecond, 0.0));
    for (const CSeenLevel& each : request())
        EXPECT_EQ(each.rms, each.source == kDiff ? 1.0 : 0.0) << each.source;

    set("modMeterIODiff.rms-time", 0.05);
    const CChannel tone = sine(2 * kRate, 1000.0, kRate, 0.25);
    for (const double gain : {1.0, 2.0}) {
        set("modOutGain.gain", gain);
        const CChannel out = pass(tone)[0];
        const std::vector<CSeenLevel> seen = request();
        ASSERT_EQ(seen.size(), 2u * 2 * (30 + 6));
        EXPECT_EQ(seen.front().source, kDiff) << "sources come by name";
        EXPECT_NEAR(seen[23].rms, levelOf(out) * std::sqrt(2.0) / 0.25, 0.002 * gain);
        EXPECT_NEAR(seen.back().rms, levelOf(out), 0.002 * gain);
        EXPECT_NEAR(seen.back().peak, peakOf(out), 1e-6);
    }
}

TEST_F(TheMeters, TakeTheTimesOfAllInstances)
{
    watch(kOut);
    const CChannel loud = sine(kRate, 1000.0, kRate, 0.5);
    const CChannel half(kSecond / 2, 0.0);
    setTimes({.rms = 0.001, .release = 0.02, .peak = 0.1});
    pass(loud);
    pass(half);
    EXPECT_LT(request().back().peak, 0.02);
    set("meter-peaktime", 1.0);
    const double level = peakOf(pass(loud)[0]);
    pass(half);
    const CSeenLevel last = request().back();
    EXPECT_NEAR(last.peak, level, 0.05 * level);
    EXPECT_LT(last.rms, 0.02);
    set("meter-releasetime", 5.0);
    pass(loud);
    pass(half);
    EXPECT_GT(request().back().rms, 0.5 * level);
}

TEST_F(TheMeters, AskTheHeapForNothingWhileSoundRuns)
{
    if (countHeapAllocations() < 0)
        GTEST_SKIP() << "allocations aren't counted in this build";
    watch(kOut);
    watch(kDiff);
    // Both the full queue, where records come and go, and the stream's size are reached here.
    const std::vector<CChannel> in(2, CChannel(512, 0.5));
    std::vector<CChannel> out = in;
    const void* const inputs[] = {in[0].data(), in[1].data()};
    void* const outputs[] = {out[0].data(), out[1].data()};
    for (int i = 0; i < 2000; ++i)
        wrapper->processBlock(inputs, outputs, 512);
    int count = 0;
    for (int i = 0; i < 600; ++i) {
        const int before = countHeapAllocations();
        wrapper->processBlock(inputs, outputs, 512);
        count += countHeapAllocations() - before;
        if (i % 20 == 0)
            (void)request();
    }
    EXPECT_EQ(count, 0);
}

} // namespace
} // namespace tsm
