#include "Audio/CAudioProcessTerminalBase.h"
#include "Audio/Processes/CModFilterFIRDef.h"
#include "Audio/Processes/CModFilterIIRDef.h"
#include "Audio/Processes/CModOutput.h"
#include "Audio/ProductCreators.h"
#include "Tests/Support/CProcessHost.h"

#include <cmath>
#include <numbers>

namespace tsm {
namespace {

using CSamples = std::vector<double>;

constexpr const char* kSteepUp = "shared::audio.modUpsamplerFilterSteep";
constexpr const char* kSteepDown = "shared::audio.modDownsamplerFilterSteep";
constexpr const char* kSoft = "shared::audio.modResamplerFilterSoft";

/// One filter process, as the product's document defines it, between the test and an output.
class AFilterStage : public test::AProcessHost {
protected:
    void SetUp() override
    {
        application = std::make_unique<CApplication>();
        ASSERT_OK(startProduct(*application));
        ASSERT_OK(application->initRootObject(root, CString()));
        makeHost();
    }
    void TearDown() override
    {
        process.reset();
        output.reset();
        ATree::TearDown();
    }

    /// Starts the filter of that definition, in stereo.
    void startFilter(const CString& path, double rate = 44100.0)
    {
        CAudioProcessDefBase* definition = nullptr;
        ASSERT_OK(root->findObjectChecked(definition, path));
        startFilter(*definition, rate);
    }
    void startFilter(const CAudioProcessDefBase& definition, double rate = 44100.0)
    {
        ASSERT_OK(createProcess(process, definition, context, nullptr, "plugin.modTest"));
        ASSERT_OK(create(output, "shared::audio.modOutput"));
        input = &CAudioProcessBase::connect(nullptr, 0, *process, 0);
        CAudioProcessBase::connect(process.get(), 0, *output, 0);
        setFormat(rate);
    }
    void setFormat(double rate)
    {
        CAudioFormat format;
        format.sampleRate = rate;
        for (std::uint32_t i = 0; i < 2; ++i)
            format.add({i, 0, 10});
        input->publish(format);
    }
    /// The left channel of what comes out, in blocks of 100; the right one gets silence.
    CSamples run(const CSamples& in)
    {
        CSamples out;
        for (std::size_t at = 0; at < in.size(); at += 100) {
            const int length = static_cast<int>(std::min<std::size_t>(100, in.size() - at));
            put(*input, 0, in.data() + at, length);
            put(*input, 1, CSamples(100, 0.0).data(), length);
            takeChanges();
            process->process();
            output->process();
            const CAudioPort& port = *output->findPort(0);
            const double* samples = port.getChannel(0).buffer.read();
            out.insert(out.end(), samples, samples + length);
            for (int i = 0; i < length; ++i)
                EXPECT_EQ(port.getChannel(1).buffer.read()[i], 0.0);
            dynamic_cast<CModOutput&>(*output).clear();
        }
        return out;
    }
    void set(const char* name, double value) { setValue(CString("plugin.modTest.") + name, value); }
    /// What the filter adds to the latency of 10 in front of it.
    int addedLatency()
    {
        (void)run(CSamples(100, 0.0));
        return output->findPort(0)->getChannel(0).latency - 10;
    }
    /// Level of a sine of `cycles` periods a sample behind the filter, in dB.
    double levelDb(double cycles)
    {
        CSamples sine(6000);
        for (std::size_t i = 0; i < sine.size(); ++i)
            sine[i] = std::sin(2.0 * std::numbers::pi * cycles * static_cast<double>(i));
        const CSamples out = run(sine);
        double sum = 0.0;
        for (std::size_t i = 4000; i < out.size(); ++i)
            sum += out[i] * out[i];
        return 10.0 * std::log10(sum / 1000.0);
    }

