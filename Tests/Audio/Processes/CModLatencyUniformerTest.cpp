#include "Tests/Support/CProcessTree.h"

namespace tsm::test {

namespace {

class ALatencyUniformer : public AProcess {
protected:
    void startUniformer(const char* latencies, double rate, int inputLatency)
    {
        startProcess("audio:modLatencyUniformer", {}, {{"latencies", latencies}});
        setFormat({0, 0}, rate, inputLatency);
    }
    /// Where an impulse comes out, and what is reported.
    void expect(int delay, int reported)
    {
        CChannels in(2, std::vector<double>(2000, 0.0));
        in[0][3] = 1.0;
        in[1][7] = -1.0;
        const CChannels out = runAll(in, 300);
        CChannels expected(2, std::vector<double>(2000, 0.0));
        expected[0][static_cast<std::size_t>(delay) + 3] = 1.0;
        expected[1][static_cast<std::size_t>(delay) + 7] = -1.0;
        EXPECT_EQ(out, expected);
        EXPECT_EQ(outputProcess->findPort(0)->getChannel(0).latency, reported);
    }
    std::vector<std::string> complaints() const
    {
        std::vector<std::string> found;
        for (const std::string& line : log.lines)
            if (line.find("LatencyUniformer //") != std::string::npos)
                found.push_back(line);
        return found;
    }
    CLogCollector log;
};

TEST_F(ALatencyUniformer, PadsTheChainToItsFigure)
{
    startUniformer("768000=584", 44100.0, 100);
    expect(484, 584);
    setFormat({0, 0}, 44100.0, 584);
    expect(0, 584);
    setFormat({0, 0}, 768000.0, 0);
    expect(584, 584);
    EXPECT_TRUE(complaints().empty());
}

TEST_F(ALatencyUniformer, TakesTheFirstRateThatReaches)
{
    startUniformer("x=1;0=2;48000=-1;44100;48000.4=5; 50000 = 30;96000=7=8;1000000=9", 49000.4, 0);
    expect(30, 30);
    setFormat({0, 0}, 50000.5, 0);
    expect(7, 7);
}

TEST_F(ALatencyUniformer, PassesAndLogsWhatItCannotPad)
{
    startUniformer("768000=584", 44100.0, 600);
    expect(0, 584);
    setFormat({0, 0}, 768001.0, 20);
    expect(0, 20);
    EXPECT_EQ(complaints(),
              (std::vector<std::string>{
                  "Too high latency 600 at sample rate 44100.000000 in LatencyUniformer "
                  "// plugin.modTest",
                  "Unsupported sample rate 768001.000000 in LatencyUniformer // plugin.modTest"}));
}

} // namespace

} // namespace tsm::test
