#include "Audio/CParamTap.h"
#include "Platform/CThreadId.h"
#include "Tests/Support/CParamTree.h"

#include <atomic>
#include <thread>

namespace tsm {

namespace {

constexpr int kRounds = 3000;

class AudioParamThreads : public AParamTree {
protected:
    /// Runs the work on that many threads while an audio thread takes the queue at full speed.
    template <class Work>
    void runBeside(int threadCount, Work work)
    {
        setProcessing(true);
        std::atomic<bool> isDone = false;
        std::thread audio([&] {
            while (!isDone.load()) {
                takeChanges();
                onBlock();
            }
        });
        std::vector<std::thread> workers;
        for (int i = 0; i < threadCount; ++i)
            workers.emplace_back([&work, i] { work(i); });
        for (std::thread& worker : workers)
            worker.join();
        isDone = true;
        audio.join();
        takeChanges();
    }
    void expectEngineHasModel(const CAudioParam& target)
    {
        const CAudioParamStorage& model = target.getValues();
        const CAudioParamStorage& engine = target.getProcessValues();
        ASSERT_EQ(engine.getGroupCount(), model.getGroupCount());
        for (int group = 0; group < model.getGroupCount(); ++group) {
            ASSERT_EQ(engine.getElementCount(group), model.getElementCount(group));
            for (int i = 0; i < model.getElementCount(group); ++i) {
                if (model.getShape().dataType == EAudioParamType::Number)
                    EXPECT_EQ(engine.value(group, i), model.value(group, i));
                else
                    EXPECT_EQ(engine.text(group, i), model.text(group, i));
            }
        }
    }

