#include "Audio/CAudioParamBatch.h"

#include <utility>

namespace tsm {

void CAudioParamBatch::add(CAudioParamRecord* record) noexcept
{
    record->next = nullptr;
    (tail ? tail->next : head) = record;
    tail = record;
}

CAudioParamRecord* CAudioParamBatch::takeFirst() noexcept
{
    CAudioParamRecord* record = head;
    if (!record)
        return nullptr;
    head = std::exchange(record->next, nullptr);
    if (!head)
        tail = nullptr;
    return record;
}

void CAudioParamBatch::takeAll(CAudioParamBatch& other) noexcept
{
    if (other.isEmpty())
        return;
    (tail ? tail->next : head) = std::exchange(other.head, nullptr);
    tail = std::exchange(other.tail, nullptr);
}

void CAudioParamBatch::merge(CAudioParamRecord* record, CAudioParamBatch& spent)
{
    if (record->change.group == kAllParamGroups && record->change.complete)
        removeRecordsOf(record->param, spent);
    CAudioParamRecord* earlier = findMergeable(*record);
    if (!earlier) {
        add(record);
        return;
    }
    earlier->change.merge(record->change);
    earlier->serial = record->serial;
    spent.add(record);
}

void CAudioParamBatch::removeRecordsOf(const CAudioParam* param, CAudioParamBatch& spent) noexcept
{
    CAudioParamBatch kept;
    while (CAudioParamRecord* record = takeFirst())
        (record->param == param ? spent : kept).add(record);
    takeAll(kept);
}

// The latest record that adjoins: none between it and the end touches the same values. Nothing is
// brought past a complete change of its group, nor a change of all groups past one of a single
// group or the reverse.
CAudioParamRecord* CAudioParamBatch::findMergeable(const CAudioParamRecord& record) const noexcept
{
    const bool isForAll = record.change.group == kAllParamGroups;
    CAudioParamRecord* found = nullptr;
    for (CAudioParamRecord* at = head; at; at = at->next) {
        if (at->param != record.param)
            continue;
        const bool isSameGroup = at->change.group == record.change.group;
        const bool isOtherKind = isForAll != (at->change.group == kAllParamGroups);
        if (at->change.adjoins(record.change))
            found = at;
        else if (isOtherKind || (isSameGroup && at->change.complete))
            found = nullptr;
    }
    return found;
}

void CAudioParamBatch::clear() noexcept
{
    while (CAudioParamRecord* record = takeFirst())
        delete record;
}

} // namespace tsm
