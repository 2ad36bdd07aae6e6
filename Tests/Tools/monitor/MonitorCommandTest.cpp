#include "Tests/Tools/Support/CToolCommand.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <cmath>
#include <fstream>
#include <iterator>
#include <sstream>

namespace tsm {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;

class MonitorCommand : public testing::Test {
protected:
    void SetUp() override { command.writeSound("in.wav", makeMusic(44100, 2, 22050)); }
    CCommandResult run(std::vector<std::string> args) const
    {
        args.insert(args.begin(), "in.wav");
        return command.run(args);
    }
    /// The lines of a text that hold one of these words, without the time.
    static std::vector<std::string> linesWith(const std::string& text,
                                              const std::vector<std::string>& words)
    {
        std::vector<std::string> lines;
        std::istringstream stream(text);
        for (std::string line; std::getline(stream, line);)
            if (std::any_of(words.begin(), words.end(), [&](const std::string& word) {
                    return line.find(word) != std::string::npos;
                }))
                lines.push_back(line.substr(line.find(' ') + 1));
        return lines;
    }

    struct CMeterRow {
        double time = 0.0;
        std::string meter;
        int channel = 0;
        double rms = 0.0;
        double peak = 0.0;
    };
    std::vector<CMeterRow> readRows(const std::string& name) const
    {
        std::vector<CMeterRow> rows;
        std::ifstream stream(command.path(name));
        std::string line;
        std::getline(stream, line);
        EXPECT_EQ(line, "time,meter,channel,rms,peak");
        while (std::getline(stream, line)) {
            std::replace(line.begin(), line.end(), ',', ' ');
            std::istringstream fields(line);
            CMeterRow row;
            fields >> row.time >> row.meter >> row.channel >> row.rms >> row.peak;
            rows.push_back(row);
        }
        return rows;
    }

