#include "Tests/Audio/Processes/CConvolverRig.h"
#include "Tests/Support/CSoundFiles.h"
#include "Tests/Support/HeapAllocations.h"
#include "Tests/rsk/CToneProbe.h"

#include <fstream>
#include <limits>
#include <malloc.h>
#include <numbers>
#include <soxr.h>
#include <sys/stat.h>

namespace tsm::test {

namespace {

constexpr double kTolerance = 1e-12; // of full scale
const char* const kLoadError = "[B]Load error[/B]";

/// Noise, and silence for as long as the impulse rings.
CSamples excitation(std::size_t noiseCount, std::size_t tapCount)
{
    CSamples in = uniformNoise(noiseCount, 5);
    in.resize(noiseCount + tapCount);
    return in;
}

/// By the product's chain, which tests of its own compare with others.
CSamples resampled(const CSoundChannels& impulse, double rate)
{
    const CSamples& taps = impulse.channels[0];
    if (impulse.rate == rate)
        return taps;
    rsk::CDSPResampler16 chain(impulse.rate, rate, 512, 5.0, 136.45, rsk::EDSPPhase::Linear);
    const double length = static_cast<double>(taps.size()) * rate / impulse.rate;
    return rsk::resample(chain, taps, static_cast<int>(std::lround(length)), 512);
}

TEST_F(ABankedConvolver, EqualsTheDirectSumForEveryImpulse)
{
    for (std::uint32_t id = 1; id <= 8; ++id) {
        SCOPED_TRACE(id);
        set("index", id);
        restart();
        const CSamples taps = resampled(readBankImpulse(id), 44100.0);
        const CSamples in = excitation(1500, taps.size());
        const CSamples expected = convolveDirectly(in, taps, referenceGain({taps}, 44100.0));
        const CChannels out = run({in, in}, 300);
        EXPECT_LT(worstDifference(out[0], expected), kTolerance);
        EXPECT_LT(worstDifference(out[1], expected), kTolerance);
        EXPECT_EQ(addedLatency(), 58);
    }
}

TEST_F(ABankedConvolver, EqualsTheDirectSumAtOtherRates)
{
    for (const double rate : {48000.0, 96000.0, 352800.0})
        for (const std::uint32_t id : {4U, 5U, 8U}) {
            SCOPED_TRACE(testing::Message() << id << " at " << rate);
            set("index", id);
            restart(rate);
            const CSamples taps = resampled(readBankImpulse(id), rate);
            const CSamples in = excitation(100, taps.size());
            EXPECT_LT(
                worstDifference(run(in), convolveDirectly(in, taps, referenceGain({taps}, rate))),
                kTolerance);
        }
}

/// With the pass band of the product's chain; what differs is the slope behind it.
CSamples resampledBySoxr(const CSoundChannels& impulse, double rate)
{
    const CSamples& taps = impulse.channels[0];
    const double length = static_cast<double>(taps.size()) * rate / impulse.rate;
    CSamples out(static_cast<std::size_t>(std::lround(length)));
    CSamples padded = taps;
    padded.resize(taps.size() + 4000);
    const soxr_io_spec_t io = soxr_io_spec(SOXR_FLOAT64_I, SOXR_FLOAT64_I);
    soxr_quality_spec_t quality = soxr_quality_spec(SOXR_VHQ, 0);
    quality.passband_end = 0.95;
    quality.stopband_begin = 1.0;
    std::size_t done = 0;
    EXPECT_EQ(soxr_oneshot(impulse.rate, rate, 1, padded.data(), padded.size(), nullptr, out.data(),
                           out.size(), &done, &io, &quality, nullptr),
              nullptr);
    EXPECT_EQ(done, out.size());
    return out;
}

/// A burst of tones within what any resampler passes, faded in and out.
CSamples audibleBurst(double rate, std::size_t ringing)
{
    constexpr int kCount = 4000;
    CSamples in(kCount + ringing);
    for (int tone = 1; tone <= 64; ++tone) {
        const double step = 2.0 * std::numbers::pi * 300.0 * tone / rate;
        for (int i = 0; i < kCount; ++i)
            in[static_cast<std::size_t>(i)] +=
                std::sin(step * i + tone * tone) *
                (0.5 - 0.5 * std::cos(2.0 * std::numbers::pi * i / kCount)) / 16.0;
    }
    return in;
}

TEST_F(ABankedConvolver, SoundsAsAnotherResamplerWouldHaveIt)
{
    struct CRow {
        std::uint32_t id;
        double rate;
        double tolerance;
    };
    // What impulses have in the slopes' band, just below half of their rate, rings ahead of them
    // after resampling, and is cut there: impulse 6 of a slow tape has nothing there.
    for (const CRow& row :
         {CRow{6, 48000.0, 1e-6}, CRow{6, 96000.0, 1e-6}, CRow{6, 352800.0, 1e-6},
          CRow{8, 48000.0, 5e-4}, CRow{4, 96000.0, 5e-4}, CRow{1, 352800.0, 5e-4}}) {
        SCOPED_TRACE(testing::Message() << row.id << " at " << row.rate);
        set("index", row.id);
        restart(row.rate);
        const CSamples taps = resampledBySoxr(readBankImpulse(row.id), row.rate);
        const CSamples in = audibleBurst(row.rate, taps.size());
        const double gain = referenceGain({taps}, row.rate);
        EXPECT_LT(worstDifference(run(in), convolveDirectly(in, taps, gain)), row.tolerance);
    }
}

TEST_F(ABankedConvolver, PassesTheSignalInTimeWithoutAnImpulse)
{
    const CSamples in = uniformNoise(3000, 1);
    struct CRow {
        double rate;
        int delay;
    };
    for (const CRow& row : {CRow{44100.0, 58}, CRow{48000.0, 63}, CRow{88200.0, 116}}) {
        SCOPED_TRACE(row.rate);
        set("enable", 0.0);
        restart(row.rate);
        EXPECT_EQ(run(in, 100), delayed(in, static_cast<std::size_t>(row.delay)));
        EXPECT_EQ(addedLatency(), row.delay);
        EXPECT_EQ(status(), "Bypass");
        set("enable", 1.0);
        setFile("Default");
        restart(row.rate);
        EXPECT_EQ(run(in, 100), delayed(in, static_cast<std::size_t>(row.delay)));
        EXPECT_EQ(addedLatency(), row.delay);
        EXPECT_EQ(status(), kLoadError);
        set("index", 1.0);
        run(in);
        EXPECT_EQ(addedLatency(), row.delay);
        EXPECT_EQ(status(), "Loaded (44100, 32-bit, 0.102 s)");
    }
    setFormat(4.0); // the delay comes to no sample, and neither does any impulse go with it
    EXPECT_EQ(run(in), CSamples(in.size()));
    EXPECT_EQ(addedLatency(), 0);
}

TEST_F(ABankedConvolver, NeedsItsFileSet)
{
    CPtr<CAudioProcessBase> lost;
    EXPECT_FAILS_WITH(create(lost, "shared::modLost"),
                      "Name attribute 'fileset' refers to a non-existent object "
                      "'shared::paramcvt.real' ('plugin.modLost')");
}

class AnExternalImpulse : public ABankedConvolver,
                          public testing::WithParamInterface<CSoundFileKind> {};

TEST_P(AnExternalImpulse, IsConvolvedChannelByChannel)
{
    const CScratchFolder folder;
    const std::string path = folder / "Impuls in öffentlicher Hand.bin";
    writeSoundFile(path, GetParam(), 2, 4000, true);
    const CSoundChannels impulse = readChannels(path);
    const double gain = referenceGain(impulse.channels, 44100.0);
    setFile(path);
    const CChannels in{uniformNoise(6000, 1), uniformNoise(6000, 2)};
    const CChannels out = run(in);
    for (std::size_t c = 0; c < 2; ++c)
        EXPECT_LT(worstDifference(out[c], convolveDirectly(in[c], impulse.channels[c], gain)),
                  kTolerance);
}

INSTANTIATE_TEST_SUITE_P(Kinds, AnExternalImpulse, testing::ValuesIn(kSoundFileKinds),
                         soundFileTestName);

TEST_F(ABankedConvolver, GivesSurplusChannelsTheFirstOfTheImpulse)
{
    const CScratchFolder folder;
    const CChannels impulse{uniformNoise(50, 1), uniformNoise(50, 2)};
    writeImpulse(folder / "two.wav", impulse);
    setFile(folder / "two.wav");
    restart(44100.0, 3);
    const double gain = referenceGain(impulse, 44100.0);
    const CSamples in = uniformNoise(1000, 3);
    const CChannels out = run({in, in, in});
    EXPECT_LT(worstDifference(out[1], convolveDirectly(in, impulse[1], gain)), kTolerance);
    EXPECT_LT(worstDifference(out[2], convolveDirectly(in, impulse[0], gain)), kTolerance);
    // A mono process loads one channel; one with more then gets the others too.
    restart(44100.0, 1);
    run(CChannels{in});
    restart(44100.0, 2);
    EXPECT_LT(worstDifference(run({in, in})[1], convolveDirectly(in, impulse[1], gain)),
              kTolerance);
}

TEST_F(ABankedConvolver, CutsImpulsesAt15Seconds)
{
    const CScratchFolder folder;
    CSamples impulse(16 * 8000);
    impulse[0] = 1.0;
    impulse[15 * 8000 - 1] = 0.25;
    impulse[15 * 8000] = 0.5;
    writeImpulse(folder / "long.wav", {impulse}, 8000);
    setFile(folder / "long.wav");
    restart(8000.0);
    CSamples in(16 * 8000 + 100);
    in[100] = 1.0;
    const CSamples out = run(in);
    impulse[15 * 8000] = 0.0;
    EXPECT_LT(worstDifference(out, convolveDirectly(in, impulse, referenceGain({impulse}, 8000.0))),
              kTolerance);
    EXPECT_EQ(status(), "Loaded (8000, 64-bit, 16.000 s)");
}

TEST_F(ABankedConvolver, KeepsTheLevelWithinItsLimits)
{
    const CScratchFolder folder;
    const std::string path = folder / "unit.wav";
    const CSamples in = uniformNoise(2000, 1);
    struct CRow {
        double tap;
        double factor;
    };
    for (const CRow& row :
         {CRow{1.0, 1.0}, CRow{-0.25, -1.0}, CRow{1e-3, 1e-3 * std::pow(10.0, 1.5)},
          CRow{1e3, 1e3 * std::pow(10.0, -1.5)}, CRow{0.0, 0.0}}) {
        SCOPED_TRACE(row.tap);
        std::filesystem::remove(path);
        writeImpulse(path, {{row.tap, 0.0, 0.0}});
        setFile(path);
        restart();
        CSamples expected = in;
        for (double& sample : expected)
            sample *= row.factor;
        EXPECT_LT(worstDifference(run(in), expected), kTolerance * std::max(1.0, row.factor));
    }
}

// What can't be loaded

/// An AIFF file of three samples and the rate that stands in these ten bytes.
void writeAiff(const std::string& path, const std::string& rate)
{
    const std::string head("FORM\0\0\0\x34"
                           "AIFFCOMM\0\0\0\x12\0\x01\0\0\0\x03\0\x10",
                           28);
    const std::string data("SSND\0\0\0\x0e\0\0\0\0\0\0\0\0\x40\0\x20\0\x10\0", 22);
    std::ofstream(path, std::ios::binary) << head << rate << data;
}

TEST_F(ABankedConvolver, PassesTheSignalWhenNothingCanBeLoaded)
{
    const CScratchFolder folder;
    const std::string good = folder / "good.wav";
    writeImpulse(good, {{0.5, 0.25}});
    writeImpulse(folder / "empty.wav", {{}});
    writeImpulse(folder / "infinite.wav", {{1.0, std::numeric_limits<double>::infinity()}});
    writeImpulse(folder / "nan.wav", {{1.0, std::nan("")}});
    writeImpulse(folder / "huge.wav", {{1e200, 1e200}});
    writeImpulse(folder / "cut.wav", {CSamples(1000, 0.5)});
    std::filesystem::resize_file(folder / "cut.wav", 4000);
    writeImpulse(folder / "slow.wav", {{1.0, 1.0, 1.0}}, 80);
    writeImpulse(folder / "fast.wav", {{1.0, 1.0, 1.0}}, 30000000);
    writeImpulse(folder / "short.wav", {{1.0}}, 96000); // less than half a sample at 44.1 kHz
    folder.write("text.wav", "This is no sound at all, but longer than a header would be.");
    ASSERT_EQ(mkfifo((folder / "pipe.wav").c_str(), 0600), 0);
    using namespace std::string_literals;
    writeAiff(folder / "zero.aiff", "\0\0\0\0\0\0\0\0\0\0"s);
    writeAiff(folder / "infinite.aiff", "\x7f\xff\0\0\0\0\0\0\0\0"s);
    writeAiff(folder / "negative.aiff", "\xc0\x0e\xac\x44\0\0\0\0\0\0"s);
    writeAiff(folder / "absurd.aiff", "\x7f\xf0\xac\x44\0\0\0\0\0\0"s);
    writeAiff(folder / "good.aiff", "\x40\x0e\xac\x44\0\0\0\0\0\0"s);

    const CSamples in = uniformNoise(400, 1);
    const auto expectError = [&] {
        EXPECT_EQ(run(in), delayed(in, 58));
        EXPECT_EQ(status(), kLoadError);
        EXPECT_EQ(filterCount(), 0);
    };
    for (const char* name : {"absent.wav", "empty.wav", "infinite.wav", "nan.wav", "huge.wav",
                             "cut.wav", "slow.wav", "fast.wav", "short.wav", "text.wav", "pipe.wav",
                             "", "zero.aiff", "infinite.aiff", "negative.aiff", "absurd.aiff"}) {
        SCOPED_TRACE(name);
        setFile(good);
        restart();
        step();
        ASSERT_EQ(status(), "Loaded (44100, 64-bit, 0.000 s)");
        setFile(folder / name);
        expectError();
    }
    for (const char* name : {"", "*", "/dev/zero", "/dev/stdin"}) {
        SCOPED_TRACE(name);
        setFile(good);
        restart();
        step();
        setFile(name);
        expectError();
    }
    for (const double index : {9.0, 256.0}) {
        setFile(good);
        restart();
        step();
        set("index", index);
        expectError();
    }
    setFile(folder / "good.aiff");
    step();
    EXPECT_EQ(status(), "Loaded (44100, 16-bit, 0.000 s)");
}

// Changes while it runs

class ARunningConvolver : public ABankedConvolver {
protected:
    /// Sends noise through until all that was before has rung out, then compares with a fresh one.
    void expectAsIfFresh(double rate, std::size_t ringing)
    {
        const CSamples in = uniformNoise(ringing + 3000, 9);
        const CSamples out = run(in, 100);
        restart(rate);
        EXPECT_LT(worstDifference(out, run(in, 512), ringing), kTolerance);
    }
};

TEST_F(ARunningConvolver, TurnsFromOneImpulseToTheNext)
{
    for (const double next : {2.0, 8.0, 3.0, 3.0, 7.0, 1.0}) {
        SCOPED_TRACE(next);
        run(uniformNoise(5000, 1), 37);
        set("index", next);
        step();
        expectAsIfFresh(44100.0, 26240 + 3 * 4096);
    }
}

TEST_F(ARunningConvolver, PlaysNothingStaleWhenTheRateChanges)
{
    for (const double rate : {352800.0, 48000.0, 88200.0, 44100.0, 8000.0}) {
        SCOPED_TRACE(rate);
        run(uniformNoise(5000, 1), 37);
        setFormat(rate);
        expectAsIfFresh(rate, 0);
    }
}

TEST_F(ARunningConvolver, StartsFromSilenceBehindEachSwitch)
{
    const CSamples in = uniformNoise(3000, 1);
    for (int i = 0; i < 3; ++i) {
        restart();
        run(in, 37);
        set("enable", 0.0);
        EXPECT_EQ(run(in), delayed(in, 58));
        EXPECT_EQ(filterCount(), 0);
        set("enable", 1.0);
        expectAsIfFresh(44100.0, 0);
    }
    process->reset();
    expectAsIfFresh(44100.0, 0);
}

TEST_F(ARunningConvolver, LooksAtAFileAgainWhenItIsChosenAgain)
{
    const CScratchFolder folder;
    const std::string path = folder / "impulse.wav";
    const CSamples in = uniformNoise(500, 1);
    writeImpulse(path, {{1.0}});
    setFile(path);
    EXPECT_LT(worstDifference(run(in), in), kTolerance);
    writeImpulse(path, {{0.0, 1.0}});
    process->reset();
    EXPECT_LT(worstDifference(run(in), in), kTolerance) << "not before";
    set("index", 1.0);
    step();
    set("index", 0.0);
    process->reset();
    takeChanges();
    EXPECT_LT(worstDifference(run(in), delayed(in, 1)), kTolerance);
}

TEST_F(ARunningConvolver, LoadsOnlyWhatHasChanged)
{
    const CScratchFolder folder;
    const std::string path = folder / "impulse.wav";
    writeImpulse(path, {{1.0}});
    setFile(path);
    step();
    std::filesystem::remove(path); // what was loaded stays
    set("enable", 0.75);
    param("filename").setText(0, 0, CString::fromUtf8(path));
    step();
    EXPECT_EQ(filterCount(), 2);
    set("index", 4.0);
    step();
    param("filename").setText(0, 0, "elsewhere"); // of no meaning to an impulse of the bank
    step();
    EXPECT_EQ(status(), "Loaded (44100, 32-bit, 0.102 s)");
}

TEST_F(ARunningConvolver, HoldsNoMoreMemoryAfterManyChanges)
{
    if (countHeapAllocations() < 0)
        GTEST_SKIP() << "the heap is a sanitizer's";
    const auto change = [&](int count) {
        for (int i = 0; i < count; ++i) {
            set("index", 1 + i % 8);
            set("enable", i % 5 == 4 ? 0.0 : 1.0);
            setFormat(i % 3 == 2 ? 88200.0 : 44100.0);
            run(CSamples(600));
        }
        setFormat(44100.0);
        set("index", 1.0);
        set("enable", 1.0);
        run(CSamples(6000));
    };
    const auto bytes = [] {
        const struct mallinfo2 info = mallinfo2();
        return static_cast<double>(info.uordblks + info.hblkhd);
    };
    change(48);
    const double before = bytes();
    change(480);
    EXPECT_LT(bytes() - before, 100e3);
}

TEST_F(ARunningConvolver, TakesNoMemoryInASteadyBlock)
{
    const CSamples in = uniformNoise(4096, 1);
    if (countHeapAllocations() < 0)
        GTEST_SKIP() << "the heap is a sanitizer's";
    for (const double enable : {1.0, 0.0}) {
        set("enable", enable);
        const auto block = [&] {
            CAudioBlockRef blocks[] = {pool.takeFilled(64, 0.5), pool.takeFilled(64, -0.5)};
            for (int c = 0; c < 2; ++c)
                input->put(c, std::move(blocks[c]), 64);
            takeChanges();
            process->process();
            output->process();
            dynamic_cast<CModOutput&>(*output).clear();
        };
        for (int i = 0; i < 100; ++i)
            block();
        const int before = countHeapAllocations();
        for (int i = 0; i < 1000; ++i)
            block();
        EXPECT_EQ(countHeapAllocations(), before);
    }
}

} // namespace

} // namespace tsm::test
