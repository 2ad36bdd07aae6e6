#pragma once

#include "Audio/CAudioBlockPool.h"
#include "Audio/CAudioParam.h"
#include "Audio/CAudioProcessDefBase.h"
#include "Audio/CAudioProcessTerminal.h"
#include "Audio/CModProcessSeq.h"

#include <algorithm>
#include <deque>
#include <map>
#include <string>
#include <vector>

namespace tsm::test {

/// What test modules have done since the test began.
struct CModuleCounts {
    int made = 0;
    int alive = 0;
    int updates = 0;
    int resets = 0;
    int mostInOneCall = 0;
    std::vector<double> lastValues; // parameters at the last update, all groups
};
inline CModuleCounts moduleCounts;

/// Multiplies by slot 0; at 1.0 the input block itself is the output.
class CTestGainModule : public CAudioModule {
public:
    CTestGainModule()
    {
        ++moduleCounts.made;
        ++moduleCounts.alive;
    }
    ~CTestGainModule() override { --moduleCounts.alive; }
    void registerParams() override { registerParam(0, gain); }
    void reset() override { ++moduleCounts.resets; }
    void update() override
    {
        ++moduleCounts.updates;
        moduleCounts.lastValues.clear();
        for (int group = 0; group < 3; ++group)
            moduleCounts.lastValues.push_back(gain.value(group, getElementIndex(), 1.0));
        factor = gain.value(getGroupIndex(), getElementIndex(), 1.0);
    }
    void processBlock()
    {
        if (factor == 1.0) {
            getOutput().buffer = getInput();
            return;
        }
        CAudioBlockRef out = getPool().take(getBlockLength());
        for (int i = 0; i < getBlockLength(); ++i)
            out.write()[i] = factor * getInput().read()[i];
        getOutput().buffer = std::move(out);
    }

private:
    CAudioModuleParam gain;
    double factor = 1.0;
};

/// Delays by slot 0 in samples, and says so.
class CTestDelayModule : public CAudioModule {
public:
    void registerParams() override { registerParam(0, samples); }
    void reset() override { history.assign(history.size(), 0.0); }
    void update() override
    {
        const auto length = static_cast<std::size_t>(samples.value(getGroupIndex(), 0));
        if (length != history.size())
            history.assign(length, 0.0);
        setLatency(static_cast<int>(length));
    }
    static void processModules(CAudioModule* const* modules, int count)
    {
        moduleCounts.mostInOneCall = std::max(moduleCounts.mostInOneCall, count);
        for (int i = 0; i < count; ++i)
            static_cast<CTestDelayModule*>(modules[i])->delay();
    }

private:
    void delay()
    {
        CAudioBlockRef out = getPool().take(getBlockLength());
        for (int i = 0; i < getBlockLength(); ++i) {
            history.push_back(getInput().read()[i]);
            out.write()[i] = history.front();
            history.pop_front();
        }
        getOutput().buffer = std::move(out);
    }

    CAudioModuleParam samples;
    std::deque<double> history;
};

/// Asks for slots 0 and 3, which documents may leave out.
class CTestGreedyModule : public CAudioModule {
public:
    void registerParams() override
    {
        registerParam(0, first);
        registerParam(3, fourth);
    }
    void processBlock()
    {
        getOutput().buffer = getPool().takeFilled(getBlockLength(), fourth.value(0, 0, 0.25));
    }

private:
    CAudioModuleParam first;
    CAudioModuleParam fourth;
};

/// Works all channels at once: they come out in the opposite order.
class CTestWholeModule : public CAudioModule {
public:
    void processBlock()
    {
        for (int i = 0; i < getInputCount(); ++i)
            getOutput(i).buffer = getInput(getInputCount() - 1 - i);
    }
};

/// A chain of as many of its definition's "unit" as its parameter "length" says; they come in at
/// the front and leave there.
class CTestSeq : public CModProcessSeq {
public:
    CError* init() override
    {
        length = findParam("length").subscribe(&dirtyGroups, getParamsChangedFlag());
        return CModProcessSeq::init();
    }
    void update() override
    {
        const int wanted = static_cast<int>(length->values->value(0, 0));
        while (getChainLength() > wanted)
            removeProcess(0);
        while (getChainLength() < wanted) {
            CPtr<CAudioProcessBase> unit;
            handleError(createProcess(
                unit, dynamic_cast<CAudioProcessDefBase&>(*getDefinition().findChild("unit")),
                getContext(), this, getPath() + ".unit"));
            insertProcess(0, std::move(unit));
        }
        CModProcessSeq::update();
    }

private:
    CAudioParamSubscriptionPtr length;
    std::uint32_t dirtyGroups = 0;
};

/// Keeps all that comes in, unless it is deaf: by port, then channel slot.
class CTestSink : public CAudioProcessBase {
public:
    void update() override
    {
        ++updates;
        formats += getInputsChanged() ? 1 : 0;
    }
    void process() override
    {
        lastLength = 0;
        if (!pull())
            return;
        lastLength = getBlockLength();
        for (const CAudioPort& port : getPorts())
            keep(port);
        releaseInputs();
    }

    std::map<int, std::map<std::uint32_t, std::vector<double>>> heard;
    bool isDeaf = false;
    int lastLength = 0;
    int updates = 0;
    int formats = 0;

private:
    void keep(const CAudioPort& port)
    {
        for (int i = 0; !isDeaf && i < port.getChannelCount(); ++i) {
            const CAudioChannel& channel = port.getChannel(i);
            auto& samples = heard[port.getIndex()][channel.channel];
            const double* block = channel.buffer.read();
            samples.insert(samples.end(), block, block + getBlockLength());
        }
    }
};

/// Refuses to start.
class CTestFailing : public CAudioProcessBase {
public:
    CError* init() override { TSM_FAIL("This process can't start."); }

private:
    [[nodiscard]] const CString& errorContext() const { return getPath(); }
};

template <class Process>
class CTestDef : public CAudioProcessDefBase {
public:
    CAudioProcessBase* createInstance() const override { return new Process; }
};

using CTestGainDef = CTestDef<CAudioProcessTerminal<CTestGainModule>>;
using CTestDelayDef = CTestDef<CAudioProcessTerminal<CTestDelayModule>>;
using CTestGreedyDef = CTestDef<CAudioProcessTerminal<CTestGreedyModule>>;
using CTestWholeDef = CTestDef<CAudioProcessTerminal<CTestWholeModule>>;
using CTestSeqDef = CTestDef<CTestSeq>;
using CTestSinkDef = CTestDef<CTestSink>;
using CTestFailingDef = CTestDef<CTestFailing>;

} // namespace tsm::test
