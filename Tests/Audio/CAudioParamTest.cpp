#include "Audio/CAudioExtParamHostBridge.h"
#include "Tests/Support/CParamTree.h"

namespace tsm {

namespace {

using CStrings = std::vector<std::string>;

/// Writes down the images that a change leaves.
class CUndoRecorder : public CAudioParamUndoRecorder {
public:
    void recordBefore(const CString& paramName, std::int32_t group,
                      const CAudioParamStorage& storage, bool asEmpty) override
    {
        add("before ", paramName, group, storage, asEmpty);
    }
    void recordAfter(const CString& paramName, std::int32_t group,
                     const CAudioParamStorage& storage, bool asEmpty) override
    {
        if (!asEmpty)
            add("after ", paramName, group, storage, asEmpty);
    }
    CStrings lines;

private:
    void add(const char* what, const CString& name, std::int32_t group,
             const CAudioParamStorage& storage, bool asEmpty)
    {
        lines.push_back(what + name.toUtf8() + " g" + std::to_string(group) + " " +
                        (asEmpty ? "empty" : std::to_string(int(storage.value(group, 0)))));
    }
};

class CHostRecorder : public CAudioExtParamHostBridge {
public:
    void performEdit(std::int32_t index, double value) override
    {
        lines.push_back(std::to_string(index) + "=" + std::to_string(value));
    }
    void onProgramChange() override {}
    void beginEdit(std::int32_t) override {}
    void endEdit(std::int32_t) override {}
    CStrings lines;
};

class AParameter : public AParamTree {
protected:
    void SetUp() override
    {
        AParamTree::SetUp();
        gain = &param("gain", {{"def-values", "7,8"}});
        takeChanges();
    }
    const CAudioParamStorage& engine() { return gain->getProcessValues(); }

