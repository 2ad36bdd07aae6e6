#include "Tests/Audio/CTestInstance.h"
#include "Tests/Audio/VST/CComponentRig.h"

#include "Audio/CAudioExtParamList.h"

#include <random>

namespace tsm::test {

namespace {

CComponentRig::CChannels noise(std::size_t count)
{
    std::mt19937 generator(7);
    std::uniform_real_distribution<double> uniform(-0.7, 0.7);
    CComponentRig::CChannels channels(2, std::vector<double>(count));
    for (std::vector<double>& channel : channels)
        for (double& sample : channel)
            sample = uniform(generator);
    return channels;
}

/// A driver of the bare engine that hands events on as the plug-in does.
class CPlainWrapper : public CAudioWrapper {
public:
    void performEdit(std::int32_t, double) override {}
    void onProgramChange() override {}
    void beginEdit(std::int32_t) override {}
    void endEdit(std::int32_t) override {}
    void onParamEvent(const CParamEvent& event) override
    {
        std::ignore = getExtParamList()[event.index].setNormalized(event.value);
    }
};

struct CPoint {
    std::uint32_t place;
    std::int32_t param;
    double value;
};
constexpr CPoint kAutomation[] = {{100, 1, 0.7},  {700, 3, 0.9},  {701, 3, 0.8},
                                  {1500, 9, 0.4}, {1500, 1, 0.2}, {2047, 8, 0.6}};

// The noise of the tape follows one seed, so equal sounds mean equal ways, but for how convolvers
// round: the transforms of each fall on other samples.
void expectSame(const CComponentRig::CChannels& out, const CComponentRig::CChannels& expected)
{
    for (std::size_t c = 0; c < 2; ++c)
        for (std::size_t i = 0; i < expected[c].size(); ++i)
            ASSERT_NEAR(out[c][i], expected[c][i], 1e-14);
}

TEST(TheComponentsSound, IsThatOfTheWrapperToTheSample)
{
    const CComponentRig::CChannels in = noise(4096);
    constexpr std::size_t kBlock = 512;

    CComponentRig rig;
    rig.initialize();
    rig.setUp(48000.0);
    CComponentRig::CChannels out(2);
    for (std::size_t at = 0; at < in[0].size(); at += kBlock) {
        CComponentRig::CChannels block;
        for (const std::vector<double>& channel : in)
            block.emplace_back(channel.begin() + static_cast<std::ptrdiff_t>(at),
                               channel.begin() + static_cast<std::ptrdiff_t>(at + kBlock));
        for (const CPoint& point : kAutomation)
            if (point.place / kBlock == at / kBlock)
                rig.changes->add(static_cast<Steinberg::Vst::ParamID>(point.param),
                                 static_cast<int>(point.place % kBlock), point.value);
        ASSERT_EQ(rig.process(block), Steinberg::kResultOk);
        for (std::size_t i = 0; i < 2; ++i)
            out[i].insert(out[i].end(), block[i].begin(), block[i].end());
    }

    CPlainWrapper wrapper;
    ASSERT_OK(wrapper.init());
    wrapper.afterInit();
    wrapper.setSampleRate(48000.0);
    wrapper.startProcessing();
    wrapper.setChannelFormat({2, true, false}, {});
    wrapper.setOutputFormat({2, true, false});
    CComponentRig::CChannels expected = in;
    for (std::size_t at = 0; at < in[0].size(); at += kBlock) {
        for (const CPoint& point : kAutomation)
            if (point.place / kBlock == at / kBlock)
                wrapper.queueParamEvent(point.place % kBlock, point.param, point.value);
        void* const outputs[] = {expected[0].data() + at, expected[1].data() + at};
        wrapper.processBlock(outputs, outputs, kBlock);
    }
    expectSame(out, expected);
}

TEST(TheComponentsSound, IsTheSameBehindASavedState)
{
    const CComponentRig::CChannels in = noise(3000);
    CComponentRig first;
    first.initialize();
    first.controller->setParamNormalized(1, 0.8);
    first.controller->setParamNormalized(10, 0.4);
    first.controller->setParamNormalized(11, 0.5);
    const std::string saved = first.getState();
    first.setUp(44100.0);
    const CComponentRig::CChannels out = first.processAll(in, 500);

    CComponentRig second;
    second.initialize();
    ASSERT_EQ(second.setState(saved), Steinberg::kResultOk);
    second.setUp(44100.0);
    expectSame(second.processAll(in, 500), out);
}

} // namespace

} // namespace tsm::test
