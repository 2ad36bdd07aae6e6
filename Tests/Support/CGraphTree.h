#pragma once

#include "Audio/CAudioGraphSteps.h"
#include "Audio/CAudioParamDef.h"
#include "Audio/CAudioParamFilterBypassGroupSoloDef.h"
#include "Audio/CAudioParamRemapDef.h"
#include "Audio/CAudioParamSharedStorage.h"
#include "Audio/CAudioProcess.h"
#include "Audio/CAudioProcessBypassStateDef.h"
#include "Audio/CAudioProcessDef.h"
#include "Audio/CAudioProcessLinkDef.h"
#include "Audio/Converters/CAudioParamConverterReal.h"
#include "Tests/Support/CDocumentBytes.h"
#include "Tests/Support/CProcessHost.h"
#include "Tests/Support/CTestModules.h"

#include <optional>

namespace tsm::test {

using CAttrs = std::vector<std::pair<std::string, std::string>>;
using CNodes = std::vector<CTestNode>;
using CSignal = std::vector<double>;

// Words of definition documents.

inline CTestNode node(const char* tag, const char* name, CAttrs attrs = {}, CNodes children = {})
{
    return {tag, name, std::move(attrs), std::move(children)};
}
inline CTestNode link(const char* src, const char* dst, const char* bypassStates = "")
{
    return node("audio:process-link", "",
                {{"src", src}, {"dst", dst}, {"bypass-state-id", bypassStates}});
}
inline CTestNode state(const char* id, const char* param, CAttrs more = {})
{
    more.insert(more.end(), {{"id", id}, {"param", param}});
    return node("audio:process-bypass-state", "", std::move(more));
}
inline CTestNode param(const char* name, const char* value = "0", CAttrs more = {})
{
    more.insert(more.end(), {{"converter", "shared::audio.paramcvt.real"},
                             {"min-values", "-100000"},
                             {"max-values", "100000"},
                             {"def-values", value}});
    return node("audio:param", name, std::move(more));
}
inline CTestNode alloc(const char* index, const char* name, CAttrs more = {})
{
    more.insert(more.end(), {{"index", index}, {"param-name", name}});
    return node("audio:param-alloc", "", std::move(more));
}
/// A gain with a parameter of its own.
inline CTestNode gain(const char* name, const char* value, CAttrs attrs = {})
{
    return node("audio:testGain", name, std::move(attrs),
                {param("gain", value), alloc("0", "gain")});
}
/// A delay whose samples stand in a parameter of its own.
inline CTestNode delay(const char* name, const char* value, CAttrs attrs = {})
{
    return node("audio:testDelay", name, std::move(attrs),
                {param("samples", value), alloc("0", "samples")});
}
inline CTestNode chain(CNodes children, CAttrs attrs = {})
{
    attrs.emplace_back("is-auto-links", "true");
    return node("audio:process-def", "modMain", std::move(attrs), std::move(children));
}
inline CTestNode wired(CNodes children, CAttrs attrs = {})
{
    return node("audio:process-def", "modMain", std::move(attrs), std::move(children));
}

/// A graph made from a document, between the test's signal and a sink.
class AGraph : public AProcessHost {
protected:
    void SetUp() override { moduleCounts = {}; }