    CToolCommand command{TSM_MONITOR_BINARY};
};

TEST_F(MonitorCommand, RefusesWithOneLineAndLeavesNothing)
{
    const auto before = command.listFiles();
    struct CRow {
        std::vector<std::string> args;
        const char* message;
    };
    for (const CRow& row :
         std::vector<CRow>{{{"--fps", "0"}, "--fps"},
                           {{"--set", "nothing"}, "NAME=TEXT"},
                           {{"--set", "modReelpath.gain=1"}, "modReelpath.gain"},
                           {{"--script", "absent"}, "absent"},
                           {{"--do", "soon undo"}, "time"},
                           {{"--fast", "--do", "0 set absent 1"}, "absent"},
                           {{"--fast", "--do", "0 set modReelpath.recgain loud"}, "loud"},
                           {{"--fast", "--do", "0 preset None Such"}, "None Such"},
                           {{"--fast", "--csv", "absent/out.csv"}, "absent/out.csv"}}) {
        const CCommandResult result = run(row.args);
        SCOPED_TRACE(row.message);
        EXPECT_EQ(result.status, 2);
        EXPECT_THAT(result.err, HasSubstr(row.message));
        EXPECT_EQ(std::count(result.err.begin(), result.err.end(), '\n'), 1) << result.err;
    }
    EXPECT_EQ(command.run({"absent.wav"}).status, 2);
    EXPECT_EQ(command.run({}).status, 2);
    EXPECT_EQ(command.listFiles(), before);
}

TEST_F(MonitorCommand, IsSilentWithoutATerminal)
{
    const CCommandResult result = run({"--fast"});
    EXPECT_EQ(result.status, 0);
    EXPECT_EQ(result.out + result.err, "");
}

TEST_F(MonitorCommand, SendsAScriptAsMessagesAndHearsWhatBecameOfIt)
{
    command.writeBytes("script", "0.1 gesture modReelpath.recgain 3 6\n"
                                 "0.2 undo\n"
                                 "0.25 redo\n"
                                 "0.3 ab\n"
                                 "0.35 preset Drum Saturator\n");
    const CCommandResult result = run({"--fast", "--messages", "--script", "script"});
    ASSERT_EQ(result.status, 0) << result.err;
    const std::string start = "\"Undo history start\"";
    const std::string gain = start + ", \"Recording gain change\"";
    EXPECT_THAT(linesWith(result.out, {"undo", "exchange", "activate"}),
                ElementsAre("> request-undo-history 1", "< update-undo-history 0 [" + start + "]",
                            "> create-undo-data 65537 \"Recording gain change\" 0 -1",
                            "> submit-undo-data 65537 \"\"",
                            "< update-undo-history 1 [" + gain + "]", "> set-undo-history-pos 0",
                            "< update-undo-history 0 [" + gain + "]", "> set-undo-history-pos 1",
                            "< update-undo-history 1 [" + gain + "]",
                            "> exchange-shadow-preset 65537", HasSubstr("update-undo-history"),
                            "> activate-factory-preset 65537 1", HasSubstr("ROM preset activate")));
    // 3 dB and 6 dB there, and back in the echo.
    const auto changes = linesWith(result.out, {": 1.41253754", ": 1.99526231"});
    ASSERT_GE(changes.size(), 4u);
    EXPECT_THAT(changes[0], testing::StartsWith("> change-param"));
    EXPECT_THAT(changes[1], testing::StartsWith("> change-param"));
    EXPECT_THAT(changes[2], testing::StartsWith("< update-param"));
    EXPECT_THAT(result.out, testing::Not(HasSubstr("damaged")));
    EXPECT_EQ(run({"--fast", "--messages", "--script", "script"}).out, result.out);
}

TEST_F(MonitorCommand, WritesWhatBothMetersSentAtTheirFrames)
{
    command.writeSound("left.wav", makeSound(44100, 2, 2 * 44100, [](std::size_t i, int channel) {
                           return channel == 0 ? 0.5 * std::sin(0.1 * static_cast<double>(i)) : 0.0;
                       }));
    ASSERT_EQ(command.run({"left.wav", "--fast", "--csv", "a.csv", "--plot", "a.png"}).err, "");
    const auto rows = readRows("a.csv");
    for (const char* meter : {"modMeterOut", "modMeterIODiff"}) {
        SCOPED_TRACE(meter);
        std::vector<CMeterRow> left;
        std::vector<CMeterRow> right;
        for (const CMeterRow& row : rows)
            if (row.meter == meter)
                (row.channel == 0 ? left : right).push_back(row);
        const double frames = meter == std::string("modMeterOut") ? 30.0 : 6.0;
        EXPECT_NEAR(static_cast<double>(left.size()), 2.0 * frames, 2.0);
        ASSERT_EQ(left.size(), right.size());
        for (std::size_t i = 1; i < left.size(); ++i) {
            EXPECT_NEAR(left[i].time - left[i - 1].time, 1.0 / frames, 1.0 / 44100.0);
            EXPECT_GE(left[i].peak, left[i].rms);
        }
    }
    // The output's level: about that of the sine on the left, the tape's noise on the right.
    const auto last = [&](int channel) {
        return *std::find_if(rows.rbegin(), rows.rend(), [&](const CMeterRow& row) {
            return row.meter == "modMeterOut" && row.channel == channel;
        });
    };
    EXPECT_GT(last(0).rms, 0.1);
    EXPECT_LT(last(0).peak, 1.0);
    EXPECT_LT(last(1).rms, 0.01);
    std::ifstream picture(command.path("a.png"), std::ios::binary);
    const std::string signature(std::istreambuf_iterator<char>(picture), {});
    EXPECT_THAT(signature, testing::StartsWith("\x89PNG"));
}

TEST_F(MonitorCommand, PlaysInTimeWithTheTimersFramesThreads)
{
    const auto begin = std::chrono::steady_clock::now();
    const CCommandResult result =
        run({"--messages", "--fps", "20", "--do", "0.2 set modReelpath.recgain 3"});
    const std::chrono::duration<double> passed = std::chrono::steady_clock::now() - begin;
    ASSERT_EQ(result.status, 0) << result.err;
    const auto requests = linesWith(result.out, {"request-viz-data"});
    // No more than the timer's, and the last; a busy machine drops some.
    EXPECT_GE(requests.size(), 2u);
    EXPECT_LE(static_cast<double>(requests.size()), 20.0 * passed.count() + 2.0);
    EXPECT_EQ(requests[0], "> request-viz-data 1 20");
    EXPECT_EQ(linesWith(result.out, {"Recording gain change\"]"}).size(), 1u);
}

} // namespace
} // namespace tsm
