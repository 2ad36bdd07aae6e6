#include "Tests/Audio/CTestInstance.h"
#include "Tests/Support/TapeRig.h"

#include <gmock/gmock.h>

#include <cmath>
#include <limits>

namespace tsm {
namespace {

using test::noise;
using test::sine;

// Two stages, each late by ceil(2 / 44100 of the rate) + 1 samples, and the impulses' peak.
constexpr int kLatency44 = 6 + 58;

/// Blocks of another length are convolved another way, which rounds otherwise.
constexpr double kRounding = 1e-13;

bool isFinite(const CChannel& channel)
{
    return std::all_of(channel.begin(), channel.end(), [](double x) { return std::isfinite(x); });
}

double peakOf(const CChannel& channel)
{
    double peak = 0.0;
    for (const double sample : channel)
        peak = std::max(peak, std::abs(sample));
    return peak;
}

// Life

TEST(AWrapper, NeedsAnApplicationAndItsDefinition)
{
    {
        CTestWrapper wrapper;
        EXPECT_FAILS_WITH(wrapper.init(), "No application object created.");
    }
    CApplication application;
    ASSERT_OK(application.start(nullptr, 0, nullptr, CString()));
    CTestWrapper wrapper;
    EXPECT_FAILS_WITH(wrapper.init(), "Unable to find object 'shared::audio' ('shared::audio')");
}

TEST_F(AnInstance, KnowsItsLatencyBeforeSoundStarts)
{
    wrapper = std::make_unique<CTestWrapper>();
    ASSERT_OK(wrapper->init());
    wrapper->afterInit();
    EXPECT_EQ(wrapper->latencyChanges, 1);
    EXPECT_EQ(wrapper->param("host-latency-change").value(0, 0), 1.0);
    EXPECT_EQ(wrapper->queryLatency(), kLatency44);
    EXPECT_EQ(wrapper->param("host-latency-change").value(0, 0), 0.0);
    EXPECT_EQ(wrapper->getTailSamples(), 17640);
}

TEST_F(AnInstance, FollowsTheRateWithItsLatency)
{
    struct CRow {
        double rate;
        int latency;
    };
    for (const CRow& row : {CRow{48000.0, 8 + 63}, CRow{96000.0, 12 + 126},
                            CRow{192000.0, 20 + 253}, CRow{44100.0, kLatency44}}) {
        SCOPED_TRACE(row.rate);
        wrapper->stopProcessing();
        wrapper->setSampleRate(row.rate);
        wrapper->startProcessing();
        EXPECT_EQ(wrapper->queryLatency(), row.latency);
        EXPECT_EQ(wrapper->getTailSamples(), std::lround(0.4 * row.rate));
    }
}

TEST_F(AnInstance, RunsOnePassForEachStartAndStop)
{
    const auto passesOf = [&](auto call) {
        const double before = wrapper->getStreamSamples();
        call();
        return std::lround(wrapper->getStreamSamples() - before);
    };
    EXPECT_EQ(passesOf([&] { wrapper->stopProcessing(); }), 0);
    EXPECT_EQ(passesOf([&] { wrapper->startProcessing(); }), 1);
    EXPECT_EQ(passesOf([&] { wrapper->startProcessing(); }), 0);
    EXPECT_EQ(passesOf([&] { wrapper->setSampleRate(wrapper->getSampleRate()); }), 0);
    EXPECT_EQ(passesOf([&] { wrapper->stopProcessing(); }), 1);
    EXPECT_EQ(passesOf([&] { wrapper->stopProcessing(); }), 0);
}

TEST_F(AnInstance, HasTheSizeOfTheProductsWindow)
{
    EXPECT_EQ(wrapper->getEditorSize().getScale(), 1.0);
    EXPECT_EQ(wrapper->getEditorSize().getWidth(), 900);
    EXPECT_EQ(wrapper->getEditorSize().getHeight(), 179);
}

TEST(AnEditorSize, ScalesWithTheScreenInSteps)
{
    struct CRow {
        double userScale;
        int width, height;
        double scale;
    };
    for (const CRow& row :
         {CRow{1.0, 1920, 1080, 1.0}, CRow{1.0, 3840, 2160, 2.0}, CRow{1.0, 1366, 768, 0.8},
          CRow{1.0, 2560, 1440, 1.35}, CRow{1.25, 0, 0, 1.25}, CRow{0.1, 1080, 1920, 0.8}}) {
        SCOPED_TRACE(row.height);
        CWrapperSettings settings;
        settings.screenScale = row.userScale;
        CEditorSize size;
        size.chooseScale(settings, row.width, row.height);
        EXPECT_NEAR(size.getScale(), row.scale, 1e-12);
    }
}

TEST_F(AnInstance, KeepsTheModeOfABounceInItsRange)
{
    CWrapperParams params;
    params.bind(wrapper->getParamCollector(), wrapper->getSwitches());
    CHostValues values(params);
    values.setOffline(true, 44100.0, 3, 1);
    EXPECT_EQ(values.getOversamplingMode(), 3);
    values.setOffline(true, 192000.0, 0, 1);
    EXPECT_EQ(values.getOversamplingMode(), 0);
}

TEST_F(AnInstance, ChoosesTheModeOfABounceByTheRate)
{
    struct CRow {
        double rate;
        int mode;
    };
    for (const CRow& row : {CRow{44100.0, 2}, CRow{71999.0, 2}, CRow{72000.0, 1}, CRow{96000.0, 1},
                            CRow{144000.0, 0}, CRow{192000.0, 0}}) {
        SCOPED_TRACE(row.rate);
        wrapper->setSampleRate(row.rate);
        wrapper->setOffline(true);
        EXPECT_EQ(wrapper->getHostOversamplingMode(), row.mode);
        EXPECT_EQ(wrapper->param("host-oversampling-mode").value(0, 0), row.mode);
        EXPECT_EQ(wrapper->param("host-offline").value(0, 0), 1.0);
        wrapper->setOffline(false);
        EXPECT_EQ(wrapper->getHostOversamplingMode(), 0);
        EXPECT_EQ(wrapper->param("host-offline").value(0, 0), 0.0);
    }
}

// Events

TEST_F(AnInstance, RunsEventsAtTheirSampleAndInTheirOrder)
{
    begin();
    const double start = wrapper->getStreamSamples();
    wrapper->queueParamEvent(100, 11, 0.0);
    wrapper->queueParamEvent(100, 12, 0.0);
    wrapper->queueParamEvent(0, 10, 0.0);
    wrapper->queueParamEvent(700, 14, 0.0); // behind the block's end
    wrapper->queueParamEvent(699, 13, 0.0);
    process(CChannel(700), 700);
    process(CChannel(700), 700);
    ASSERT_EQ(wrapper->seenEvents.size(), 4U);
    const double places[] = {0, 100, 100, 699};
    for (std::size_t i = 0; i < 4; ++i) {
        EXPECT_EQ(wrapper->seenEvents[i].index, static_cast<int>(10 + i));
        EXPECT_NEAR(wrapper->seenEvents[i].streamSamples - start, places[i], 1e-6);
    }
}

TEST_F(AnInstance, PutsAChangeAtTheSampleOfItsEvent)
{
    const CChannel in = noise(2000, 0.5);
    begin();
    const CChannel plain = process(in);

    for (const int at : {100, 300, 511, 512, 1998}) {
        SCOPED_TRACE(at);
        makeInstance();
        begin();
        wrapper->eventParams = {&wrapper->param("modOutGain.gain")};
        wrapper->queueParamEvent(static_cast<unsigned>(at), 0, 0.25);
        const CChannel out = process(in, 2000);
        // The fade starts at gain 1: the sample behind the event is the first one to differ.
        const auto isClose = [](double x, double y) { return std::abs(x - y) < kRounding; };
        const auto differs = std::mismatch(out.begin(), out.end(), plain.begin(), isClose).first;
        EXPECT_EQ(differs - out.begin(), at + 1);
        for (std::size_t i = static_cast<std::size_t>(at) + 662; i < in.size(); ++i)
            ASSERT_NEAR(out[i], plain[i] * 0.25, kRounding);
    }
}

// Formats

TEST_F(AnInstance, GivesTheSameSoundInEveryBlockSize)
{
    const std::vector<CChannel> in{noise(4000, 0.8, 1), noise(4000, 0.8, 2)};
    std::vector<CChannel> expected;
    for (const int blockSize : {512, 1, 17, 64, 1300, 4000}) {
        SCOPED_TRACE(blockSize);
        makeInstance();
        begin(2, 48000.0);
        const std::vector<CChannel> out = process(in, blockSize);
        if (expected.empty())
            expected = out;
        for (std::size_t i = 0; i < out.size(); ++i)
            EXPECT_THAT(out[i], testing::Pointwise(testing::DoubleNear(kRounding), expected[i]));
    }
    EXPECT_GT(peakOf(expected[0]), 0.1);
    EXPECT_NE(expected[0], expected[1]);
}

TEST_F(AnInstance, TakesInterleavedAndFloatSamples)
{
    std::vector<CChannel> in{noise(1000, 0.5, 1), noise(1000, 0.5, 2)};
    std::vector<float> frames;
    for (std::size_t i = 0; i < 1000; ++i)
        for (CChannel& channel : in) {
            channel[i] = static_cast<float>(channel[i]);
            frames.push_back(static_cast<float>(channel[i]));
        }
    begin(2);
    const std::vector<CChannel> expected = process(in);

    makeInstance();
    wrapper->setSampleRate(44100.0);
    wrapper->setChannelFormat({2, false, true}, {});
    wrapper->setOutputFormat({2, false, true});
    wrapper->startProcessing();
    std::vector<float> out(frames.size());
    const void* const inputs[] = {frames.data()};
    void* const outputs[] = {out.data()};
    wrapper->processBlock(inputs, outputs, 1000);
    for (std::size_t i = 0; i < 1000; ++i) {
        ASSERT_EQ(out[2 * i], static_cast<float>(expected[0][i])) << i;
        ASSERT_EQ(out[2 * i + 1], static_cast<float>(expected[1][i])) << i;
    }
}

TEST_F(AnInstance, SkipsMissingBuffersAndSilencesSurplusOutputs)
{
    const CChannel in = noise(600, 0.5);
    begin(2);
    wrapper->setOutputFormat({3, true, false});
    CChannel left(600, 9.0);
    CChannel surplus(600, 9.0);
    const void* const inputs[] = {in.data(), nullptr};
    void* const outputs[] = {left.data(), nullptr, surplus.data()};
    wrapper->processBlock(inputs, outputs, 600);
    EXPECT_GT(peakOf(left), 0.1);
    EXPECT_EQ(surplus, CChannel(600, 0.0));

    makeInstance();
    begin(2);
    CChannel expected(600);
    CChannel silent(600, 9.0);
    void* const whole[] = {expected.data(), silent.data()};
    wrapper->processBlock(inputs, whole, 600);
    EXPECT_EQ(left, expected);
    EXPECT_EQ(silent, CChannel(600, 0.0)); // a missing input is silence
}

TEST_F(AnInstance, WorksAtEveryRate)
{
    for (const double rate : {1.0, 10.0, 999.0, 4000.0, 8000.0, 44100.0, 768000.0, 6144000.0}) {
        SCOPED_TRACE(rate);
        makeInstance();
        begin(2, rate);
        const CChannel in = noise(3000, 1.0);
        for (const CChannel& channel : process({in, in}, 700)) {
            EXPECT_TRUE(isFinite(channel));
            EXPECT_LT(peakOf(channel), 100.0);
        }
    }
}

// Sound

TEST_F(AnInstance, GivesTheDelayedInputExactlyWhenBypassed)
{
    set("bypass-enable", 1.0);
    begin(2);
    const std::vector<CChannel> in{noise(3000, 1.0, 1), noise(3000, 1.0, 2)};
    const std::vector<CChannel> out = process(in, 100);
    for (std::size_t c = 0; c < 2; ++c)
        for (std::size_t i = 0; i + kLatency44 < 3000; ++i)
            ASSERT_EQ(out[c][i + kLatency44], in[c][i]);
}

TEST_F(AnInstance, FadesIntoBypassWithoutAClick)
{
    begin();
    wrapper->eventParams = {&wrapper->param("bypass-enable")};
    const CChannel in = sine(6000, 100.0, 44100.0, 0.5);
    wrapper->queueParamEvent(3000, 0, 1.0);
    const CChannel out = process(in, 6000);
    // A sine's second difference is (2 pi f / rate)^2 of it; a click would stand far above.
    double bend = 0.0;
    for (std::size_t i = 2500; i < 5999; ++i)
        bend = std::max(bend, std::abs(out[i - 1] - 2.0 * out[i] + out[i + 1]));
    EXPECT_LT(bend, 5e-4);
    for (std::size_t i = 4000; i < 6000; ++i)
        ASSERT_EQ(out[i], in[i - kLatency44]);
}

TEST_F(AnInstance, ReadsUnusableSamplesAsSilence)
{
    constexpr double kInf = std::numeric_limits<double>::infinity();
    CChannel in = noise(2000, 0.5);
    CChannel clean = in;
    for (const auto& [place, value] :
         {std::pair{100U, kInf}, {700U, -kInf}, {701U, std::nan("")}}) {
        in[place] = value;
        clean[place] = 0.0;
    }
    begin();
    const CChannel out = process(in, 300);
    makeInstance();
    begin();
    EXPECT_EQ(out, process(clean, 300));
}

TEST_F(AnInstance, SurvivesASampleThatNoFilterCanHold)
{
    begin();
    CChannel in = noise(4096, 0.5);
    in[600] = 1e300;
    const CChannel out = process(in, 4096);
    EXPECT_TRUE(isFinite(out));
    // Only what shares a sub-block with the broken samples is lost.
    EXPECT_GT(peakOf(CChannel(out.begin(), out.begin() + 512)), 0.1);
    EXPECT_EQ(peakOf(CChannel(out.begin() + 512, out.begin() + 1024)), 0.0);
    const double peak = peakOf(CChannel(out.begin() + 1100, out.end()));
    EXPECT_GT(peak, 0.1);
    EXPECT_LT(peak, 2.0);
}

TEST_F(AnInstance, StartsAnewWithAnotherFormat)
{
    const CChannel in = noise(2000, 0.5);
    setFormat(2, 48000.0);
    wrapper->startProcessing();
    const std::vector<CChannel> first = process({in, in});
    wrapper->stopProcessing();
    setFormat(1, 96000.0);
    wrapper->startProcessing();
    process(in);
    wrapper->stopProcessing();
    setFormat(2, 48000.0);
    wrapper->startProcessing();
    EXPECT_EQ(process({in, in}), first);
}

TEST_F(AnInstance, TakesAFormatThatChangesWhileItRuns)
{
    const CChannel in = noise(600, 0.5);
    begin(1);
    process(in);
    setFormat(2, 44100.0);
    const std::vector<CChannel> out = process({in, in});
    EXPECT_GT(peakOf(out[0]), 0.1);
    // Convolvers transform at moments of their own, and so round differently.
    for (std::size_t i = 0; i < in.size(); ++i)
        ASSERT_NEAR(out[0][i], out[1][i], 1e-14);
}

// Routing

std::vector<std::string> textsOf(const CAudioParam& param, int count)
{
    std::vector<std::string> texts;
    for (int i = 0; i < count; ++i)
        texts.push_back(param.text(0, i).toUtf8());
    return texts;
}

TEST_F(AnInstance, AdaptsItsRoutingToTheHostUntilAUserTouchesIt)
{
    const auto nameChannels = [&](std::initializer_list<const char*> names) {
        CHostChannelNames host;
        for (const char* name : names)
            host.main.create(name);
        wrapper->setChannelNames(std::move(host));
    };
    nameChannels({"Left", "Right"});
    wrapper->updateRouting(false, nullptr);
    EXPECT_EQ(textsOf(wrapper->param("io-params.in-channel-names"), 2),
              (std::vector<std::string>{"L", "R"}))
        << "no host has said anything yet";

    wrapper->updateRouting(true, nullptr);
    EXPECT_EQ(textsOf(wrapper->param("io-params.in-channel-names"), 2),
              (std::vector<std::string>{"Left", "Right"}));
    EXPECT_EQ(textsOf(wrapper->param("io-params.group-names"), 3),
              (std::vector<std::string>{"STEREO", "G-2", "G-3"}));

    nameChannels({"M"});
    wrapper->updateRouting(nullptr); // armed by now
    EXPECT_EQ(wrapper->param("io-params.group-names").text(0, 0), "MONO");
    EXPECT_EQ(wrapper->param("io-params.in-routing").value(0, 1), 0.0);

    wrapper->param("io-params.in-routing").setValue(0, 0, 2.0);
    nameChannels({"Left", "Right"});
    wrapper->updateRouting(true, nullptr);
    EXPECT_EQ(wrapper->param("io-params.group-names").text(0, 0), "MONO");
}

} // namespace
} // namespace tsm