    /// Loads the document; `modMain` is the graph's definition.
    void load(CTestNode modMain)
    {
        const CTestNode converters =
            node("core:object", "paramcvt", {}, {node("audio:cvt-real", "real")});
        const CTestNode audio =
            node("core:object", "audio", {},
                 {converters, std::move(modMain), node("audio:testSink", "sink")});
        document.emplace("GraphTest.xml", CDocumentBytes::of(node("core:object", "", {}, {audio})));
        start({creatorRow<CObject>("core:object"),
               creatorRow<CAudioEnv>("audio:audio-env"),
               creatorRow<CAudioParamCollector>("audio:param-collector"),
               creatorRow<CAudioParamDef>("audio:param"),
               creatorRow<CAudioParamAllocDef>("audio:param-alloc"),
               creatorRow<CAudioParamRemapDef>("audio:param-remap"),
               creatorRow<CAudioParamSharedStorage>("audio:param-shared-storage"),
               creatorRow<CAudioParamFilterBypassGroupSoloDef>("audio:testFilter"),
               creatorRow<CAudioParamConverterReal>("audio:cvt-real"),
               creatorRow<CAudioProcessDef>("audio:process-def"),
               creatorRow<CAudioProcessLinkDef>("audio:process-link"),
               creatorRow<CAudioProcessBypassStateDef>("audio:process-bypass-state"),
               creatorRow<CTestSinkDef>("audio:modNode"), // never run
               creatorRow<CTestGainDef>("audio:testGain"),
               creatorRow<CTestDelayDef>("audio:testDelay"),
               creatorRow<CTestGreedyDef>("audio:testGreedy"),
               creatorRow<CTestFailingDef>("audio:testFailing"),
               creatorRow<CTestWholeDef>("audio:testWhole"),
               creatorRow<CTestSeqDef>("audio:testSeq"),
               creatorRow<CTestSinkDef>("audio:testSink")},
              "GraphTest.xml");
        makeHost(false);
    }
    /// Makes the running graph.
    void build(const char* sinkName = "sink")
    {
        ASSERT_OK(create(main, "shared::audio.modMain"));
        ASSERT_OK(create(output, CString("shared::audio.") + sinkName));
        sink = static_cast<CTestSink*>(output.get());
        input = &CAudioProcessBase::connect(nullptr, 0, *main, 0);
        CAudioProcessBase::connect(main.get(), 0, *output, 0);
        setFormat({0});
    }
    void startGraph(CTestNode modMain)
    {
        load(std::move(modMain));
        build();
    }
    void TearDown() override
    {
        endMain();
        output.reset();
        EXPECT_EQ(moduleCounts.alive, 0);
        ATree::TearDown();
        document.reset();
    }
    /// Ends the graph, for another one in the same test.
    void endGraph()
    {
        TearDown();
        SetUp();
    }
    /// One channel for each group named.
    void setFormat(const std::vector<std::uint32_t>& groups, double rate = 44100.0)
    {
        CAudioFormat format;
        format.sampleRate = rate;
        for (std::uint32_t i = 0; i < groups.size(); ++i)
            format.add({i, groups[i], 0});
        input->publish(format);
    }
    void set(const char* name, double value, int group = 0)
    {
        setValue(CString("plugin.modMain.") + name, value, group);
        takeQueue();
    }
    /// Makes the graph and lets the defaults of the parameters, which were made with it, come
    /// through the queue, as the priming passes of an instance do.
    void prime(const std::vector<CSignal>& in)
    {
        run(in);
        takeQueue();
        run(in);
        resetMain();
        moduleCounts.updates = 0;
    }
    /// Sends signals, one for each channel, in sub-blocks of `blockLength`, and gives what has come
    /// out of the channel `channel`.
    CSignal run(const std::vector<CSignal>& in, int blockLength = kMaxSubBlock, int channel = 0)
    {
        sink->heard.clear();
        const int total = static_cast<int>(in.at(0).size());
        for (int at = 0; at < total; at += blockLength)
            runBlock(in, at, std::min(blockLength, total - at));
        return sink->heard[0][static_cast<std::uint32_t>(channel)];
    }
    CSignal run(const CSignal& in, int blockLength = kMaxSubBlock)
    {
        return run(std::vector<CSignal>{in}, blockLength);
    }
    void runBlock(const std::vector<CSignal>& in, int at, int length)
    {
        collector->applyQueue();
        for (std::size_t i = 0; i < in.size(); ++i)
            put(*input, static_cast<int>(i), in[i].data() + at, length);
        steps.run(*main);
        output->process();
    }
    void resetMain()
    {
        steps.forget();
        main->reset();
    }
    void endMain()
    {
        steps.forget();
        main.reset();
    }
    [[nodiscard]] CAudioProcess& graph() const { return static_cast<CAudioProcess&>(*main); }
    template <class Process = CAudioProcessBase>
    [[nodiscard]] Process* child(const char* name) const
    {
        return dynamic_cast<Process*>(graph().findChild(name));
    }
    [[nodiscard]] std::vector<std::string> sequence() const
    {
        std::vector<std::string> names;
        for (const CAudioProcessBase* process : graph().getSequence())
            names.push_back(
                process->getPath().substring(process->getPath().findLast('.') + 1).toUtf8());
        return names;
    }

    std::optional<CTestResource> document;
    CPtr<CAudioProcessBase> main;
    CAudioGraphSteps steps; // of main
    CPtr<CAudioProcessBase> output;
    CTestSink* sink = nullptr;
    CAudioLink* input = nullptr;
};

/// A signal without repetition: a sample tells its place.
inline CSignal ramp(int count, double first = 1.0)
{
    CSignal signal;
    for (int i = 0; i < count; ++i)
        signal.push_back(first + i);
    return signal;
}
inline CSignal constant(int count, double value = 1.0)
{
    return CSignal(static_cast<std::size_t>(count), value);
}
inline CSignal scaled(CSignal signal, double factor)
{
    for (double& sample : signal)
        sample *= factor;
    return signal;
}
/// The signal later by `samples`, over the same length.
inline CSignal delayed(const CSignal& signal, int samples, double before = 0.0)
{
    CSignal out(static_cast<std::size_t>(samples), before);
    out.insert(out.end(), signal.begin(), signal.end());
    out.resize(signal.size());
    return out;
}

} // namespace tsm::test
