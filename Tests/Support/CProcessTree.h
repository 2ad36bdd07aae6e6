#pragma once

#include "Audio/CAudioParamAllocDef.h"
#include "Audio/CAudioParamDef.h"
#include "Audio/CAudioProcessTerminalBase.h"
#include "Audio/CAudioVizCollector.h"
#include "Audio/Converters/CAudioParamConverterReal.h"
#include "Audio/Processes/CModBypassDef.h"
#include "Audio/Processes/CModDecimatorDef.h"
#include "Audio/Processes/CModGainDef.h"
#include "Audio/Processes/CModInterpolatorDef.h"
#include "Audio/Processes/CModLatencyUniformerDef.h"
#include "Audio/Processes/CModMeterDef.h"
#include "Audio/Processes/CModNodeDef.h"
#include "Audio/Processes/CModOutput.h"
#include "Audio/Processes/CModOutputDef.h"
#include "Audio/Processes/CModProcessSwitchDef.h"
#include "Audio/Processes/CModReelpathDef.h"
#include "Audio/Processes/CModReelpathPostDef.h"
#include "Audio/Processes/CModResamplerDef.h"
#include "Tests/Support/CDocumentBytes.h"
#include "Tests/Support/CProcessHost.h"

#include <optional>

namespace tsm::test {

/// A parameter with a slot in the modules; it takes any number, as it stands.
struct CTestParam {
    const char* name;
    double initial;
    bool useAllGroups = false;
};

/// One process between the test and an output process, made from a document.
class AProcess : public AProcessHost {
protected:
    using CChannels = std::vector<std::vector<double>>;

    /// Starts a process of that tag, smooth in its updates over 15 ms unless the attributes say
    /// otherwise, with those parameters in the order of their slots.
    void startProcess(const char* tag, const std::vector<CTestParam>& params,
                      const std::vector<std::pair<std::string, std::string>>& attrs = {})
    {
        CTestNode def{
            tag, "modTest", {{"is-smooth-update", "true"}, {"xfade-length", "0.015"}}, {}};
        for (const auto& attr : attrs) {
            std::erase_if(def.attrs,
                          [&](const auto& former) { return former.first == attr.first; });
            def.attrs.push_back(attr);
        }
        for (std::size_t i = 0; i < params.size(); ++i) {
            def.children.push_back(paramNode(params[i]));
            def.children.push_back(allocNode(params[i], i));
        }
        const CTestNode real{"audio:cvt-real", "real", {}, {}};
        const CTestNode converters{"core:object", "paramcvt", {}, {real}};
        const CTestNode output{"audio:modOutput", "modOutput", {}, {}};
        CTestNode vizEnable = paramNode({"param-enable-viz", 0.0});
        vizEnable.attrs.emplace_back("is-global", "true");
        CTestNode audio{"core:object", "audio", {}, {converters, vizEnable, def, output}};
        audio.children.insert(audio.children.end(), others.begin(), others.end());
        document.emplace("ProcessTest.xml",
                         CDocumentBytes::of(CTestNode{"core:object", "", {}, {audio}}));
        start({creatorRow<CObject>("core:object"), creatorRow<CAudioEnv>("audio:audio-env"),
               creatorRow<CAudioParamCollector>("audio:param-collector"),
               creatorRow<CAudioParamDef>("audio:param"),
               creatorRow<CAudioParamAllocDef>("audio:param-alloc"),
               creatorRow<CAudioVizCollector>("audio:viz-collector"),
               creatorRow<CAudioParamConverterReal>("audio:cvt-real"),
               creatorRow<CModBypassDef>("audio:modBypass"),
               creatorRow<CModDecimatorDef>("audio:modDecimator"),
               creatorRow<CModInterpolatorDef>("audio:modInterpolator"),
               creatorRow<CModProcessSwitchDef>("audio:modProcessSwitch"),
               creatorRow<CModResamplerDef>("audio:modResampler"),
               creatorRow<CModGainDef>("audio:modGain"),
               creatorRow<CModLatencyUniformerDef>("audio:modLatencyUniformer"),
               creatorRow<CModMeterDef>("audio:modMeter"), creatorRow<CModNodeDef>("audio:modNode"),
               creatorRow<CModOutputDef>("audio:modOutput"),
               creatorRow<CModReelpathDef>("audio:modReelpath"),
               creatorRow<CModReelpathPostDef>("audio:modReelpathPost")},
              "ProcessTest.xml");
        makeVizCollector(makeHost());
        context.vizCollector = viz;
        ASSERT_OK(create(process, "shared::audio.modTest"));
        ASSERT_OK(create(outputProcess, "shared::audio.modOutput"));
        sink = dynamic_cast<CModOutput*>(outputProcess.get());
        ASSERT_NE(sink, nullptr);
        mainLink = &CAudioProcessBase::connect(nullptr, 0, *process, 0);
        CAudioProcessBase::connect(process.get(), 0, *outputProcess, 0);
    }
    void TearDown() override
    {
        sent.clear();
        process.reset();
        outputProcess.reset();
        ATree::TearDown();
        document.reset();
    }

