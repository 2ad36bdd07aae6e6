#pragma once

#include "Audio/CAudioParamAllocDef.h"
#include "Audio/CAudioParamDef.h"
#include "Audio/Converters/CAudioParamConverterReal.h"
#include "Audio/Converters/CAudioParamConverterText.h"
#include "Audio/Processes/CBankedImpulseCache.h"
#include "Audio/Processes/CModBankedConvolver.h"
#include "Audio/Processes/CModBankedConvolverDef.h"
#include "Audio/Processes/CModOutput.h"
#include "Audio/Processes/CModOutputDef.h"
#include "Tests/Support/CDocumentBytes.h"
#include "Tests/Support/CProcessHost.h"
#include "Tests/Support/CScratchFolder.h"
#include "Tests/Support/ImpulseReference.h"

#include <optional>
#include <random>

namespace tsm::test {

using CSamples = std::vector<double>;
using CChannels = std::vector<CSamples>;

inline CSamples uniformNoise(std::size_t count, unsigned seed)
{
    std::mt19937 random(seed);
    std::uniform_real_distribution<double> uniform(-1.0, 1.0);
    CSamples samples(count);
    for (double& sample : samples)
        sample = uniform(random);
    return samples;
}

inline CSamples convolveDirectly(const CSamples& in, const CSamples& taps, double gain = 1.0)
{
    CSamples out(in.size());
    for (std::size_t i = 0; i < in.size(); ++i)
        if (in[i] != 0.0)
            for (std::size_t k = 0; k < taps.size() && i + k < in.size(); ++k)
                out[i + k] += gain * in[i] * taps[k];
    return out;
}

inline CSamples delayed(const CSamples& in, std::size_t by)
{
    CSamples out(in.size());
    std::copy(in.begin(), in.end() - static_cast<std::ptrdiff_t>(by),
              out.begin() + static_cast<std::ptrdiff_t>(by));
    return out;
}

inline double worstDifference(const CSamples& a, const CSamples& b, std::size_t from = 0)
{
    double worst = 0.0;
    for (std::size_t i = from; i < a.size(); ++i)
        worst = std::max(worst, std::abs(a[i] - b[i]));
    return worst;
}

/// One convolver with the product's bank between the test and an output, told of its loads by the
/// parameter `status`.
class ABankedConvolver : public AProcessHost {
protected:
    void SetUp() override
    {
        const auto param = [](const char* name, bool isText, const char* initial) {
            return CTestNode{
                "audio:param",
                name,
                {{"converter", isText ? "shared::paramcvt.text" : "shared::paramcvt.real"},
                 {"data-type", isText ? "string" : ""},
                 {"min-values", isText ? "" : "0"},
                 {"max-values", isText ? "" : "256"},
                 {"def-values", initial}},
                {}};
        };
        const auto alloc = [](const char* name, const char* index) {
            return CTestNode{"audio:param-alloc", "", {{"param-name", name}, {"index", index}}, {}};
        };
        const CTestNode converters{
            "core:object",
            "paramcvt",
            {},
            {{"audio:cvt-real", "real", {}, {}}, {"audio:cvt-text", "text", {}, {}}}};
        const CTestNode bank{"fileset", "bank", {{"file", "Impulses/ReelpathImpulses.fs"}}, {}};
        const CTestNode convolver{
            "audio:modBankedConvolver",
            "modTest",
            {{"fileset", "shared::bank"}, {"status-param", "status"}, {"latency", "0.00131519"}},
            {param("index", false, "1"), param("filename", true, "Default"),
             param("enable", false, "1"), param("status", true, ""), alloc("index", "0"),
             alloc("filename", "1"), alloc("enable", "2")}};
        CTestNode lost = convolver;
        lost.name = "modLost";
        lost.attrs[0].second = "shared::paramcvt.real";
        document.emplace(
            "ConvolverTest.xml",
            CDocumentBytes::of(CTestNode{
                "core:object",
                "",
                {},
                {converters, bank, convolver, lost, {"audio:modOutput", "modOutput", {}, {}}}}));
        const CCreatorRow creators[] = {
            creatorRow<CObject>("core:object"),
            creatorRow<CAudioEnv>("audio:audio-env"),
            creatorRow<CAudioParamCollector>("audio:param-collector"),
            creatorRow<CAudioParamDef>("audio:param"),
            creatorRow<CAudioParamAllocDef>("audio:param-alloc"),
            creatorRow<CAudioParamConverterReal>("audio:cvt-real"),
            creatorRow<CAudioParamConverterText>("audio:cvt-text"),
            creatorRow<CFileSetObject>("fileset"),
            creatorRow<CModBankedConvolverDef>("audio:modBankedConvolver"),
            creatorRow<CModOutputDef>("audio:modOutput")};
        application = std::make_unique<CApplication>();
        ASSERT_OK(application->start(creators, static_cast<int>(std::size(creators)),
                                     kResourceTable, "ConvolverTest.xml"));
        ASSERT_OK(application->initRootObject(root, CString()));
        makeHost();
        restart();
    }
    void TearDown() override
    {
        process.reset();
        output.reset();
        ATree::TearDown();
        CBankedImpulseCache::get().clear();
        EXPECT_EQ(CBankedImpulseCache::get().getCount(), 0) << "nothing else holds impulses";
    }

