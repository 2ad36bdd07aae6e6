#include "Tests/Tools/Support/CToolCommand.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstring>
#include <fstream>
#include <sstream>

namespace tsm {
namespace {

using testing::ContainsRegex;
using testing::HasSubstr;

constexpr std::size_t kLatency = 32;
constexpr std::size_t kTail = 100;

/// The tool with the tests' own plug-in: a gain, late by 32 samples.
class HostCommand : public testing::Test {
protected:
    [[nodiscard]] CCommandResult tell(const std::string& what) const
    {
        return CToolCommand(TSM_HOST_BINARY, {what, "--plugin", TSM_TEST_BUNDLE}).run({});
    }
    [[nodiscard]] std::string bytesOf(const std::string& name) const
    {
        std::ifstream in(command.path(name), std::ios::binary);
        std::ostringstream text;
        text << in.rdbuf();
        return text.str();
    }
    /// Runs without a sound, for states alone.
    [[nodiscard]] CCommandResult save(std::vector<std::string> args, const std::string& name) const
    {
        args.insert(args.end(), {"--save-state", name});
        return command.run(args);
    }

    CToolCommand command{TSM_HOST_BINARY, {"render", "--plugin", TSM_TEST_BUNDLE}};
    CTestSound sound = makeMusic(48000, 2, 3000);
};

/// The sound times a gain, with a tail of silence.
std::vector<double> scaled(const CTestSound& sound, double gain)
{
    std::vector<double> samples;
    for (const double sample : sound.samples)
        samples.push_back(sample * gain);
    samples.resize(samples.size() + kTail * static_cast<std::size_t>(sound.channels), 0.0);
    return samples;
}

TEST_F(HostCommand, TellsWhatThePluginIs)
{
    const CCommandResult info = tell("info");
    ASSERT_EQ(info.status, 0) << info.err;
    for (const char* row :
         {"Vendor +Test Vendor\n", "Class +Test Gain\n",
          "Class id +7E57EFFEC700000000000000000000A1\n", "Version +1\\.2\\.3\n",
          "Audio input +Audio In, 2 channels, main, active\n",
          "Audio input +Sidechain, 2 channels, aux\n", "Samples +32 bits, 64 bits\n",
          "Event input +MIDI In, 1 channels, main, active\n", "Programs +3\n"})
        EXPECT_THAT(info.out, ContainsRegex(row));
    const CCommandResult list = tell("list");
    for (const char* row : {"7 +Gain +0\\.0000 to 1\\.0000 +1\\.0000 +1\\.0000 +automate\n",
                            "8 +Bypass +Off to On +Off +Off +automate,bypass\n",
                            "999 +Program +Unity to Quarter +Unity +Unity +list,program\n"})
        EXPECT_THAT(list.out, ContainsRegex(row));
    EXPECT_EQ(tell("programs").out, "0  Unity\n1  Half\n2  Quarter\n");
}

TEST_F(HostCommand, WritesTheModuleDescriptionThatLiesInTheBundle)
{
    const CCommandResult result = tell("moduleinfo");
    ASSERT_EQ(result.status, 0) << result.err;
    std::ifstream in(TSM_TEST_BUNDLE "/Contents/Resources/moduleinfo.json");
    std::ostringstream text;
    text << in.rdbuf();
    EXPECT_EQ(result.out, text.str());
    EXPECT_THAT(result.out, HasSubstr(R"("CID": "7E57EFFEC700000000000000000000A1")"));
}

TEST_F(HostCommand, AlignsTheSoundAndCarriesTheTail)
{
    EXPECT_EQ(command.render(sound, {"--set", "Gain=0.25"}).samples, scaled(sound, 0.25));
    const CTestSound raw = command.render(sound, {"--raw"});
    ASSERT_EQ(raw.samples.size(), sound.samples.size());
    const std::size_t late = kLatency * 2;
    EXPECT_TRUE(std::all_of(raw.samples.begin(), raw.samples.begin() + late,
                            [](double sample) { return sample == 0.0; }));
    EXPECT_TRUE(std::equal(raw.samples.begin() + late, raw.samples.end(), sound.samples.begin()));
}

TEST_F(HostCommand, TakesMonoAnd32BitSamplesAndAnyBlock)
{
    const CTestSound mono = makeMusic(8000, 1, 500);
    EXPECT_EQ(command.render(mono, {"--set", "Gain=0.5", "--offline"}).samples, scaled(mono, 0.5));
    for (const char* block : {"1", "17", "65536"})
        EXPECT_EQ(command.render(sound, {"--block", block}).samples, scaled(sound, 1.0)) << block;
    const CTestSound single = command.render(sound, {"--single"});
    const std::vector<double> wanted = scaled(sound, 1.0);
    for (std::size_t i = 0; i < wanted.size(); ++i)
        ASSERT_EQ(single.samples[i], static_cast<double>(static_cast<float>(wanted[i]))) << i;
}

TEST_F(HostCommand, AutomatesAtTheExactSample)
{
    const std::size_t at = 1300;
    const std::string time = std::to_string((static_cast<double>(at) + 0.1) / 48000.0);
    for (const char* block : {"512", "100"}) {
        const CTestSound out = command.render(
            sound, {"--block", block, "--automate", "Gain=0:0.5," + time + ":0.25", "--json"});
        for (std::size_t frame = 0; frame < 3000; ++frame)
            ASSERT_EQ(out.at(frame, 1), sound.at(frame, 1) * (frame < at ? 0.5 : 0.25)) << frame;
    }
}

TEST_F(HostCommand, ReportsFromTheHostsSide)
{
    command.writeSound("in.wav", sound);
    const CCommandResult result =
        command.run({"--json", "--set", "Bypass=1", "--automate", "Gain=0:1,0.01:0.125", "--preset",
                     "Half", "in.wav", "out.wav"});
    ASSERT_EQ(result.status, 0) << result.err;
    for (const char* member : {R"("latency": 32,)", R"("tail": 100,)", R"("Bypass": "On")",
                               R"("Gain": "0.1250")", R"("Program": "Half")"})
        EXPECT_THAT(result.out, HasSubstr(member));
}

TEST_F(HostCommand, ChoosesProgramsAndLetsSettingsWin)
{
    EXPECT_EQ(command.render(sound, {"--preset", "Quarter"}).samples, scaled(sound, 0.25));
    EXPECT_EQ(command.render(sound, {"--program", "1"}).samples, scaled(sound, 0.5));
    EXPECT_EQ(command.render(sound, {"--program", "1", "--set", "Gain=0.75"}).samples,
              scaled(sound, 0.75));
}

TEST_F(HostCommand, SavesAndLoadsStates)
{
    ASSERT_EQ(save({"--set", "Gain=0.75"}, "state").status, 0);
    const std::string bytes = bytesOf("state");
    ASSERT_EQ(bytes.size(), 13U);
    EXPECT_EQ(bytes.substr(0, 5), "TGST1");
    EXPECT_EQ(command.render(sound, {"--load-state", "state"}).samples, scaled(sound, 0.75));

    // The same bytes in a preset file, laid out by hand.
    const auto number = [](auto value) {
        return std::string(reinterpret_cast<const char*>(&value), sizeof value);
    };
    const std::string list = "List" + number(std::int32_t{1}) + "Comp" + number(std::int64_t{48}) +
                             number(std::int64_t{13});
    const auto preset = [&](const char* id) {
        return "VST3" + number(std::int32_t{1}) + id + number(std::int64_t{48 + 13}) + bytes + list;
    };
    command.writeBytes("good.vstpreset", preset("7E57EFFEC700000000000000000000A1"));
    command.writeBytes("other.vstpreset", preset("7E57EFFEC700000000000000000000A2"));
    EXPECT_EQ(command.render(sound, {"--vstpreset", "good.vstpreset"}).samples,
              scaled(sound, 0.75));
    const CCommandResult other = save({"--vstpreset", "other.vstpreset"}, "x");
    EXPECT_EQ(other.status, 2);
    EXPECT_THAT(other.err, HasSubstr("another plug-in"));
}

TEST_F(HostCommand, RefusesWithOneLineAndLeavesNothing)
{
    command.writeSound("in.wav", sound);
    command.writeSound("three.wav", makeMusic(44100, 3, 100));
    command.writeBytes("state", "TGST1 and more, but no number of the kind");
    command.writeBytes("short", "TGST1");
    const auto before = command.listFiles();
    struct CRow {
        std::vector<std::string> args;
        const char* message;
    };
    for (const CRow& row : std::vector<CRow>{
             {{"absent.wav", "out.wav"}, "absent.wav"},
             {{"three.wav", "out.wav"}, "3 channels"},
             {{"in.wav", "./in.wav"}, "same file"},
             {{"in.wav"}, "no output file"},
             {{}, "no input file"},
             {{"in.wav", "absent/out.wav"}, "absent/out.wav"},
             {{"in.wav", "out.wav", "--block", "0"}, "--block"},
             {{"in.wav", "out.wav", "--set", "Volume=1"}, "Volume"},
             {{"in.wav", "out.wav", "--set", "Gain"}, "NAME=TEXT"},
             {{"in.wav", "out.wav", "--set", "Gain=loud"}, "loud"},
             {{"in.wav", "out.wav", "--set", "Gain=1.5"}, "takes '1.5' for '1.0000'"},
             {{"in.wav", "out.wav", "--automate", "Gain=0.5"}, "SECONDS:VALUE"},
             {{"in.wav", "out.wav", "--preset", "Loud"}, "Loud"},
             {{"in.wav", "out.wav", "--program", "3"}, "no program 3"},
             {{"in.wav", "out.wav", "--program", "1", "--preset", "Half"}, "exclude"},
             {{"in.wav", "out.wav", "--load-state", "absent"}, "absent"},
             {{"in.wav", "out.wav", "--load-state", "state"}, "refuses the state"},
             {{"in.wav", "out.wav", "--load-state", "short"}, "refuses the state"},
             {{"in.wav", "out.wav", "--vstpreset", "state"}, "no preset file"},
         }) {
        SCOPED_TRACE(testing::PrintToString(row.args));
        const CCommandResult result = command.run(row.args);
        EXPECT_EQ(result.status, 2);
        EXPECT_EQ(result.out, "");
        EXPECT_EQ(std::count(result.err.begin(), result.err.end(), '\n'), 1) << result.err;
        EXPECT_THAT(result.err, HasSubstr(row.message));
        EXPECT_EQ(command.listFiles(), before);
    }
}

TEST_F(HostCommand, NamesAPluginThatItCannotLoad)
{
    const CToolCommand bare(TSM_HOST_BINARY);
    const CCommandResult absent = bare.run({"info", "--plugin", "absent.vst3"});
    EXPECT_EQ(absent.status, 2);
    EXPECT_THAT(absent.err, HasSubstr("absent.vst3"));
    EXPECT_THAT(bare.run({"list", "--plugin", "."}).err, HasSubstr("no plug-in bundle"));
    EXPECT_EQ(bare.run({}).status, 2);
}

using HostCommandThreads = HostCommand;

TEST_F(HostCommandThreads, KeepsAControlThreadBusyWhileSoundRuns)
{
    command.writeSound("in.wav", makeMusic(48000, 2, 48000));
    const CCommandResult result = command.run({"--threads", "--block", "32", "in.wav", "out.wav"});
    EXPECT_EQ(result.status, 0) << result.err;
    EXPECT_THAT(result.err, ContainsRegex("[1-9][0-9]* rounds of the control thread\n"));
}

} // namespace
} // namespace tsm