    CAudioParam* gain = nullptr;
};

} // namespace

TEST_F(AParameter, IsFoundByItsFullName)
{
    EXPECT_EQ(collector->find("plugin.modMain.gain"), gain);
    EXPECT_EQ(collector->find("plugin.modMain.gai"), nullptr);
    EXPECT_EQ(&param("gain"), gain);
}

TEST_F(AParameter, IgnoresChangesUntilItIsDescribed)
{
    CAudioParam& bare = param("bare");
    bare.setValue(0, 0, 3.0);
    bare.setText(0, 0, "x");
    bare.reset(0, -1);
    EXPECT_EQ(bare.value(0, 0, 42.0), 42.0);
    takeChanges();
    EXPECT_EQ(bare.getProcessValues().value(0, 0, 42.0), 42.0);
    bare.attachInfo(infoOf("bare", {{"def-values", "5"}}));
    EXPECT_EQ(bare.value(0, 0, 42.0), 5.0);
}

TEST_F(AParameter, KeepsItsValuesWhenTheSameDescriptionComesAgain)
{
    gain->setValue(0, 0, 3.0);
    CPtr<CAudioParamInfo> again = gain->getInfo()->cloneAs(gain->getInfo()->fullName);
    ASSERT_OK(again->defaults.parseDefValues(*again, "9"));
    gain->attachInfo(collector->adoptInfo(std::move(again)));
    EXPECT_EQ(gain->value(0, 0), 3.0) << "same name and shape";
    gain->attachInfo(infoOf("gain", {{"def-values", "9"}, {"is-single-group", "true"}}));
    EXPECT_EQ(gain->value(0, 0), 9.0) << "another shape";
    takeChanges();
    EXPECT_EQ(engine().value(0, 0), 9.0);
    EXPECT_TRUE(engine().getShape().isSingleGroup);
}

TEST_F(AParameter, FillsAGapWithDefaults)
{
    gain->setValue(1, 3, 5.0);
    takeChanges();
    const double expected[] = {7.0, 8.0, 7.0, 5.0, 7.0};
    for (int i = 0; i < 5; ++i) {
        EXPECT_EQ(gain->value(1, i), expected[i]) << i;
        EXPECT_EQ(engine().value(1, i), expected[i]) << i;
    }
    EXPECT_EQ(engine().getElementCount(1), 4);
    CAudioParam& names = param("names", textParam("a,b"));
    names.setText(0, 4, "e");
    takeChanges();
    EXPECT_EQ(names.getProcessValues().text(0, 1), CString("b"));
    EXPECT_EQ(names.getProcessValues().text(0, 3), CString("a"));
    EXPECT_EQ(names.getProcessValues().text(0, 4), CString("e"));
}

TEST_F(AParameter, GivesAllGroupsAChangeOfAll)
{
    gain->setValue(2, 0, 1.0);
    gain->setValue(kAllParamGroups, 1, 4.0);
    EXPECT_EQ(gain->value(0, 0), 7.0);
    EXPECT_EQ(gain->value(2, 0), 1.0);
    for (const int group : {0, 1, 2, 9})
        EXPECT_EQ(gain->value(group, 1), 4.0) << group;
    const double whole[] = {3.0};
    gain->setValues(kAllParamGroups, 0, whole, 1, nullptr, nullptr, true);
    for (const int group : {0, 1, 2, 9})
        EXPECT_EQ(gain->value(group, 1), 3.0) << group;
}

TEST_F(AParameter, GoesBackToItsDefaults)
{
    const double values[] = {1.0, 2.0, 3.0};
    for (const int group : {0, 1}) {
        gain->setValues(group, 0, values, 3);
        gain->reset(group, 1);
        EXPECT_EQ(gain->value(group, 0), 1.0);
        EXPECT_EQ(gain->value(group, 1), 8.0);
        gain->reset(group, -1);
        EXPECT_EQ(gain->value(group, 0), 7.0);
        EXPECT_EQ(gain->value(group, 2), 7.0);
    }
    gain->setValue(5, 0, 1.0);
    gain->reset(kAllParamGroups, -1);
    EXPECT_EQ(gain->value(5, 0), 7.0);
    CAudioParam& names = param("names", textParam("a,b"));
    names.setText(0, 1, "x");
    names.reset(0, 1);
    EXPECT_EQ(names.text(0, 1), CString("b"));
}

TEST_F(AParameter, RefusesPlacesBeyondTheLimits)
{
    const std::uint64_t serial = gain->getSerial();
    for (const int group : {-1, kMaxParamGroups, 9998, INT32_MIN})
        gain->setValue(group, 0, 1.0);
    for (const int element : {-1, kMaxParamElements, INT32_MAX})
        gain->setValue(0, element, 1.0);
    gain->setText(0, 0, "text");
    CAudioParamChange change;
    change.shape.isSingleElement = true;
    change.values.add(1.0);
    change.elementCount = 1;
    EXPECT_FALSE(gain->applyChange(change)) << "another shape";
    EXPECT_EQ(gain->getSerial(), serial);
}

TEST_F(AParameter, ReachesTheEngineWhenItTakesTheQueue)
{
    setProcessing(true);
    gain->setValue(0, 0, 1.0);
    EXPECT_EQ(engine().value(0, 0), 7.0);
    gain->setValue(0, 0, 2.0);
    takeChanges();
    EXPECT_EQ(engine().value(0, 0), 2.0);
    EXPECT_EQ(engine().value(0, 1), 8.0);
}

TEST_F(AParameter, ShowsABatchToTheEngineAtOnce)
{
    setProcessing(true);
    CAudioParam& other = param("other", {});
    takeChanges();
    CAudioParamBatch batch;
    CAudioParamContext context;
    context.batch = &batch;
    gain->setValue(0, 0, 1.0, nullptr, &context);
    takeChanges();
    EXPECT_EQ(engine().value(0, 0), 7.0);
    other.setValue(0, 0, 2.0, nullptr, &context);
    collector->queueBatch(batch);
    EXPECT_TRUE(batch.isEmpty());
    takeChanges();
    EXPECT_EQ(engine().value(0, 0), 1.0);
    EXPECT_EQ(other.getProcessValues().value(0, 0), 2.0);
}

TEST_F(AParameter, EndsWithTheModelsValueWhenABatchComesLate)
{
    setProcessing(true);
    CAudioParamBatch batch;
    CAudioParamContext context;
    context.batch = &batch;
    gain->setValue(0, 0, 1.0, nullptr, &context);
    gain->setValue(0, 0, 2.0); // as another thread's, beside the batch
    collector->queueBatch(batch);
    takeChanges();
    EXPECT_EQ(gain->value(0, 0), 2.0);
    EXPECT_EQ(engine().value(0, 0), 2.0);
}

TEST_F(AParameter, MarksWhatASubscriptionMatches)
{
    struct CRow {
        int group; // subscribed
        int element;
        int changeGroup;
        int first;
        int count;
        bool complete;
        std::uint32_t mask; // 0: no match
    };
    const CRow rows[] = {
        {-1, -1, 2, 0, 1, false, 4},
        {1, -1, 2, 0, 1, false, 0},
        {2, -1, 2, 5, 1, false, 4},
        {2, 1, 2, 1, 1, false, 4},
        {2, 1, 2, 0, 1, false, 0},
        {2, 1, 2, 0, 2, false, 4},
        {2, 1, 2, 2, 1, false, 0},
        {2, 9, 2, 0, 1, true, 4},
        {-1, 3, 0, 0, 3, false, 0},
        {1, 5, kAllParamGroups, 0, 1, false, ~0u},
        {-1, -1, kAllParamGroups, 0, 1, true, ~0u},
    };
    for (const CRow& row : rows) {
        SCOPED_TRACE(&row - rows);
        std::uint32_t mask = 0;
        bool changed = false;
        auto subscription = gain->subscribe(&mask, &changed, row.group, row.element);
        mask = 0;
        const double values[] = {1.0, 2.0, 3.0};
        gain->setValues(row.changeGroup, row.first, values, row.count, nullptr, nullptr,
                        row.complete);
        takeChanges();
        EXPECT_EQ(mask, row.mask);
        EXPECT_EQ(changed, row.mask != 0);
    }
}

TEST_F(AParameter, MarksEverySubscriberWhereThereIsOnlyOnePlace)
{
    CAudioParam& mode = param("mode", {{"is-single-group", "true"}, {"is-single-element", "true"}});
    takeChanges();
    std::uint32_t mask = 0;
    bool changed = false;
    auto subscription = mode.subscribe(&mask, &changed, 3, 4);
    EXPECT_EQ(mask, 8u) << "the group asked for, at once";
    mask = 0;
    mode.setValue(2, 1, 1.0);
    takeChanges();
    EXPECT_TRUE(changed);
    EXPECT_EQ(mask, 1u);
    EXPECT_EQ(subscription->values->value(3, 4), 1.0);
    subscription.reset();
    changed = false;
    mode.setValue(0, 0, 2.0);
    takeChanges();
    EXPECT_FALSE(changed);
}

TEST_F(AParameter, IsThereForAnEarlySubscriber)
{
    CAudioParam& fresh = param("fresh", {{"def-values", "1;2;3"}});
    std::uint32_t mask = 0;
    bool changed = false;
    auto subscription = fresh.subscribe(&mask, &changed);
    EXPECT_EQ(mask, 7u) << "three groups hold values";
    EXPECT_EQ(subscription->values->value(2, 0), 3.0) << "before the queue was taken";
    takeChanges();
    EXPECT_TRUE(changed);
    EXPECT_EQ(subscription->values->value(2, 0), 3.0);
    EXPECT_EQ(subscription->values->value(5, 0), 1.0);
}

TEST_F(AParameter, TellsItsListenersInOrderWhenTheLocksAreGone)
{
    CStrings heard;
    const auto note = [&](const char* who) {
        return [&heard, who](CAudioParam&, const CAudioParamChange& change) {
            heard.push_back(who + std::to_string(int(change.values[0])));
        };
    };
    CListenerRecorder first(note("a"));
    CListenerRecorder second(note("b"));
    gain->addListener(first);
    gain->addListener(second);
    {
        CAudioParamLock hold(*gain);
        gain->setValue(0, 0, 1.0, this);
        gain->setValue(0, 0, 2.0);
        EXPECT_TRUE(heard.empty());
    }
    EXPECT_EQ(heard, (CStrings{"a1", "b1", "a2", "b2"}));
    heard.clear();
    {
        CAudioParamHold hold(*collector);
        gain->setValue(0, 0, 3.0);
        EXPECT_TRUE(heard.empty());
        second.attach(nullptr);
    }
    EXPECT_EQ(heard, (CStrings{"a3"}));
    EXPECT_EQ(first.lastSource, nullptr);
    gain->setValue(0, 0, 4.0, this);
    EXPECT_EQ(first.lastSource, this);
}

TEST_F(AParameter, MayBeSetByAListener)
{
    CAudioParam& other = param("other", {});
    CStrings heard;
    CListenerRecorder follower([&](CAudioParam&, const CAudioParamChange& change) {
        heard.push_back("gain" + std::to_string(int(change.values[0])));
        other.setValue(0, 0, change.values[0]);
        if (change.values[0] < 3.0)
            gain->setValue(0, 0, change.values[0] + 1.0);
    });
    CListenerRecorder watcher([&](CAudioParam&, const CAudioParamChange& change) {
        heard.push_back("other" + std::to_string(int(change.values[0])));
    });
    gain->addListener(follower);
    other.addListener(watcher);
    gain->setValue(0, 0, 1.0);
    EXPECT_EQ(heard, (CStrings{"gain1", "other1", "gain2", "other2", "gain3", "other3"}));
}

TEST_F(AParameter, TellsTheHostBehindTheTransaction)
{
    CHostRecorder host;
    CListenerRecorder listener([&](CAudioParam& changed, const CAudioParamChange&) {
        collector->addHostUpdate(host, 3, changed.value(0, 0));
    });
    gain->addListener(listener);
    {
        CAudioParamLock hold(*gain);
        collector->addHostUpdate(host, 1, 0.5);
        gain->setValue(0, 0, 1.0);
        EXPECT_TRUE(host.lines.empty());
    }
    EXPECT_EQ(host.lines, (CStrings{"1=0.500000", "3=1.000000"}));
}

TEST_F(AParameter, LeavesImagesOfStoredParametersOnly)
{
    CUndoRecorder undo;
    CAudioParamContext context;
    context.undo = &undo;
    gain->setValue(0, 0, 1.0, nullptr, &context);
    gain->setValue(1, 0, 2.0, nullptr, &context);
    CAudioParam& global = param("global", {{"is-storable", "false"}, {"is-global", "true"}});
    global.setValue(0, 0, 1.0, nullptr, &context);
    EXPECT_EQ(undo.lines,
              (CStrings{"before plugin.modMain.gain g0 7", "after plugin.modMain.gain g0 1",
                        "before plugin.modMain.gain g1 empty", "after plugin.modMain.gain g1 2"}));
    undo.lines.clear();
    gain->reset(kAllParamGroups, -1, nullptr, &context);
    EXPECT_EQ(undo.lines,
              (CStrings{"before plugin.modMain.gain g0 1", "before plugin.modMain.gain g1 2",
                        "after plugin.modMain.gain g0 7"}));
}

TEST_F(AParameter, LoadsAsOneTransaction)
{
    CUndoRecorder undo;
    CAudioParamContext context;
    context.undo = &undo;
    gain->setValue(2, 0, 5.0);
    const auto bytes = savedBytes(param("two", {{"def-values", "1;2"}}));
    setProcessing(true);
    takeChanges();
    CMemoryReader reader(bytes.data(), static_cast<int>(bytes.size()));
    ASSERT_OK(gain->loadValues(reader, kAllParamGroups, nullptr, &context));
    EXPECT_EQ(undo.lines,
              (CStrings{"before plugin.modMain.gain g0 7", "after plugin.modMain.gain g0 1",
                        "before plugin.modMain.gain g1 empty", "after plugin.modMain.gain g1 2",
                        "before plugin.modMain.gain g2 5", "after plugin.modMain.gain g2 7"}));
    takeChanges();
    for (int group = 0; group < 3; ++group)
        EXPECT_EQ(engine().value(group, 0), gain->value(group, 0)) << group;
    EXPECT_EQ(engine().getElementCount(2), 0);
}

TEST_F(AParameter, CountsChanges)
{
    const std::uint64_t all = collector->getChangeCount();
    const std::uint64_t own = gain->getSerial();
    gain->setValue(0, 0, 1.0);
    param("other", {}).setValue(0, 0, 1.0);
    EXPECT_EQ(gain->getSerial(), own + 1);
    EXPECT_EQ(collector->getChangeCount(), all + 3) << "two changes and a description";
}

TEST_F(AParameter, KeepsADescriptionMadeForIt)
{
    const CAudioParamInfo& shared = infoOf(
        "param-enable-viz", converter("enum-enable", {{"max-values", "1"}, {"def-values", "1"}}));
    CAudioParam& enable = param("modMeterOut-enable");
    enable.attachInfo(collector->adoptInfo(shared.cloneAs("audio.modMain.modMeterOut-enable")));
    EXPECT_EQ(enable.value(0, 0), 1.0);
    EXPECT_EQ(enable.getInfo()->visualName, CString("audio.modMain.modMeterOut-enable"));
}

} // namespace tsm