    /// A new convolver, with the parameters as they are, in front of a new output.
    void restart(double rate = 44100.0, int channels = 2)
    {
        process.reset();
        output.reset();
        ASSERT_OK(create(process, "shared::modTest"));
        ASSERT_OK(create(output, "shared::modOutput"));
        input = &CAudioProcessBase::connect(nullptr, 0, *process, 0);
        CAudioProcessBase::connect(process.get(), 0, *output, 0);
        setFormat(rate, channels);
    }
    /// With a latency of 10 in front.
    void setFormat(double rate, int channels = 2)
    {
        CAudioFormat format;
        format.sampleRate = rate;
        for (int i = 0; i < channels; ++i)
            format.add({static_cast<std::uint32_t>(i), 0, 10});
        input->publish(format);
    }
    [[nodiscard]] CAudioParam& param(const char* name) const
    {
        return collector->findOrCreate(CString("plugin.modTest.") + name);
    }
    void set(const char* name, double value) { param(name).setValue(0, 0, value); }
    /// Chooses an external file.
    void setFile(const std::string& path)
    {
        param("filename").setText(0, 0, CString::fromUtf8(path));
        set("index", 0.0);
    }
    /// Sends channels through, in blocks of `blockSize`.
    CChannels run(const CChannels& in, int blockSize = 512)
    {
        CChannels out(in.size());
        for (std::size_t at = 0; at < in[0].size(); at += static_cast<std::size_t>(blockSize)) {
            const auto length =
                static_cast<int>(std::min(in[0].size() - at, static_cast<std::size_t>(blockSize)));
            for (std::size_t c = 0; c < in.size(); ++c)
                put(*input, static_cast<int>(c), in[c].data() + at, length);
            takeChanges();
            process->process();
            output->process();
            for (std::size_t c = 0; c < in.size(); ++c) {
                const double* samples =
                    output->findPort(0)->getChannel(static_cast<int>(c)).buffer.read();
                out[c].insert(out[c].end(), samples, samples + length);
            }
            dynamic_cast<CModOutput&>(*output).clear();
        }
        return out;
    }
    /// The same signal on both channels; gives the first.
    CSamples run(const CSamples& in, int blockSize = 512) { return run({in, in}, blockSize)[0]; }
    /// One block, for what it does to the state.
    void step() { (void)run(CSamples(1)); }

    [[nodiscard]] std::string status() const { return param("status").text(0, 0).toUtf8(); }
    /// What the convolver adds to the latency of 10 in front of it.
    [[nodiscard]] int addedLatency() const
    {
        return output->findPort(0)->getChannel(0).latency - 10;
    }
    [[nodiscard]] int filterCount() const
    {
        return dynamic_cast<CModBankedConvolver&>(*process).getFilterCount();
    }

    std::optional<CTestResource> document;
    CPtr<CAudioProcessBase> process;
    CPtr<CAudioProcessBase> output;
    CAudioLink* input = nullptr;
};

/// Writes channels as a WAV file of 64-bit floats.
inline void writeImpulse(const std::string& path, const CChannels& channels, int rate = 44100)
{
    SF_INFO info{};
    info.samplerate = rate;
    info.channels = static_cast<int>(channels.size());
    info.format = SF_FORMAT_WAV | SF_FORMAT_DOUBLE;
    SNDFILE* file = sf_open(path.c_str(), SFM_WRITE, &info);
    ASSERT_NE(file, nullptr) << path;
    for (std::size_t i = 0; i < channels[0].size(); ++i) {
        CSamples frame;
        for (const CSamples& channel : channels)
            frame.push_back(channel[i]);
        sf_writef_double(file, frame.data(), 1);
    }
    ASSERT_EQ(sf_close(file), 0);
}

} // namespace tsm::test
