#include "Audio/CAudioParamBatch.h"
#include "Audio/CAudioParamStorage.h"

#include <gtest/gtest.h>

#include <random>

namespace tsm {

namespace {

/// The queue never follows these.
CAudioParam* paramNumber(int number)
{
    return reinterpret_cast<CAudioParam*>(static_cast<std::uintptr_t>(number + 1) << 4);
}

CAudioParamChange makeChange(EAudioParamType type, int group, int first, int count, bool complete,
                             int seed)
{
    CAudioParamChange change;
    change.shape.dataType = type;
    change.group = group;
    change.firstElement = first;
    change.complete = complete;
    for (int i = 0; i < count; ++i) {
        const int value = 100 * seed + i;
        if (type == EAudioParamType::Number) {
            change.values.add(value);
            ++change.elementCount;
        } else {
            change.addItem(CPtr<CAudioParamDataItem>(
                new CAudioParamDataItemString(std::to_string(value).c_str())));
        }
    }
    return change;
}

CAudioParamRecord* recordOf(CAudioParam* param, const CAudioParamChange& change)
{
    auto* record = new CAudioParamRecord;
    record->param = param;
    record->change = change;
    return record;
}

void expectSame(const CAudioParamStorage& a, const CAudioParamStorage& b)
{
    ASSERT_EQ(a.getGroupCount(), b.getGroupCount());
    for (int group = 0; group <= a.getGroupCount(); ++group) {
        ASSERT_EQ(a.getElementCount(group), b.getElementCount(group));
        for (int i = 0; i < 10; ++i) {
            if (a.getShape().dataType == EAudioParamType::Number)
                ASSERT_EQ(a.value(group, i), b.value(group, i)) << group << " " << i;
            else
                ASSERT_EQ(a.text(group, i), b.text(group, i)) << group << " " << i;
        }
    }
}

/// Random changes of three parameters, applied one by one and through a merging queue.
void compareWithMerging(EAudioParamType type, unsigned seed)
{
    std::mt19937 random(seed);
    const auto pick = [&](int count) { return static_cast<int>(random() % unsigned(count)); };
    CAudioParamStorage direct[3];
    CAudioParamStorage merged[3];
    CAudioParamBatch queue;
    CAudioParamBatch spent;
    for (int i = 0; i < 3; ++i) {
        const auto start = makeChange(type, kAllParamGroups, 0, 2, true, 0);
        CAudioParamChange first(start);
        ASSERT_TRUE(direct[i].apply(first));
        queue.merge(recordOf(paramNumber(i), start), spent);
    }
    for (int step = 1; step <= 60; ++step) {
        const int number = pick(3);
        const bool complete = pick(4) == 0;
        const int group = pick(6) == 0 ? kAllParamGroups : pick(3);
        const auto change =
            makeChange(type, group, complete ? 0 : pick(5), 1 + pick(3), complete, step);
        CAudioParamChange applied(change);
        ASSERT_TRUE(direct[number].apply(applied));
        queue.merge(recordOf(paramNumber(number), change), spent);
    }
    while (CAudioParamRecord* record = queue.takeFirst()) {
        for (int i = 0; i < 3; ++i) {
            if (record->param != paramNumber(i))
                continue;
            ASSERT_TRUE(merged[i].apply(record->change));
        }
        delete record;
    }
    for (int i = 0; i < 3; ++i)
        expectSame(direct[i], merged[i]);
}

int countRecords(const CAudioParamBatch& batch)
{
    int count = 0;
    for (const auto* record = batch.first(); record; record = record->next)
        ++count;
    return count;
}

} // namespace

TEST(AMergingQueue, EndsWithTheValuesOfAllChangesInOrder)
{
    for (unsigned seed = 1; seed <= 200; ++seed) {
        SCOPED_TRACE(seed);
        compareWithMerging(EAudioParamType::Number, seed);
        compareWithMerging(EAudioParamType::String, seed);
        if (::testing::Test::HasFatalFailure())
            return;
    }
}

TEST(AMergingQueue, StaysBounded)
{
    CAudioParamBatch queue;
    CAudioParamBatch spent;
    const auto add = [&](int group, int first, bool complete) {
        queue.merge(recordOf(paramNumber(0),
                             makeChange(EAudioParamType::Number, group, first, 1, complete, 1)),
                    spent);
    };
    for (int i = 0; i < 1000; ++i) {
        add(i % 3, i % 7, i % 50 == 0);
        add(kAllParamGroups, 0, true);
        add(i % 2, 0, false);
        add(i % 2, 3, false);
        add(i % 2, 1, false);
        spent.clear();
    }
    // One for all groups and, behind it, elements 0 and 1, and 3, of one group.
    EXPECT_EQ(countRecords(queue), 3);
}

} // namespace tsm
