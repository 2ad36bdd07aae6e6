#include "Tests/Support/CRegistryTree.h"

namespace tsm {
namespace {

using testing::ElementsAre;

constexpr const char* kStart = "Undo history start";

class AnUndoHistory : public ARegistryTree {
protected:
    /// Commits a step with what `change` does.
    template <class Change>
    void record(const char* title, Change change, std::int32_t mergeId = -1,
                bool isMergeable = false)
    {
        CPtr<CAudioParamUndoData> step(new CAudioParamUndoData(title));
        step->isMergeable = isMergeable;
        step->mergeId = mergeId;
        CAudioParamContext context;
        context.undo = step.get();
        change(&context);
        undo->commit(std::move(step));
    }
    void drag(double value, std::int32_t mergeId = 7)
    {
        record(
            "drag", [&](CAudioParamContext* c) { gain->setValue(0, 0, value, nullptr, c); },
            mergeId, true);
    }
};

TEST_F(AnUndoHistory, GoesToAnyOfItsPositions)
{
    EXPECT_THAT(steps(), ElementsAre(kStart, "at 0"));
    edit(*gain, 10, "first");
    edit(*gain, 20, "second");
    edit(*mode, 3, "third");
    EXPECT_THAT(steps(), ElementsAre(kStart, "first", "second", "third", "at 3"));
    undo->setPosition(1, true);
    EXPECT_EQ(gain->value(0, 0), 10.0);
    EXPECT_EQ(mode->value(0, 0), 0.0);
    undo->setPosition(0, true);
    EXPECT_EQ(gain->value(0, 0), 50.0);
    undo->setPosition(3, true);
    EXPECT_EQ(gain->value(0, 0), 20.0);
    EXPECT_EQ(mode->value(0, 0), 3.0);
    for (const int outside : {-1, 4})
        undo->setPosition(outside, true);
    EXPECT_THAT(steps(), ElementsAre(kStart, "first", "second", "third", "at 3"));
}

TEST_F(AnUndoHistory, ReachesTheEngineInWholeSteps)
{
    record("both", [&](CAudioParamContext* c) {
        gain->setValue(0, 0, 1, nullptr, c);
        mode->setValue(0, 0, 1, nullptr, c);
    });
    takeChanges();
    undo->setPosition(0, true);
    EXPECT_EQ(gain->getProcessValues().value(0, 0), 1.0) << "no change before the audio thread";
    takeChanges();
    EXPECT_EQ(gain->getProcessValues().value(0, 0), 50.0);
    EXPECT_EQ(mode->getProcessValues().value(0, 0), 0.0);
}

TEST_F(AnUndoHistory, HoldsAsManyStepsAsItMay)
{
    struct CRow {
        const char* attribute;
        int steps;
    };
    for (const CRow& row : {CRow{"-3", 4}, CRow{"3", 4}, CRow{"4", 4}, CRow{"5", 5}}) {
        SCOPED_TRACE(row.attribute);
        ASSERT_OK(create(undo, *plugin, "audio:interface-base", "another",
                         {{"param-collector", "plugin.param-collector"},
                          {"base-connector", "^interface-base-connector"},
                          {"undo-count-max", row.attribute}}));
        for (int i = 1; i <= 9; ++i)
            edit(*gain, i, std::to_string(i).c_str());
        const auto names = steps();
        EXPECT_EQ(names[1], std::to_string(10 - row.steps)) << "the oldest step that is left";
        EXPECT_EQ(names.back(), "at " + std::to_string(row.steps));
        undo->setPosition(0, true);
        EXPECT_EQ(gain->value(0, 0), 9 - row.steps);
    }
}

TEST_F(AnUndoHistory, DropsWhatCouldBeMadeAgainForAStepWithContentOnly)
{
    edit(*gain, 10, "first");
    edit(*gain, 20, "second");
    undo->setPosition(1, true);
    record("nothing", [](CAudioParamContext*) {});
    record("not recorded", [&](CAudioParamContext* c) { meter->setValue(0, 0, 5, nullptr, c); });
    EXPECT_THAT(steps(), ElementsAre(kStart, "first", "second", "at 1"));
    EXPECT_EQ(meter->value(0, 0), 5.0);
    edit(*mode, 1, "other");
    EXPECT_THAT(steps(), ElementsAre(kStart, "first", "other", "at 2"));
}

TEST_F(AnUndoHistory, KeepsTheFirstImageBeforeAStepAndTheLastBehindIt)
{
    record("gesture", [&](CAudioParamContext* c) {
        for (const double value : {10.0, 90.0, 30.0})
            gain->setValue(0, 0, value, nullptr, c);
    });
    undo->setPosition(0, true);
    EXPECT_EQ(gain->value(0, 0), 50.0);
    undo->setPosition(1, true);
    EXPECT_EQ(gain->value(0, 0), 30.0);
}

TEST_F(AnUndoHistory, MergesLikeEditsOfOneControl)
{
    for (const double value : {10.0, 20.0, 30.0})
        drag(value);
    EXPECT_THAT(steps(), ElementsAre(kStart, "drag", "at 1"));
    undo->setPosition(0, true);
    EXPECT_EQ(gain->value(0, 0), 50.0);
    undo->setPosition(1, true);
    EXPECT_EQ(gain->value(0, 0), 30.0);
}

TEST_F(AnUndoHistory, DoesNotMergeWhatIsNotAlike)
{
    using CChange = std::function<void(CAudioParamContext*)>;
    struct CRow {
        const char* difference;
        std::int32_t mergeId;
        bool isMergeable;
        CChange change;
    };
    const auto set = [&](CAudioParam& target, int group, int element) {
        return [&target, group, element](CAudioParamContext* c) {
            target.setValue(group, element, 9, nullptr, c);
        };
    };
    const CRow rows[] = {
        {"id", 8, true, set(*gain, 0, 0)},
        {"no merging", 7, false, set(*gain, 0, 0)},
        {"parameter", 7, true, set(*mode, 0, 0)},
        {"group", 7, true, set(*gain, 1, 0)},
        {"element count", 7, true, set(*gain, 0, 3)},
        {"more parameters", 7, true,
         [&](CAudioParamContext* c) {
             set(*gain, 0, 0)(c);
             set(*mode, 0, 0)(c);
         }},
    };
    for (const CRow& row : rows) {
        SCOPED_TRACE(row.difference);
        CPtr<CAudioParamUndoHistory> none;
        CPtr<CAudioParamUndoHistory> former;
        undo->exchangeHistory(former, none);
        gain->reset(kAllParamGroups, -1);
        drag(10);
        record("other", row.change, row.mergeId, row.isMergeable);
        EXPECT_THAT(steps(), ElementsAre(kStart, "drag", "other", "at 2"));
    }
}

TEST_F(AnUndoHistory, MergesWithTheStepBelowItsPosition)
{
    drag(10, 1);
    drag(20, 2);
    undo->setPosition(1, true);
    drag(30, 2); // not alike to the first: the second is gone
    EXPECT_THAT(steps(), ElementsAre(kStart, "drag", "drag", "at 2"));
    undo->setPosition(1, true);
    EXPECT_EQ(gain->value(0, 0), 10.0);
    drag(40, 1);
    undo->setPosition(0, true);
    EXPECT_EQ(gain->value(0, 0), 50.0);
    undo->setPosition(1, true);
    EXPECT_EQ(gain->value(0, 0), 40.0);
}

TEST_F(AnUndoHistory, RestoresTextsAndElementCounts)
{
    record("texts", [&](CAudioParamContext* c) {
        labels->setText(0, 0, "Left", nullptr, c);
        labels->setText(0, 4, "Sub", nullptr, c);
    });
    // Other items have come and gone meanwhile.
    for (int i = 0; i < 20; ++i)
        labels->setText(0, 1, CString("R") + CString(i % 2 ? "a" : "b"));
    undo->setPosition(0, true);
    EXPECT_EQ(textOf(*labels, 0), "L");
    EXPECT_EQ(textOf(*labels, 1), "R");
    EXPECT_EQ(labels->getValues().getElementCount(0), 2);
    undo->setPosition(1, true);
    EXPECT_EQ(textOf(*labels, 0), "Left");
    EXPECT_EQ(textOf(*labels, 4), "Sub");
    EXPECT_EQ(labels->getValues().getElementCount(0), 5);
}

TEST_F(AnUndoHistory, TakesGroupsAwayThatAStepHasAdded)
{
    gain->setValue(1, 0, 11);
    const auto before = savedBytes(*gain);
    gain->setValue(2, 0, 22);
    gain->setValue(2, 1, 23);
    const auto saved = savedBytes(*gain);
    gain->reset(kAllParamGroups, -1);
    ASSERT_OK(loadInto(*gain, before));

    record("load", [&](CAudioParamContext* c) {
        CMemoryReader reader(saved.data(), static_cast<int>(saved.size()));
        EXPECT_OK(gain->loadValues(reader, kAllParamGroups, nullptr, c));
    });
    EXPECT_EQ(gain->value(2, 1), 23.0);
    undo->setPosition(0, true);
    EXPECT_EQ(gain->getValues().getElementCount(2), 0);
    EXPECT_EQ(gain->value(2, 0), 50.0) << "the default shows through again";
    EXPECT_EQ(gain->value(1, 0), 11.0);
    undo->setPosition(1, true);
    EXPECT_EQ(savedBytes(*gain), saved);
}

TEST_F(AnUndoHistory, IsCopiedDeeplyAndExchanged)
{
    edit(*gain, 10, "first");
    record("text", [&](CAudioParamContext* c) { labels->setText(0, 0, "X", nullptr, c); });
    undo->setPosition(1, true);
    CPtr<CAudioParamUndoHistory> copy;
    undo->cloneHistory(copy);
    edit(*gain, 20, "behind the copy");

    CPtr<CAudioParamUndoHistory> other;
    undo->exchangeHistory(other, copy);
    EXPECT_FALSE(copy);
    EXPECT_THAT(steps(), ElementsAre(kStart, "first", "text", "at 1"));
    undo->setPosition(2, true);
    EXPECT_EQ(textOf(*labels), "X");
    undo->exchangeHistory(copy, other);
    EXPECT_THAT(steps(), ElementsAre(kStart, "first", "behind the copy", "at 2"));
    undo->exchangeHistory(copy, other);
    EXPECT_THAT(steps(), ElementsAre(kStart, "at 0")) << "none is a history too";
    undo->cloneHistory(copy);
    EXPECT_FALSE(copy);
}

} // namespace
} // namespace tsm
