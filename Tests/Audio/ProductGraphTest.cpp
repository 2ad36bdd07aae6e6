#include "Audio/CAudioParamFilterBypassOSDef.h"
#include "Audio/Converters/CAudioParamConverterEnum.h"
#include "Audio/Converters/CAudioParamConverterFreq.h"
#include "Audio/Converters/CAudioParamConverterGain.h"
#include "Audio/Converters/CAudioParamConverterPercent.h"
#include "Audio/Converters/CAudioParamConverterText.h"
#include "Audio/Converters/CAudioParamConverterTime.h"
#include "Tests/Support/CGraphTree.h"
#include "Tools/defc/CDefCompiler.h"

namespace tsm::test {

namespace {

using ::testing::ElementsAre;

constexpr int kLate = 120;

class CPassModule : public CAudioModule {
public:
    void processBlock() { getOutput().buffer = getInput(); }
};

/// In place of the tape stage: delays, and says so.
class CLateModule : public CAudioModule {
public:
    void reset() override { history.assign(kLate, 0.0); }
    void update() override { setLatency(kLate); }
    void processBlock()
    {
        CAudioBlockRef out = getPool().take(getBlockLength());
        for (int i = 0; i < getBlockLength(); ++i) {
            history.push_back(getInput().read()[i]);
            out.write()[i] = history.front();
            history.pop_front();
        }
        getOutput().buffer = std::move(out);
    }

private:
    std::deque<double> history = std::deque<double>(kLate, 0.0);
};

/// In place of the bypass: the processed input less the dry one, where there is one.
class CDifferenceModule : public CAudioModule {
public:
    void processBlock()
    {
        const CAudioPort* dry = getProcess().findPort(1);
        getOutput().buffer = getInput();
        if (!dry || dry->getChannelCount() == 0)
            return;
        CAudioBlockRef out = getPool().take(getBlockLength());
        const double* other = dry->getChannel(getChannelIndex()).buffer.read();
        for (int i = 0; i < getBlockLength(); ++i)
            out.write()[i] = getInput().read()[i] - other[i];
        getOutput().buffer = std::move(out);
    }
};

using CPassDef = CTestDef<CAudioProcessTerminal<CPassModule>>;

/// The product's own definition, with stand-ins for the signal code.
class TheProductsGraph : public AGraph {
protected:
    void SetUp() override
    {
        AGraph::SetUp();
        CDefCompiler compiler({});
        std::string compiled;
        compiler.compile(std::string(TSM_DATA_FOLDER) + "/SharedData.xml", compiled);
        ASSERT_TRUE(compiler.getProblems().getLines().empty());
        document.emplace("GraphTest.xml",
                         std::vector<std::uint8_t>(compiled.begin(), compiled.end()));
        start({creatorRow<CObject>("core:object"),
               creatorRow<CAudioEnv>("audio:audio-env"),
               creatorRow<CAudioParamCollector>("audio:param-collector"),
               creatorRow<CAudioParamDef>("audio:param"),
               creatorRow<CAudioParamAllocDef>("audio:param-alloc"),
               creatorRow<CAudioParamRemapDef>("audio:param-remap"),
               creatorRow<CAudioParamFilterBypassOSDef>("audio:param-filter-bypass-os"),
               creatorRow<CAudioParamFilterBypassGroupSoloDef>(
                   "audio:param-filter-bypass-group-solo"),
               creatorRow<CAudioParamConverterEnum>("audio:cvt-enum"),
               creatorRow<CAudioParamConverterFreq>("audio:cvt-freq"),
               creatorRow<CAudioParamConverterGain>("audio:cvt-gain"),
               creatorRow<CAudioParamConverterPercent>("audio:cvt-percent"),
               creatorRow<CAudioParamConverterReal>("audio:cvt-real"),
               creatorRow<CAudioParamConverterText>("audio:cvt-text"),
               creatorRow<CAudioParamConverterTime>("audio:cvt-time"),
               creatorRow<CAudioProcessDef>("audio:process-def"),
               creatorRow<CAudioProcessLinkDef>("audio:process-link"),
               creatorRow<CAudioProcessBypassStateDef>("audio:process-bypass-state"),
               creatorRow<CPassDef>("audio:modNode"),
               creatorRow<CPassDef>("audio:modResampler"),
               creatorRow<CPassDef>("audio:modGain"),
               creatorRow<CTestDef<CAudioProcessTerminal<CLateModule>>>("audio:modReelpath"),
               creatorRow<CPassDef>("audio:modReelpathPost"),
               creatorRow<CPassDef>("audio:modLatencyUniformer"),
               creatorRow<CPassDef>("audio:modBankedConvolver"),
               creatorRow<CTestDef<CAudioProcessTerminal<CDifferenceModule>>>("audio:modBypass"),
               creatorRow<CTestSinkDef>("audio:modMeter"),
               creatorRow<CTestSinkDef>("audio:modOutput")},
              "GraphTest.xml");
        makeHost(false);
        build("modOutput");
        setFormat({0, 0});
        prime({constant(3000, 0.0), constant(3000, 0.0)});
    }
    void runSome() { run(std::vector<CSignal>{ramp(3000), ramp(3000, 7.0)}, 300); }
};

} // namespace

TEST_F(TheProductsGraph, HoldsWhatItsDefaultsAskFor)
{
    runSome();
    EXPECT_THAT(sequence(), ElementsAre("modReelpath", "modOutGain", "modBypass"));
    EXPECT_EQ(sink->getInputLatency(), kLate);
}

TEST_F(TheProductsGraph, KeepsTheDryPathInTime)
{
    runSome();
    EXPECT_EQ(sink->heard[0][0], constant(3000, 0.0));
    EXPECT_EQ(sink->heard[0][1], constant(3000, 0.0));
}

TEST_F(TheProductsGraph, TakesStagesInAndOutByItsStates)
{
    runSome();
    set("oversampling", 2.0);
    runSome();
    EXPECT_THAT(sequence(), ElementsAre("modUpsampler", "modReelpath", "modOutGain",
                                        "modDownsampler", "modBypass"));
    set("io-params.channel-group-solo", 1.0, 3);
    runSome();
    EXPECT_THAT(sequence(), ElementsAre("modUpsampler", "modReelpath", "modOutGain",
                                        "modDownsampler", "modGroupSolo", "modBypass"));
    set("lp-oversampling-enable", 1.0);
    runSome();
    EXPECT_EQ(sequence().back(), "modLatencyUniformer");
    set("lp-oversampling-enable", 0.0);
    set("io-params.channel-group-solo", 0.0, 3);
    set("oversampling", 1.0);
    runSome();
    EXPECT_THAT(sequence(), ElementsAre("modReelpath", "modOutGain", "modBypass"));
}

TEST_F(TheProductsGraph, RunsAMeterWhileItIsWatched)
{
    runSome();
    EXPECT_EQ(child("modMeterIODiff"), nullptr);
    // No document describes this one; who watches the meter does.
    const CAudioParamInfo& alike =
        *collector->find("plugin.modMain.oversampling-bypass")->getInfo();
    collector->find("plugin.modMain.modMeterIODiff-enable")
        ->attachInfo(collector->adoptInfo(alike.cloneAs("plugin.modMain.modMeterIODiff-enable")));
    set("modMeterIODiff-enable", 1.0);
    runSome();
    ASSERT_NE(child("modMeterIODiff"), nullptr);
    EXPECT_EQ(child("modMeterOut"), nullptr);
    auto& heard = child<CTestSink>("modMeterIODiff")->heard;
    for (std::size_t i = kLate; i < 3000; ++i) // before that its delay is still empty
        ASSERT_EQ(heard[0][1][i], heard[1][1][i]) << "the reference is as late as the output";
    set("modMeterIODiff-enable", 0.0);
    runSome();
    EXPECT_EQ(child("modMeterIODiff"), nullptr);
}

} // namespace tsm::test
