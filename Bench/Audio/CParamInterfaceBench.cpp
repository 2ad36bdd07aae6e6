#include "Audio/CAudioEnv.h"
#include "Audio/CAudioInterfaceClient.h"
#include "Audio/CAudioParamCollector.h"
#include "Audio/ProductCreators.h"
#include "Bench/Audio/CBenchWrapper.h"
#include "Bench/Support/Check.h"
#include "Core/CApplication.h"
#include "Core/CStdEventBridge.h"
#include "Other/CParamInterfaceClientConnectorUni.h"
#include "Other/CParamMirror.h"

#include <benchmark/benchmark.h>

#include <atomic>
#include <chrono>
#include <memory>
#include <thread>
#include <vector>

namespace tsm {
namespace {

using CClock = std::chrono::steady_clock;

constexpr int kMessagesPerTick = 32;
constexpr int kBlock = 64;
constexpr double kRate = 48000.0;

/// A running instance, and a client that listens to one parameter.
class CBenchInterface {
public:
    CBenchInterface()
    {
        check(startProduct(application));
        wrapper = CBenchWrapper::make();
        wrapper->setSampleRate(kRate);
        wrapper->startProcessing();
        param = wrapper->getParamCollector().find("plugin.modMain.modReelpath.recgain");

        instanceRoot = &wrapper->getRoot();
        check(application.initRootObject(root, CString()));
        check(root->setAttrPointer("BaseConnectorRootPtr", &instanceRoot, true));
        CStdEventBridge* ui = nullptr;
        check(root->createChild(ui, "ui:ui-event-bridge", "ui", false));
        CAttrMap attrs;
        attrs.setText("base-connector", "plugin.interface-base-connector");
        attrs.setText("timer-tag", "core:object");
        attrs.setText("fps", "60");
        check(ui->createChild(connector, "other:param-interface-client-connector-uni",
                              "interface-client-connector", false, nullptr, &attrs));
        CAttrMap clientAttrs;
        clientAttrs.setText("client-connector", "^interface-client-connector");
        check(ui->createChild(client, "audio:interface-client", "interface-client", false, nullptr,
                              &clientAttrs));
        mirror = std::make_unique<CParamMirror>(*client);
        check(client->listenParam(listener, param->getName(), *mirror));
        check(root->findObjectChecked(timer, "ui.interface-client-connector.timer"));
        tick();
    }
    ~CBenchInterface()
    {
        root.reset();
        wrapper.reset();
    }
    CBenchInterface(const CBenchInterface&) = delete;
    CBenchInterface& operator=(const CBenchInterface&) = delete;

    void change(double value, std::uint32_t step) const
    {
        CAudioParamChange change;
        change.shape = param->getInfo()->shape;
        change.elementCount = 1;
        change.values.add(value);
        check(client->changeParam(listener, step, change));
    }
    void tick() const { check(timer->sendEvent("tick")); }
    /// What the audio thread does, without sound.
    void takeChanges() const
    {
        CAudioParamCollector& collector = wrapper->getParamCollector();
        {
            const CLockScope hold(collector.getEnv()->lock);
            collector.takeQueue();
        }
        collector.applyQueue();
    }

    CApplication application;
    std::unique_ptr<CBenchWrapper> wrapper;
    CAudioParam* param = nullptr;
    CObject* instanceRoot = nullptr;
    CTreePtr<CObject> root;
    CParamInterfaceClientConnectorUni* connector = nullptr;
    CAudioInterfaceClient* client = nullptr;
    CObject* timer = nullptr;
    std::unique_ptr<CParamMirror> mirror;
    std::uint32_t listener = 0;
};

/// The change alone, which all the others contain.
void plainChange(benchmark::State& state)
{
    const CBenchInterface bench;
    double value = 1.0;
    for (auto _ : state) {
        for (int i = 0; i < kMessagesPerTick; ++i)
            bench.param->setValue(0, 0, value = value < 2.0 ? value + 0.001 : 1.0);
        bench.takeChanges();
        state.PauseTiming();
        bench.tick();
        state.ResumeTiming();
    }
    state.SetItemsProcessed(state.iterations() * kMessagesPerTick);
}
BENCHMARK(plainChange);

/// From the client to the base: messages a second.
void changeMessage(benchmark::State& state)
{
    const CBenchInterface bench;
    double value = 1.0;
    std::uint32_t step = 0;
    if (state.range(0))
        check(bench.client->createUndoData(step, "edit"));
    for (auto _ : state) {
        for (int i = 0; i < kMessagesPerTick; ++i)
            bench.change(value = value < 2.0 ? value + 0.001 : 1.0, step);
        bench.takeChanges();
        state.PauseTiming();
        bench.tick();
        state.ResumeTiming();
    }
    state.SetItemsProcessed(state.iterations() * kMessagesPerTick);
}
BENCHMARK(changeMessage)->ArgName("step")->Arg(0)->Arg(1);

/// From the base to the client, at a tick for so many: messages a second.
void echoMessages(benchmark::State& state)
{
    const CBenchInterface bench;
    const auto count = static_cast<int>(state.range(0));
    double value = 1.0;
    for (auto _ : state) {
        state.PauseTiming();
        for (int i = 0; i < count; ++i)
            bench.param->setValue(0, 0, value = value < 2.0 ? value + 0.001 : 1.0);
        bench.takeChanges();
        state.ResumeTiming();
        bench.tick();
    }
    state.SetItemsProcessed(state.iterations() * count);
}
BENCHMARK(echoMessages)->Arg(1)->Arg(32)->Arg(1024);

/// From the call to the beginning of the sub-block that hears it, with sound at its own speed in
/// blocks of 64 samples (1.33 ms). Half a block is what chance alone makes.
void changeToSubBlock(benchmark::State& state)
{
    const CBenchInterface bench;
    std::atomic<bool> isDone = false;
    std::atomic<double> heard = 1.0;
    std::atomic<CClock::rep> heardAt = 0;
    std::thread audio([&] {
        const auto period = std::chrono::duration_cast<CClock::duration>(
            std::chrono::duration<double>(kBlock / kRate));
        std::vector<double> left(kBlock, 0.1);
        std::vector<double> right(kBlock, 0.1);
        const void* inputs[] = {left.data(), right.data()};
        std::vector<double> out(2 * kBlock);
        void* outputs[] = {out.data(), out.data() + kBlock};
        for (auto due = CClock::now(); !isDone; due += period) {
            std::this_thread::sleep_until(due);
            const auto begin = CClock::now();
            bench.wrapper->processBlock(inputs, outputs, kBlock);
            const double value = bench.param->getProcessValues().value(0, 0);
            if (value != heard.load()) {
                heardAt = begin.time_since_epoch().count();
                heard = value;
            }
        }
    });
    double value = 1.0;
    int pause = 0;
    for (auto _ : state) {
        value = value < 2.0 ? value + 0.001 : 1.0;
        pause = (pause + 311) % 1333; // spread over the block
        std::this_thread::sleep_for(std::chrono::microseconds(pause));
        const auto begin = CClock::now();
        bench.change(value, 0);
        while (heard.load() != value)
            std::this_thread::sleep_for(std::chrono::microseconds(50));
        const CClock::duration spent(heardAt.load() - begin.time_since_epoch().count());
        state.SetIterationTime(std::max(0.0, std::chrono::duration<double>(spent).count()));
        bench.tick();
    }
    isDone = true;
    audio.join();
}
BENCHMARK(changeToSubBlock)->UseManualTime()->Iterations(1000)->Unit(benchmark::kMicrosecond);

} // namespace
} // namespace tsm