    std::function<void()> onBlock = [] {};
};

thread_local std::int32_t hostCaller = -1;

/// Counts by the index, which is the number of the thread that made the change.
class CCountingHost : public CAudioExtParamHostBridge {
public:
    void performEdit(std::int32_t index, double) override
    {
        ++counts[index];
        strangers += index != hostCaller;
    }
    void onProgramChange() override {}
    void beginEdit(std::int32_t) override {}
    void endEdit(std::int32_t) override {}
    int counts[3] = {};
    std::atomic<int> strangers = 0;
};

class CHostTap : public CParamTap {
public:
    void onChangeMade(const void*, const CAudioParam& param, const CAudioParamChange&) override
    {
        param.getCollector().addHostUpdate(*host, hostCaller, param.getValues().value(0, 0));
    }
    CCountingHost* host = nullptr;
};

} // namespace

TEST_F(AudioParamThreads, LeaveModelAndEngineEqual)
{
    CAudioParam& gain = param("gain", {{"def-values", "1,2,3"}});
    CAudioParam& name = param("name", textParam("a,b"));
    std::uint32_t mask = 0;
    bool changed = false;
    const auto subscription = name.subscribe(&mask, &changed);
    onBlock = [&] {
        // The engine's side is its own: reading it needs no lock.
        if (std::exchange(changed, false)) {
            EXPECT_GT(subscription->values->text(0, 0).getLength(), 0);
        }
    };
    runBeside(3, [&](int thread) {
        CAudioParamBatch batch;
        CAudioParamContext context;
        context.batch = &batch;
        for (int i = 0; i < kRounds; ++i) {
            gain.setValue((i + thread) % 3, i % 5, i, nullptr, i % 3 ? nullptr : &context);
            name.setText(0, i % 2, i % 7 ? "short" : "a text that is longer than fits inline",
                         nullptr, i % 2 ? &context : nullptr);
            if (i % 16 == 0)
                collector->queueBatch(batch);
            if (i % 100 == 0)
                gain.reset(kAllParamGroups, -1);
        }
        collector->queueBatch(batch);
    });
    expectEngineHasModel(gain);
    expectEngineHasModel(name);
}

TEST_F(AudioParamThreads, GetFilterResultsWithTheirCauseWithoutBlockingEachOther)
{
    CAudioParam& mode = param("mode", {{"max-values", "4"}, {"is-single-group", "true"}});
    CAudioParam& host = param("host", {{"max-values", "3"}, {"is-single-group", "true"}});
    CAudioParam& bypass = param("bypass", {{"is-single-group", "true"}});
    CAudioParamFilterBypassOSDef* def = nullptr;
    ASSERT_OK(create(def, *definitions, "audio:param-filter-bypass-os", "f",
                     {{"src", "mode,host"}, {"dst", "bypass"}}));
    CPtr<CAudioParamFilter> filter;
    ASSERT_OK(def->makeFilter(filter, nullptr, *collector, "plugin.modMain"));
    takeChanges();
    onBlock = [&] {
        const double m = mode.getProcessValues().value(0, 0);
        const double h = host.getProcessValues().value(0, 0);
        EXPECT_EQ(bypass.getProcessValues().value(0, 0), m != 0.0 ? m == 1.0 : h == 0.0);
    };
    // Each thread begins with another of the filter's parameters.
    runBeside(3, [&](int thread) {
        CAudioParam* const order[] = {&mode, &host, &bypass};
        for (int i = 0; i < kRounds; ++i) {
            if (thread == 2)
                EXPECT_GE(bypass.value(0, 0), 0.0);
            else
                order[thread]->setValue(0, 0, i % 3);
        }
    });
    filter.reset();
}

TEST_F(AudioParamThreads, HearOfEveryChangeInOrder)
{
    CAudioParam& gain = param("gain", {{"max-values", "1e9"}});
    std::vector<double> heard;
    std::atomic<int> inside = 0;
    CListenerRecorder listener([&](CAudioParam&, const CAudioParamChange& change) {
        EXPECT_EQ(inside.fetch_add(1), 0) << "one call at a time";
        heard.push_back(change.values[0]);
        --inside;
    });
    gain.addListener(listener);
    std::atomic<int> next = 0;
    runBeside(3, [&](int) {
        for (int i = 0; i < kRounds; ++i) {
            CAudioParamLock hold(gain);
            gain.setValue(0, 0, next++);
        }
    });
    ASSERT_EQ(heard.size(), 3u * kRounds);
    for (std::size_t i = 0; i < heard.size(); ++i)
        ASSERT_EQ(heard[i], static_cast<double>(i));
}

TEST_F(AudioParamThreads, MayListenAndLeaveDuringChanges)
{
    CAudioParam& gain = param("gain", {});
    std::atomic<int> heard = 0;
    runBeside(3, [&](int thread) {
        for (int i = 0; i < kRounds; ++i) {
            if (thread == 0) {
                gain.setValue(0, 0, i);
                continue;
            }
            CListenerRecorder shortLived([&](CAudioParam&, const CAudioParamChange&) { ++heard; });
            gain.addListener(shortLived);
            gain.setValue(0, 0, i);
        }
    });
    // Whether a short-lived one is told before it leaves is chance; who listens now is told.
    heard = 0;
    CListenerRecorder last([&](CAudioParam&, const CAudioParamChange&) { ++heard; });
    gain.addListener(last);
    gain.setValue(0, 0, 1.0);
    EXPECT_EQ(heard.load(), 1);
}

TEST_F(AudioParamThreads, FindTheSameParameter)
{
    std::atomic<CAudioParam*> found[100] = {};
    runBeside(3, [&](int) {
        for (int i = 0; i < 100; ++i) {
            CAudioParam* made = &param(("p" + std::to_string(i)).c_str());
            CAudioParam* other = found[i].exchange(made);
            EXPECT_TRUE(other == nullptr || other == made);
        }
    });
    EXPECT_EQ(collector->getParamCount(), 100);
}

// Hosts tie an edit to the call that they are in, so each thread tells its own.
TEST_F(AudioParamThreads, TellTheHostOfTheirOwnChangesOnly)
{
    CCountingHost host;
    CHostTap tap;
    tap.host = &host;
    CAudioParam& gain = param("gain", {});
    {
        const CAudioParamLock hold(gain);
        gain.addTap(tap);
    }
    runBeside(3, [&](int worker) {
        hostCaller = worker;
        for (int i = 0; i < kRounds; ++i) {
            const int before = host.counts[worker];
            gain.setValue(0, 0, i);
            EXPECT_EQ(host.counts[worker], before + 1) << "told before the call returns";
        }
    });
    EXPECT_EQ(host.strangers, 0);
    gain.removeTap(tap);
}

TEST_F(AudioParamThreads, LeaveListenersToThoseWhoMayWait)
{
    CAudioParam& gain = param("gain", {});
    std::vector<std::uint32_t> tellers;
    CListenerRecorder listener(
        [&](CAudioParam&, const CAudioParamChange&) { tellers.push_back(currentThreadId()); });
    gain.addListener(listener);
    std::thread engine([&] {
        collector->getUpdates().setRealtimeThread(currentThreadId());
        gain.setValue(0, 0, 1.0);
        collector->getUpdates().setRealtimeThread(0);
    });
    engine.join();
    EXPECT_TRUE(tellers.empty());
    gain.setValue(0, 0, 2.0);
    EXPECT_EQ(tellers, std::vector<std::uint32_t>(2, currentThreadId()));
}

} // namespace tsm