    /// Channel i of the input belongs to the group at place i.
    void setFormat(const std::vector<std::uint32_t>& groups, double rate = 44100.0, int latency = 0)
    {
        format = {};
        format.sampleRate = rate;
        for (std::uint32_t i = 0; i < groups.size(); ++i)
            format.add({i, groups[i], latency});
        mainLink->publish(format);
        if (dryLink)
            dryLink->publish(format);
    }
    /// Gives the process a second input of the same format.
    void addDryInput()
    {
        dryLink = &CAudioProcessBase::connect(nullptr, 0, *process, 1);
        dryLink->publish(format);
    }
    void set(const char* name, double value, int group = 0)
    {
        setValue(CString("plugin.modTest.") + name, value, group);
    }

    /// One sub-block; the output's channels stay readable. What was sent stands in `sent`.
    const CAudioPort& run(const CChannels& main, const CChannels& dry = {})
    {
        sent.clear();
        sink->clear();
        send(*mainLink, main);
        if (dryLink)
            send(*dryLink, dry);
        takeChanges();
        process->process();
        outputProcess->process();
        return *outputProcess->findPort(0);
    }
    /// Any length, in sub-blocks of `blockLength`.
    CChannels runAll(const CChannels& in, int blockLength)
    {
        CChannels out(in.size());
        for (std::size_t at = 0; at < in[0].size(); at += static_cast<std::size_t>(blockLength)) {
            CChannels block;
            for (const auto& channel : in) {
                const auto from = channel.begin() + static_cast<std::ptrdiff_t>(at);
                const auto left = static_cast<int>(channel.end() - from);
                block.emplace_back(from, from + std::min(blockLength, left));
            }
            const CAudioPort& port = run(block);
            for (int i = 0; i < port.getChannelCount(); ++i) {
                const std::vector<double> samples = samplesOf(port, i, block[0].size());
                auto& whole = out[static_cast<std::size_t>(i)];
                whole.insert(whole.end(), samples.begin(), samples.end());
            }
        }
        return out;
    }
    static std::vector<double> samplesOf(const CAudioPort& port, int channel, std::size_t count)
    {
        const double* samples = port.getChannel(channel).buffer.read();
        return {samples, samples + count};
    }

    /// More definitions beside that of the process.
    std::vector<CTestNode> others;
    std::optional<CTestResource> document;
    CAudioVizCollector* viz = nullptr;
    CPtr<CAudioProcessBase> process;
    CPtr<CAudioProcessBase> outputProcess;
    CModOutput* sink = nullptr;
    CAudioLink* mainLink = nullptr;
    CAudioLink* dryLink = nullptr;
    CAudioFormat format;
    std::vector<CAudioBlockRef> sent;

private:
    static CTestNode paramNode(const CTestParam& param)
    {
        return {"audio:param",
                param.name,
                {{"converter", "shared::audio.paramcvt.real"},
                 {"min-values", "-1000"},
                 {"max-values", "1000"},
                 {"def-values", std::to_string(param.initial)}},
                {}};
    }
    static CTestNode allocNode(const CTestParam& param, std::size_t index)
    {
        return {"audio:param-alloc",
                "",
                {{"param-name", param.name},
                 {"index", std::to_string(index)},
                 {"use-all-groups", param.useAllGroups ? "true" : "false"}},
                {}};
    }
    void makeVizCollector(CObject& plugin)
    {
        CAttrMap attrs;
        attrs["env"].setText("^audio-env");
        attrs["param-collector"].setText("^param-collector");
        ASSERT_OK(plugin.createChild(viz, "audio:viz-collector", "viz-collector", false, &attrs));
    }
    void send(CAudioLink& link, const CChannels& channels)
    {
        for (std::size_t i = 0; i < channels.size(); ++i)
            sent.push_back(put(link, static_cast<int>(i), channels[i].data(),
                               static_cast<int>(channels[i].size())));
    }
};

} // namespace tsm::test