    CPtr<CAudioProcessBase> process;
    CPtr<CAudioProcessBase> output;
    CAudioLink* input = nullptr;
};

TEST_F(AFilterStage, StopsTheUpperHalfOfItsBand)
{
    struct CRow {
        const char* definition;
        double passHz, stopHz, stopDb; // of a rate of 44.1 kHz; the names tell the half-bands'
    };
    for (const CRow& row :
         {CRow{".flt1", 10000.0, 12900.0, -150.0}, CRow{".flt2", 9000.0, 13500.0, -150.0}})
        for (const char* owner : {kSteepUp, kSteepDown}) {
            SCOPED_TRACE(testing::Message() << owner << row.definition);
            TearDown();
            SetUp();
            startFilter(CString(owner) + row.definition);
            EXPECT_NEAR(levelDb(row.passHz / 44100.0), 0.0, 0.01);
            EXPECT_LT(levelDb(row.stopHz / 44100.0), row.stopDb);
        }
}

TEST_F(AFilterStage, KeepsAConstantAtItsLevel)
{
    startFilter(CString(kSteepUp) + ".flt1");
    const CSamples out = run(CSamples(2000, 0.7));
    for (std::size_t i = 1000; i < out.size(); ++i)
        ASSERT_NEAR(out[i], 0.7, 1e-12);
    EXPECT_EQ(addedLatency(), 0);
}

TEST_F(AFilterStage, OfTapsIsFlatFromAConstantsFirstSample)
{
    startFilter(CString(kSteepUp) + ".flt2");
    const CSamples out = run(CSamples(2000, 0.7));
    // The taps' sum isn't normalized: it misses 1.0 by the stop band's depth.
    for (const double sample : out)
        ASSERT_NEAR(sample, 0.7, 1e-7);
}

TEST_F(AFilterStage, OfTapsReportsItsDelayAndItsBlock)
{
    struct CRow {
        const char* owner;
        int latency;
    };
    for (const CRow& row :
         {CRow{kSteepUp, 330 + 64}, CRow{kSteepDown, 531 + 128}, CRow{kSoft, 32 + 32}})
        for (const double rate : {44100.0, 384000.0}) {
            SCOPED_TRACE(testing::Message() << row.owner << " at " << rate);
            TearDown();
            SetUp();
            startFilter(CString(row.owner) + ".flt2", rate);
            EXPECT_EQ(addedLatency(), row.latency);
            // The response is symmetric about what it reports.
            CSamples impulse(2000, 0.0);
            impulse[0] = 0.0;
            impulse[1] = 1.0;
            const CSamples out = run(impulse);
            const auto middle = static_cast<std::size_t>(row.latency) + 1;
            for (std::size_t i = 1; i < middle; ++i)
                ASSERT_NEAR(out[middle - i], out[middle + i], 1e-14);
            EXPECT_GT(out[middle], 0.49);
        }
}

TEST_F(AFilterStage, FadesToAnotherFilterWithoutAClick)
{
    startFilter(CString(kSteepUp) + ".flt1");
    CSamples sine(3000);
    for (std::size_t i = 0; i < sine.size(); ++i)
        sine[i] = std::sin(0.05 * static_cast<double>(i));
    (void)run(sine);
    set("index", 1.0);
    CSamples next(3000);
    for (std::size_t i = 0; i < next.size(); ++i)
        next[i] = std::sin(0.05 * static_cast<double>(i + sine.size()));
    const CSamples out = run(next);
    // A smooth sine has second differences of 0.05^2; the fresh filter's start lies in the fade's
    // first samples, where it is faint.
    for (std::size_t i = 2; i < out.size(); ++i)
        ASSERT_LT(std::abs(out[i] - 2.0 * out[i - 1] + out[i - 2]), 0.004) << i;
}

TEST_F(AFilterStage, StartsAfreshAtAnotherRate)
{
    startFilter(CString(kSteepUp) + ".flt1");
    CSamples impulse(500, 0.0);
    impulse[0] = 1.0;
    const CSamples first = run(impulse);
    (void)run(CSamples(300, 1.0));
    setFormat(96000.0);
    EXPECT_EQ(run(impulse), first);
    (void)run(CSamples(300, 1.0));
    process->reset();
    EXPECT_EQ(run(impulse), first);
}

TEST_F(AFilterStage, PassesTheSignalWithoutItsArray)
{
    const CSamples signal{0.5, -0.25, 1.0};
    for (const char* tag : {"audio:modFilterIIR", "audio:modFilterFIR"}) {
        SCOPED_TRACE(tag);
        const CLogCollector log;
        CAttrMap attrs;
        attrs.setText("gen-array", "shared::audio.fltarray.none");
        CAudioProcessDefBase* definition = nullptr;
        ASSERT_OK(root->createChild(definition, tag, "modTest", false, nullptr, &attrs));
        startFilter(*definition);
        EXPECT_EQ(run(signal), signal);
        EXPECT_THAT(log.lines,
                    testing::Contains("The 'gen-array' 'shared::audio.fltarray.none' not found. // "
                                      "plugin.modTest"));
        TearDown();
        SetUp();
    }
}

} // namespace
} // namespace tsm
