#pragma once

#include "Audio/CAudioEnv.h"
#include "Audio/CAudioParam.h"
#include "Audio/CAudioWrapper.h"
#include "Audio/ProductCreators.h"
#include "Tests/Support/CTestTree.h"

#include <vector>

namespace tsm {

/// Samples of one channel.
using CChannel = std::vector<double>;

/// An instance whose host is a test: events change parameters by an index table, and are noted.
class CTestWrapper : public CAudioWrapper {
public:
    struct CSeenEvent {
        std::int32_t index;
        double streamSamples; // where the engine stood
    };

    void performEdit(std::int32_t, double) override {}
    void onProgramChange() override {}
    void beginEdit(std::int32_t) override {}
    void endEdit(std::int32_t) override {}
    void onParamEvent(const CParamEvent& event) override
    {
        seenEvents.push_back({event.index, getStreamSamples()});
        if (event.index < static_cast<int>(eventParams.size()))
            eventParams[static_cast<std::size_t>(event.index)]->setValue(0, 0, event.value, this);
    }
    void setLatencyChanged() override
    {
        ++latencyChanges;
        CAudioWrapper::setLatencyChanged();
    }
    /// Samples that have passed through the graph, as far as the rate hasn't changed.
    [[nodiscard]] double getStreamSamples() const
    {
        return getEnvironment().streamTime * getEnvironment().sampleRate;
    }
    [[nodiscard]] CAudioParam& param(const char* name) const
    {
        CAudioParam* found = getParamCollector().find("plugin.modMain." + CString(name));
        EXPECT_NE(found, nullptr) << name;
        return *found;
    }

    std::vector<CAudioParam*> eventParams;
    std::vector<CSeenEvent> seenEvents;
    int latencyChanges = 0;
};

/// The product's application and one instance, with 64-bit channels side by side.
class AnInstance : public testing::Test {
protected:
    void SetUp() override
    {
        ASSERT_OK(startProduct(application));
        makeInstance();
    }
    void TearDown() override { wrapper.reset(); }

    /// A new instance in place of the present one. Its graph stands, at a rate that no test names:
    /// each start at another one makes every module anew.
    void makeInstance()
    {
        wrapper = std::make_unique<CTestWrapper>();
        ASSERT_OK(wrapper->init());
        wrapper->setSampleRate(11025.0);
        wrapper->afterInit();
        wrapper->latencyChanges = 0;
    }
    /// Names the host's format and brings the engine to its first sample.
    void begin(int channels = 1, double rate = 44100.0)
    {
        setFormat(channels, rate);
        wrapper->startProcessing();
    }
    void setFormat(int channels, double rate)
    {
        wrapper->setSampleRate(rate);
        wrapper->setChannelFormat({channels, true, false}, {});
        wrapper->setOutputFormat({channels, true, false});
    }
    void set(const char* name, double real) { wrapper->param(name).setValue(0, 0, real); }

    /// Sends channels through in host blocks of `blockSize`.
    std::vector<CChannel> process(const std::vector<CChannel>& in, int blockSize = 512)
    {
        std::vector<CChannel> out = in;
        const int total = static_cast<int>(in[0].size());
        for (int done = 0; done < total; done += blockSize) {
            std::vector<const void*> inputs;
            std::vector<void*> outputs;
            for (std::size_t c = 0; c < in.size(); ++c) {
                inputs.push_back(in[c].data() + done);
                outputs.push_back(out[c].data() + done);
            }
            wrapper->processBlock(inputs.data(), outputs.data(), std::min(blockSize, total - done));
        }
        return out;
    }
    CChannel process(const CChannel& in, int blockSize = 512)
    {
        return process(std::vector<CChannel>{in}, blockSize)[0];
    }

    CApplication application;
    std::unique_ptr<CTestWrapper> wrapper;
};

} // namespace tsm
