#include "Tests/Support/CProcessTree.h"

#include "Audio/CModProcessSeq.h"

namespace tsm::test {

namespace {

CTestNode gain(const char* name, const char* factor)
{
    return {"audio:modGain",
            name,
            {},
            {{"audio:param",
              "gain",
              {{"converter", "shared::audio.paramcvt.real"},
               {"min-values", "-1000"},
               {"max-values", "1000"},
               {"def-values", factor}},
              {}},
             {"audio:param-alloc", "", {{"param-name", "gain"}, {"index", "0"}}, {}}}};
}

/// A resampler whose filters are switches between a gain and nothing, so that the stages show in
/// the level.
class AResampler : public AProcess {
protected:
    void startResampler(bool isUp, double mode)
    {
        others = {{"audio:modInterpolator", "modUpsamplerInterpolator", {}, {}},
                  {"audio:modDecimator", "modDownsamplerDecimator", {}, {}},
                  filter("modUpsamplerFilterSteep", "10"),
                  filter("modDownsamplerFilterSteep", "10"),
                  filter("modResamplerFilterSoft", "100")};
        startProcess("audio:modResampler", {{"mode", mode}, {"host-mode", 0.0}},
                     {{"is-upsampler", isUp ? "true" : "false"}});
        setFormat({0, 1}, 48000.0, 5);
    }
    static CTestNode filter(const char* name, const char* factor)
    {
        return {
            "audio:modProcessSwitch",
            name,
            {{"process-list", "0:.flt1; 1:.flt2"}, {"def-index", "0"}, {"def-child-name", "mod"}},
            {gain("flt1", factor), {"audio:modNode", "flt2", {}, {}}}};
    }
    int chainLength() const { return dynamic_cast<CModProcessSeq&>(*process).getChainLength(); }
    const CAudioPort& out() { return *outputProcess->findPort(0); }
};

TEST_F(AResampler, PutsZerosBetweenDoubledSamples)
{
    startResampler(true, 2.0);
    run({{1.0, -2.0, 3.0}, {4.0, 5.0, 6.0}});
    EXPECT_EQ(chainLength(), 2);
    EXPECT_EQ(samplesOf(out(), 0, 6), (std::vector<double>{20, 0, -40, 0, 60, 0}));
    EXPECT_EQ(samplesOf(out(), 1, 6), (std::vector<double>{80, 0, 100, 0, 120, 0}));
    EXPECT_EQ(out().getSampleRate(), 96000.0);
    EXPECT_EQ(out().getChannel(0).latency, 10);
    EXPECT_EQ(out().getChannel(1).group, 1u);
}

TEST_F(AResampler, KeepsTheSteepFilterNextToTheHostsRate)
{
    startResampler(true, 4.0);
    run({{1.0}, {1.0}});
    EXPECT_EQ(chainLength(), 6);
    EXPECT_EQ(out().getSampleRate(), 384000.0);
    EXPECT_EQ(samplesOf(out(), 0, 8), (std::vector<double>{8e5, 0, 0, 0, 0, 0, 0, 0}));
    set("mode", 2.0);
    run({{1.0}, {1.0}});
    EXPECT_EQ(chainLength(), 2);
    EXPECT_EQ(samplesOf(out(), 0, 2), (std::vector<double>{20, 0})) << "the first pair stays";
    set("mode", 0.0);
    set("host-mode", 2.0);
    run({{1.0}, {1.0}});
    EXPECT_EQ(out().getSampleRate(), 192000.0) << "what the host's mode stands for";
    EXPECT_EQ(samplesOf(out(), 0, 4), (std::vector<double>{4e3, 0, 0, 0}));
    set("mode", 1.0);
    run({{1.0, 2.0}, {1.0, 2.0}});
    EXPECT_EQ(chainLength(), 0);
    EXPECT_EQ(samplesOf(out(), 0, 2), (std::vector<double>{1.0, 2.0}));
}

TEST_F(AResampler, TakesEverySecondSampleAndEvensTheLatency)
{
    startResampler(false, 3.0);
    const std::vector<double> ramp = {1, 2, 3, 4, 5, 6, 7, 8};
    run({ramp, ramp});
    EXPECT_EQ(chainLength(), 4);
    EXPECT_EQ(out().getSampleRate(), 12000.0);
    // 5 samples late are made 6, and 3 behind the first stage are made 4: a sample more each time.
    EXPECT_EQ(out().getChannel(0).latency, 2);
    // Soft and a sample later: 0 1 2 3 by 100; of those 0 2 4 6; steep and a sample later: 0 0 2 4.
    EXPECT_EQ(samplesOf(out(), 0, 2), (std::vector<double>{0, 2000}));
}

TEST_F(AResampler, SwitchesItsFiltersAtOnce)
{
    startResampler(true, 2.0);
    run({{1.0}, {1.0}});
    CAudioParam& index = collector->findOrCreate("plugin.modTest.modFilter.index");
    const CAudioParamInfo& alike = *collector->find("plugin.modTest.mode")->getInfo();
    index.attachInfo(collector->adoptInfo(alike.cloneAs("index")));
    index.setValue(0, 0, 1.0);
    run({{1.0}, {1.0}});
    EXPECT_EQ(samplesOf(out(), 0, 2), (std::vector<double>{2.0, 0.0}));
    index.setValue(0, 0, 77.0); // no item: the default
    run({{1.0}, {1.0}});
    EXPECT_EQ(samplesOf(out(), 0, 2), (std::vector<double>{20.0, 0.0}));
}

} // namespace

} // namespace tsm::test
