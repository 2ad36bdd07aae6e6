#include "Tests/Tools/Support/CToolCommand.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <csignal>
#include <thread>

namespace tsm {
namespace {

using testing::ContainsRegex;
using testing::DoubleNear;
using testing::HasSubstr;
using testing::MatchesRegex;
using testing::Pointwise;

class RenderCommand : public testing::Test {
protected:
    CToolCommand command{TSM_RENDER_BINARY};
};

int countLines(const std::string& text)
{
    return static_cast<int>(std::count(text.begin(), text.end(), '\n'));
}

/// Blocks of another length are convolved another way, which rounds otherwise.
constexpr double kRounding = 1e-13;

/// The index of the first sample in which two sounds differ, or their length.
std::size_t firstDifference(const CTestSound& a, const CTestSound& b)
{
    const auto isClose = [](double x, double y) { return std::abs(x - y) < kRounding; };
    return static_cast<std::size_t>(
        std::mismatch(a.samples.begin(), a.samples.end(), b.samples.begin(), isClose).first -
        a.samples.begin());
}

/// The part of a mono sound from `start` on.
std::vector<double> part(const CTestSound& sound, std::size_t start, std::size_t count)
{
    const auto begin = sound.samples.begin() + static_cast<std::ptrdiff_t>(start);
    return {begin, begin + static_cast<std::ptrdiff_t>(count)};
}

TEST_F(RenderCommand, RefusesWithOneLineAndLeavesNothing)
{
    command.writeSound("in.wav", makeMusic(44100, 2, 2000));
    command.writeSound("three.wav", makeMusic(44100, 3, 100));
    command.writeSound("slow.wav", makeMusic(7000, 1, 100));
    command.writeSound("none.wav", makeMusic(44100, 1, 0));
    command.writeBytes("empty.wav", "");
    command.writeBytes("text.wav", "This is no sound at all, but longer than a header would be.");
    command.writeSound("cut.wav", makeMusic(44100, 2, 2000));
    std::filesystem::resize_file(command.path("cut.wav"), 20000);
    const auto before = command.listFiles();

    struct CRow {
        std::vector<std::string> args;
        const char* message;
    };
    for (const CRow& row : std::vector<CRow>{
             {{"absent.wav", "out.wav"}, "absent.wav"},
             {{".", "out.wav"}, "not a regular file"},
             {{"empty.wav", "out.wav"}, "empty"},
             {{"text.wav", "out.wav"}, "text.wav"},
             {{"cut.wav", "out.wav"}, "damaged"},
             {{"none.wav", "out.wav"}, "no sound"},
             {{"three.wav", "out.wav"}, "channels"},
             {{"slow.wav", "out.wav"}, "7000"},
             {{"in.wav", "in.wav"}, "same file"},
             {{"in.wav", "./in.wav"}, "same file"},
             {{"in.wav", "absent/out.wav"}, "absent/out.wav"},
             {{"in.wav", "."}, "not a regular file"},
             {{"in.wav"}, "no output file"},
             {{}, "no input file"},
             {{"in.wav", "out.wav", "--block", "0"}, "--block"},
             {{"in.wav", "out.wav", "--block", "65537"}, "--block"},
             {{"in.wav", "out.wav", "--format", "u8"}, "--format"},
             {{"in.wav", "out.wav", "--no-such"}, "--no-such"},
             {{"in.wav", "out.wav", "--impulse", "absent.wav"}, "absent.wav"},
             {{"in.wav", "out.wav", "--impulse", "text.wav"}, "Unrecognized file type"},
             {{"in.wav", "out.wav", "extra.wav"}, "extra.wav"},
             {{"in.wav", "out.wav", "--set", "modReelpath.gain=1"}, "modReelpath.gain"},
             {{"in.wav", "out.wav", "--set", "modReelpath.recgain"}, "NAME=TEXT"},
             {{"in.wav", "out.wav", "--set", "modReelpath.recgain=loud"}, "loud"},
             {{"in.wav", "out.wav", "--set", "modReelpath.recgain=31"}, "-30.0 to 30.0"},
             {{"in.wav", "out.wav", "--set", "modReelpath.mode=F20"}, "F20"},
             {{"in.wav", "out.wav", "--set", "oversampling=3X"}, "3X"},
             {{"in.wav", "out.wav", "--set", "uicolor-params.palette=1"}, "palette"},
             {{"in.wav", "out.wav", "--automate", "modOutGain.gain=0:0,1"}, "SECONDS:VALUE"},
             {{"in.wav", "out.wav", "--automate", "modOutGain.gain=-1:0"}, "-1:0"},
             {{"in.wav", "out.wav", "--automate", "modOutGain.gain=0:x"}, "x"},
             {{"in.wav", "out.wav", "--automate", "modOutGain.gain=0:13"}, "-12.0 to 12.0"},
             {{"in.wav", "out.wav", "--automate", "instance-name=0:x"}, "instance-name"},
         }) {
        SCOPED_TRACE(testing::PrintToString(row.args));
        const CCommandResult result = command.run(row.args);
        EXPECT_EQ(result.status, 2);
        EXPECT_EQ(result.out, "");
        EXPECT_EQ(countLines(result.err), 1) << result.err;
        EXPECT_THAT(result.err, HasSubstr(row.message));
        EXPECT_EQ(command.listFiles(), before);
    }
}

TEST_F(RenderCommand, TakesItsFileBackWhenItIsStopped)
{
    command.writeSound("in.wav", makeMusic(44100, 2, 44100 * 60));
    const CCommandResult result =
        command.run({"--block", "1", "in.wav", "out.wav"}, [&](int process) {
            // The temporary file is there as soon as the second name is.
            while (command.listFiles().size() < 2)
                std::this_thread::sleep_for(std::chrono::milliseconds(2));
            kill(process, SIGTERM);
        });
    EXPECT_EQ(result.status, 128 + SIGTERM);
    EXPECT_EQ(command.listFiles(), (std::vector<std::string>{"in.wav"}));
}

TEST_F(RenderCommand, ListsEveryParameterOfTheProduct)
{
    const CCommandResult result =
        command.run({"--list", "--set", "modReelpath.recgain=-2.5", "--set", "instance-name=Bus"});
    ASSERT_EQ(result.status, 0) << result.err;
    EXPECT_EQ(countLines(result.out), 1 + 40) << result.out;
    // Name, visual name, range, default, unit, present text.
    for (const char* row :
         {R"(modReelpath\.recgain +Recording gain +-30\.0 to 30\.0 +0\.0 +dB +-2\.5)",
          R"(modReelpath\.saturation +Saturation amount +50\.0 to 100\.0 +100\.0 +% +100\.0)",
          R"(modReelpath\.mode +Feedback mode +F0 to F150 +F0 +F0)",
          R"(bypass-enable +Bypass +Off to On +Off +Off)",
          R"(meter-releasetime +Meter release time +0\.00 to 5000 +750 +ms +750)",
          R"(instance-name +Instance name +Bus)",
          R"(io-params\.out-routing +Out routing +0 to 16 +1,2,0,0,0,0,0,0 +1,2,0,0,0,0,0,0)"})
        EXPECT_THAT(result.out, ContainsRegex(row));
}

TEST_F(RenderCommand, ReportsAsJson)
{
    command.writeSound("in.wav", makeSound(48000, 2, 4800, [](std::size_t frame, int channel) {
                           return channel == 0 ? (frame % 2 == 0 ? 0.5 : -0.5) : 0.0;
                       }));
    const CCommandResult result = command.run({"--json", "--set", "instance-name=a\"b\\c", "--set",
                                               "bypass-enable=On", "in.wav", "out.wav"});
    ASSERT_EQ(result.status, 0) << result.err;
    for (const char* member :
         {R"("rate": 48000,)", R"("channels": 2,)", R"("frames": 4800,)", R"("latency": 71,)",
          R"("tail": 19200,)", R"("block": 512,)", R"("seconds": 0.1)", R"("inputPeak": 0.5,)",
          R"("outputPeak": 0.5,)", R"("bypass-enable": "On")", R"("instance-name": "a\"b\\c")"})
        EXPECT_THAT(result.out, HasSubstr(member));
    const std::size_t rms = result.out.find("\"inputRms\": ");
    ASSERT_NE(rms, std::string::npos);
    EXPECT_NEAR(std::stod(result.out.substr(rms + 12)), 0.5 / std::sqrt(2.0), 1e-12);
    // Every line between the braces is one member, and all but the last end in a comma.
    EXPECT_THAT(result.out,
                MatchesRegex("[{]\n(  \"[A-Za-z]+\": [-+0-9.e]+,\n)+  \"parameters\": [{]\n"
                             "(    \"[A-Za-z.-]+\": \"([^\"\\]|\\\\.)*\",?\n)+  [}]\n[}]\n"));
}

TEST_F(RenderCommand, AlignsTheSoundAndCarriesTheTail)
{
    // Two stages of center + 1 = 3 samples at 44.1 kHz, and the impulse's peak.
    constexpr std::size_t kLatency = 6 + 58;
    constexpr std::size_t kTail = 17640;
    const CTestSound sound = makeMusic(44100, 1, 5000);
    CTestSound padded = sound;
    padded.samples.resize(5000 + kTail + kLatency, 0.0);

    const CTestSound aligned = command.render(sound, {});
    const CTestSound raw = command.render(padded, {"--raw"});
    ASSERT_EQ(aligned.getFrameCount(), 5000 + kTail);
    ASSERT_EQ(raw.getFrameCount(), padded.getFrameCount());
    EXPECT_THAT(aligned.samples,
                Pointwise(DoubleNear(kRounding), part(raw, kLatency, 5000 + kTail)));
    EXPECT_THAT(command.render(sound, {"--raw"}).samples,
                Pointwise(DoubleNear(kRounding), part(raw, 0, 5000)));
}

TEST_F(RenderCommand, TakesAnImpulseFromAFile)
{
    const CTestSound sound = makeMusic(44100, 1, 3000);
    const CTestSound late = command.render(sound, {"--raw", "--set", "modReelpath.cab-enable=Off"});
    CTestSound impulse = makeMusic(44100, 1, 59);
    impulse.samples.assign(59, 0.0);
    impulse.samples[58] = 0.5; // brought to level, it does what stands in when none is on
    command.writeSound("impulse.wav", impulse);
    const CTestSound out = command.render(sound, {"--raw", "--impulse", "impulse.wav"});
    for (std::size_t i = 0; i < out.samples.size(); ++i)
        ASSERT_NEAR(out.samples[i], late.samples[i], 1e-13) << i;

    const CCommandResult saved =
        command.run({"--impulse", "impulse.wav", "--save-state", "state", "in.wav", "out.wav"});
    EXPECT_EQ(saved.status, 0) << saved.err;
    EXPECT_EQ(command.render(sound, {"--raw", "--load-state", "state"}).samples, out.samples);
}

TEST_F(RenderCommand, OversamplesAndKeepsTheUsersSettings)
{
    const CTestSound sound = makeMusic(44100, 1, 3000);
    const CTestSound plain = command.render(sound, {"--set", "oversampling=4X"});
    const CTestSound linear = command.render(sound, {"--set", "oversampling=4X", "--linear-phase"});
    EXPECT_NE(linear.samples, plain.samples);
    // Linear phase is a setting that all sessions share; of a render they hear nothing.
    EXPECT_EQ(command.render(sound, {"--set", "oversampling=4X"}).samples, plain.samples);
    struct CRow {
        std::vector<std::string> options;
        const char* latency;
    };
    for (const CRow& row :
         {CRow{{"--set", "oversampling=8X"}, "\"latency\": 63,"},
          CRow{{"--set", "oversampling=1X", "--linear-phase"}, "\"latency\": 584,"},
          CRow{{"--set", "oversampling=Auto", "--offline"}, "\"latency\": 63,"}}) {
        std::vector<std::string> arguments = row.options;
        arguments.insert(arguments.end(), {"--json", "in.wav", "out.wav"});
        EXPECT_THAT(command.run(arguments).out, HasSubstr(row.latency));
    }
}

TEST_F(RenderCommand, GivesTheInputBackWhenBypassed)
{
    const CTestSound sound = makeMusic(96000, 2, 3000);
    const CTestSound out = command.render(sound, {"--set", "bypass-enable=On"});
    EXPECT_TRUE(std::equal(sound.samples.begin(), sound.samples.end(), out.samples.begin()));
}

TEST_F(RenderCommand, SetsParametersBeforeTheFirstSampleWithoutAFade)
{
    const CTestSound sound = makeMusic(44100, 1, 2000);
    const CTestSound plain = command.render(sound, {"--raw"});
    const CTestSound louder = command.render(sound, {"--raw", "--set", "modOutGain.gain=6"});
    const double factor = std::exp(6.0 / 8.685889638065037);
    for (std::size_t i = 0; i < plain.samples.size(); ++i)
        ASSERT_EQ(louder.samples[i], plain.samples[i] * factor) << i;
    // A change of the stage itself: no trace of the old setting at the beginning either.
    const CTestSound driven = command.render(sound, {"--raw", "--set", "modReelpath.recgain=12"});
    const CTestSound single =
        command.render(sound, {"--raw", "--block", "1", "--set", "modReelpath.recgain=12"});
    EXPECT_THAT(driven.samples, Pointwise(DoubleNear(kRounding), single.samples));
}

TEST_F(RenderCommand, AutomatesAtTheExactSample)
{
    const CTestSound sound = makeMusic(44100, 1, 6000);
    const CTestSound plain = command.render(sound, {"--raw"});
    for (const std::size_t at :
         {std::size_t{100}, std::size_t{511}, std::size_t{512}, std::size_t{3001}}) {
        SCOPED_TRACE(at);
        const std::string time = std::to_string(static_cast<double>(at) / 44100.0 + 1e-6);
        const CTestSound changed =
            command.render(sound, {"--raw", "--automate", "modOutGain.gain=" + time + ":-12"});
        // The fade's first gain is 1, so that the sample after it is the first to differ.
        EXPECT_EQ(firstDifference(plain, changed), at + 1);
        // 662 samples of fade, then the new gain alone.
        const std::size_t settled = at + 662;
        EXPECT_NEAR(changed.at(settled), plain.at(settled) * std::exp(-12.0 / 8.685889638065037),
                    kRounding);
    }
}

TEST_F(RenderCommand, DoesNotDependOnTheHostsBlocks)
{
    const CTestSound sound = makeMusic(48000, 2, 5000);
    const CTestSound expected = command.render(sound, {"--block", "512"});
    for (const char* block : {"1", "17", "64", "1300", "65536"})
        EXPECT_THAT(command.render(sound, {"--block", block}).samples,
                    Pointwise(DoubleNear(kRounding), expected.samples))
            << block;
    const CTestSound single = command.render(sound, {"--single"});
    for (std::size_t i = 0; i < expected.samples.size(); ++i)
        ASSERT_NEAR(single.samples[i], expected.samples[i], 1e-5) << i; // 24 bits in and out
}

TEST_F(RenderCommand, RoundsAndClipsWholeNumberFormats)
{
    command.writeSound("in.wav", makeSound(44100, 1, 4, [](std::size_t frame, int) {
                           return std::vector{0.25 + 0x1p-17, 1.5, -1.5, -0.25 - 0x1p-16}[frame];
                       }));
    const CCommandResult result = command.run(
        {"--json", "--format", "s16", "--set", "bypass-enable=On", "in.wav", "out.wav"});
    ASSERT_EQ(result.status, 0) << result.err;
    const CTestSound out = command.readSound("out.wav");
    EXPECT_EQ(part(out, 0, 4), (std::vector<double>{0.25, 1.0 - 0x1p-15, -1.0, -0.25 - 0x1p-15}));
    EXPECT_THAT(result.out, HasSubstr(R"("clipped": 2)"));
    EXPECT_THAT(result.err, HasSubstr("2 samples"));
}

TEST_F(RenderCommand, WorksFrom8To768KilohertzAndReplacesAnOldFile)
{
    command.writeBytes("out.wav", "old");
    for (const int rate : {8000, 22050, 192000, 768000}) {
        SCOPED_TRACE(rate);
        const CTestSound out = command.render(makeMusic(rate, 2, 3000), {});
        EXPECT_EQ(out.rate, rate);
        EXPECT_EQ(out.getFrameCount(), 3000 + static_cast<std::size_t>(std::lround(0.4 * rate)));
        const double peak = std::abs(
            *std::max_element(out.samples.begin(), out.samples.end(),
                              [](double a, double b) { return std::abs(a) < std::abs(b); }));
        EXPECT_GT(peak, 0.3);
        EXPECT_LT(peak, 3.0);
    }
    EXPECT_EQ(command.listFiles(), (std::vector<std::string>{"in.wav", "out.wav"}));
}

} // namespace
} // namespace tsm
